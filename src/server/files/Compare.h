#pragma once

#include "server/files/FileForm.h"

namespace sysadmin::server {

/// A value that differs.
struct ChangedCell {
    const Column* column = nullptr;
    QString before;
    QString after;
};

/// A record that differs between two settings.
struct Difference {
    enum class Kind { Added, Changed, Removed };
    Kind kind = Kind::Changed;
    QString table;
    QString name;  ///< what people call the record; empty where there is but one
    QString key;   ///< as the records' keys
    int line = 0;  ///< where it stands in the file of the settings after; 0: nowhere
    qint64 id = 0; ///< in the library of the settings before; 0: they are no library's
    /// Of a row that is a part of a record the cell that names that record.
    QString owner = {};
    /// Of a changed record what differs; of an added one all that is said of it; of a removed one what it
    /// held of that.
    QList<ChangedCell> cells = {};
};

/// What there is to do to get from one settings to others.
struct Comparison {
    QList<Difference> differences = {};
    /// Those that were compared: of these the settings after say all records.
    QStringList tables = {};
    /// What no library could be: two records with the same name.
    QList<FileProblem> problems = {};

    /// How many there are of a kind.
    qsizetype Count(Difference::Kind kind) const;
};

/// Adds to a comparison in what the records of a table differ. Columns that are not among those after are
/// left as they are.
void CompareTable(FileForm& form, const SettingsTable& before, const SettingsTable& after,
                  Comparison& comparison);

} // namespace sysadmin::server
