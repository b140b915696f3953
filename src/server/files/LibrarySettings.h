#pragma once

#include "server/files/FileForm.h"

namespace sysadmin::server {

class Database;
class ResultRow;

/// Reads a library's settings in the words of files. Belongs into a transaction, so that what it reads fits
/// together. Everything throws `StoreError`.
class LibrarySettings {
public:
    LibrarySettings(Database& database, FileForm& form);

    /// The records of a table, in the order of its file: that of their keys, or of the records where their
    /// order means something. So the same settings always make the same files.
    SettingsTable Read(const QString& table);
    /// The ids of a table's records by their keys, as they were when they were first asked for.
    const QHash<QString, qint64>& IdsOf(const QString& table);

private:
    /// What names a record.
    struct Name {
        QStringList parts;
        QString cell; ///< in the cells of records that refer to it
        QString key;
        QString sorted; ///< records stand in the order of this
    };
    class Namer;

    const QHash<qint64, Name>& NamesOf(const QString& table);

    Database& m_database;
    FileForm& m_form;
    QHash<QString, std::shared_ptr<QHash<qint64, Name>>> m_names;
    QHash<QString, std::shared_ptr<QHash<QString, qint64>>> m_ids;
};

} // namespace sysadmin::server
