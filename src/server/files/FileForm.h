#pragma once

#include "server/files/Settings.h"
#include "server/store/Records.h"

#include <QHash>

#include <optional>

namespace sysadmin::server {

/// The columns that name a record of the table among all; with a last one that is empty where it is known by
/// its place among the records of its owner. None when nothing names it.
std::optional<QStringList> NaturalKey(const Table& table);

/// The columns that a table's file has: those of the key, then the others as declared.
QList<const Column*> FileColumns(const Table& table);
/// A column's heading: its name, without the ending that says that it is a reference.
QString FileHeading(const Column& column);

/// How settings stand in files, as the declarations of their tables have it.
///
/// A record is known by its natural key, as is every record to which it refers. Ids, secrets and what the
/// server keeps for itself are left out.
class FileForm {
public:
    explicit FileForm(const Tables& tables);

    const Tables& GetTables() const { return m_tables; }
    const Table& Named(const QString& table) const { return *m_tables.constFind(table); }
    /// The tables of settings, each below those to which it refers.
    const QStringList& Order() const { return m_order; }
    /// The same with what the library's other programs hold of them, at the end.
    QStringList SampleOrder() const;
    /// The table and all tables whose records are parts of its records, or of those.
    QStringList WithParts(const QString& table) const;

    /// The table of the record that a cell names; empty when the column is no reference.
    static QString TargetOf(const QList<const Column*>& columns, qsizetype column, const QStringList& cells);
    /// The form in which the names of the table's records are compared, of the text in a cell.
    QString KeyOf(const QString& table, const QString& cell);
    /// Whether two texts in a column's cells say the same.
    bool IsSame(const QList<const Column*>& columns, qsizetype column, const QStringList& one,
                const QStringList& other);
    /// What people call a record; empty where there is but one.
    QString NameOf(const SettingsTable& table, const SettingsRecord& record) const;

private:
    bool IsOneText(const Table& table) const;

    const Tables& m_tables;
    QStringList m_order;
    QHash<QString, QHash<QString, QString>> m_keys; ///< by table and cell
};

/// Works out the keys of a table's records from their cells, one after the other in the table's order.
class RecordKeys {
public:
    RecordKeys(FileForm& form, const Table& table, const QList<const Column*>& columns);
    /// The columns of the key that are not among those of the cells, by their headings.
    const QStringList& Missing() const { return m_missing; }
    QString Next(const QStringList& cells);

private:
    FileForm& m_form;
    QList<const Column*> m_columns;
    QList<qsizetype> m_cells;
    bool m_byPlace = false;
    QStringList m_missing;
    QHash<QString, int> m_places;
};

namespace keyparts {
/// Between the parts of a key.
inline constexpr QChar Separator = QChar(0x1f);
/// A place among the records of an owner as a part of a key; sorts as a number.
QString OfPlace(int place);
} // namespace keyparts

} // namespace sysadmin::server
