#pragma once

#include "server/store/Table.h"

namespace sysadmin::server {

/// A record in the words of its file: one cell for each of the table's columns there. References are the
/// code or name of their record; where it takes several texts to name one (a patron group's cluster and
/// code) they stand in the one cell as a record of comma-separated text.
struct SettingsRecord {
    QStringList cells;
    QString key;   ///< what names it among the table's records, in the form in which names are compared
    int line = 0;  ///< of the file, from 1; 0: it comes from a library
    qint64 id = 0; ///< in the library; 0: it comes from a file
};

/// The records of a table, in the order of its file.
struct SettingsTable {
    QString name;
    QList<const Column*> columns;
    QList<SettingsRecord> records;
};

/// Settings by table: all that a library has, or what files say.
using Settings = QMap<QString, SettingsTable>;

/// What is wrong with a file of settings.
struct FileProblem {
    QString table;
    int line = 0; ///< 0: it is no line's fault
    QString text;

    /// It as people read it, with the file and the line.
    QString Sentence() const;
};

} // namespace sysadmin::server
