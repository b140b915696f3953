#pragma once

#include "server/store/Records.h"

#include <functional>

namespace sysadmin::server {

struct CsvRecord;

/// A library's settings as comma-separated files (RFC 4180, UTF-8), one for each table and one record a line:
/// the form of the sample library.
///
/// A record is known by its natural key, as is every record to which it refers: a code or name; where it
/// takes several texts to name one (a patron group's cluster and code) they stand in the one cell as a record
/// of comma-separated text. Ids, secrets and what the server keeps for itself are left out. The lines are in
/// the order of the keys, or of the records where their order means something, so the same settings always
/// make the same files.
class TableFiles {
public:
    TableFiles(Records& records, const Tables& tables);
    ~TableFiles();

    /// The tables that have files, each below those to which it refers.
    QStringList Names() const;
    /// The file of a table. Throws `StoreError`.
    QByteArray Write(const QString& table);

    /// What becomes of a line that refers to a record that is not there.
    enum class Unknown { Refuse, Skip };
    /// Adds the records of a file and changes those that are there. Answers the first line that is wrong, as
    /// people read it; empty when all is well. Files are read in the order of `Names`; `takes` may leave
    /// lines out. Throws `StoreError`.
    QString Read(const QString& table, const QByteArray& file, Unknown unknown = Unknown::Refuse,
                 const std::function<bool(const Row&)>& takes = {});

private:
    struct Keys;
    using Columns = QList<const Column*>;

    Keys& KeysOf(const QString& table);
    QStringList PartsOf(const Table& table, const Row& row, const Keys& keys);
    QString TargetOf(const Column& column, const Row& row) const;
    QStringList Named(const QString& table, qint64 id);
    std::optional<qint64> Find(const QString& table, const QString& cell);
    bool IsOneText(const Table& table) const;
    QString ReadCell(const Column& column, const QString& target, const QString& cell, QVariant& value,
                     bool* isUnknown);
    bool MayAppend(const Table& table) const;
    QString Append(const Table& table, const Columns& columns, const QList<CsvRecord>& records,
                   Unknown unknown);
    QString ReadRecord(const Table& table, const Columns& columns, const CsvRecord& record, Unknown unknown,
                       const std::function<bool(const Row&)>& takes, QHash<qint64, int>& places);

    Records& m_records;
    const Tables& m_tables;
    QHash<QString, std::shared_ptr<Keys>> m_keys;
};

/// The columns that name a record of the table among all; with a last one that is empty where it is known by
/// its place among the records of its owner. None when nothing names it.
std::optional<QStringList> NaturalKey(const Table& table);

/// The columns that a table's file has: those of the key, then the others as declared.
QList<const Column*> FileColumns(const Table& table);
/// A column's heading: its name, without the ending that says that it is a reference.
QString FileHeading(const Column& column);

} // namespace sysadmin::server
