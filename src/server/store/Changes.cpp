#include "server/store/Changes.h"

#include "server/store/Database.h"

namespace sysadmin::server {

QList<Table> Changes::Declare() {
    return {{.name = "record_changes",
             .columns = {{.name = "table_name"},
                         {.name = "record_id", .type = ColumnType::Whole},
                         {.name = "number", .type = ColumnType::Whole},
                         {.name = "session", .type = ColumnType::Whole},
                         {.name = "changed_by"},
                         {.name = "changed_at"},
                         {.name = "removed", .type = ColumnType::Flag},
                         {.name = "key_text"},
                         {.name = "earlier_number", .type = ColumnType::Whole, .fallback = "0"},
                         {.name = "earlier_by"},
                         {.name = "earlier_at"}},
             .uniqueSets = {{"table_name", "record_id"}},
             .indexed = {{"number"}},
             .content = Content::Record},
            {.name = "added_records",
             .columns = {{.name = "table_name"},
                         {.name = "first_id", .type = ColumnType::Whole},
                         {.name = "last_id", .type = ColumnType::Whole},
                         {.name = "number", .type = ColumnType::Whole},
                         {.name = "session", .type = ColumnType::Whole},
                         {.name = "changed_by"},
                         {.name = "changed_at"}},
             .uniqueSets = {{"table_name", "first_id"}},
             .indexed = {{"number"}},
             .content = Content::Record}};
}

qint64 Changes::Last() const {
    return m_database.FirstValue("SELECT MAX(id) FROM history_requests").toLongLong();
}

void Changes::Prune() {
    const QVariant oldest = m_database.FirstValue("SELECT MIN(start_change) FROM sessions");
    for (const char* table : {"record_changes", "added_records"})
        m_database.Run(QString("DELETE FROM %1 WHERE number<=?").arg(table),
                       {oldest.isNull() ? Last() : oldest.toLongLong()});
}

/// Gives records that were added together, and that change now, rows of their own.
void Changes::EnterOneByOne(const QList<Entry>& entries) {
    static const QString alone =
        "INSERT INTO record_changes (table_name, record_id, number, session, changed_by, changed_at) "
        "SELECT table_name, ?, number, session, changed_by, changed_at FROM added_records "
        "WHERE table_name=? AND first_id<=? AND last_id>=? ON CONFLICT (table_name, record_id) DO NOTHING";
    for (const Entry& entry : entries)
        m_database.RunLater(alone, {entry.id, entry.table, entry.id, entry.id});
}

void Changes::Enter(const QList<Entry>& entries, qint64 number, const Changer& changer,
                    const QList<Added>& added) {
    m_database.InsertMany(
        "added_records",
        {"table_name", "first_id", "last_id", "number", "session", "changed_by", "changed_at"}, added.size(),
        [&](qsizetype place, QVariantList& values) {
            const Added& some = added[place];
            values << some.table << some.first << some.last << number << changer.session << changer.name
                   << changer.time;
        });
    EnterOneByOne(entries);
    const auto kept = [](const QString& column, const QString& earlier) {
        return earlier + "=CASE WHEN record_changes.session=excluded.session THEN record_changes." + earlier +
               " ELSE record_changes." + column + " END, ";
    };
    static const QString conflict =
        " ON CONFLICT (table_name, record_id) DO UPDATE SET " + kept("number", "earlier_number") +
        kept("changed_by", "earlier_by") + kept("changed_at", "earlier_at") +
        "number=excluded.number, session=excluded.session, changed_by=excluded.changed_by, "
        "changed_at=excluded.changed_at, removed=excluded.removed, key_text=excluded.key_text";
    static const QStringList columns{"table_name", "record_id",  "number",  "session",
                                     "changed_by", "changed_at", "removed", "key_text"};
    const QString yes = "Y";
    const QString no = "N";
    m_database.InsertMany(
        "record_changes", columns, entries.size(),
        [&](qsizetype place, QVariantList& values) {
            const Entry& entry = entries[place];
            values << entry.table << entry.id << number << changer.session << changer.name << changer.time
                   << (entry.removedKey ? yes : no) << entry.removedKey.value_or(QString());
        },
        conflict);
}

std::optional<Change> Changes::ByOthers(const QString& table, qint64 id, qint64 session) const {
    const auto row = m_database.FirstRow(
        "SELECT session, number, changed_by, changed_at, earlier_number, earlier_by, earlier_at, 0 AS place "
        "FROM record_changes WHERE table_name=? AND record_id=? "
        "UNION ALL SELECT session, number, changed_by, changed_at, 0, '', '', 1 FROM added_records "
        "WHERE table_name=? AND first_id<=? AND last_id>=? ORDER BY place",
        {table, id, table, id, id});
    if (!row)
        return std::nullopt;
    const int first = (*row)[0].toLongLong() == session ? 4 : 1;
    const Change change{(*row)[first].toLongLong(), (*row)[first + 1].toString(),
                        (*row)[first + 2].toString()};
    return change.number > 0 ? std::optional(change) : std::nullopt;
}

std::optional<Change> Changes::LastByOthers(const QString& table, qint64 number, qint64 session) const {
    const QVariant id =
        m_database.FirstValue("SELECT record_id FROM record_changes WHERE table_name=? AND number>? "
                              "AND (session<>? OR earlier_number>?) ORDER BY number DESC",
                              {table, number, session, number});
    const auto change = id.isValid() ? ByOthers(table, id.toLongLong(), session) : std::nullopt;
    const auto added = m_database.FirstRow("SELECT number, changed_by, changed_at FROM added_records WHERE "
                                           "table_name=? AND number>? AND session<>? ORDER BY number DESC",
                                           {table, number, session});
    if (!added || (change && change->number >= (*added)[0].toLongLong()))
        return change;
    return Change{(*added)[0].toLongLong(), (*added)[1].toString(), (*added)[2].toString()};
}

std::optional<Change> Changes::RemovalOf(const QString& table, qint64 id, qint64 session) const {
    const auto row = m_database.FirstRow("SELECT number, changed_by, changed_at FROM record_changes "
                                         "WHERE table_name=? AND record_id=? AND removed='Y' AND session<>?",
                                         {table, id, session});
    return row ? std::optional(Change{(*row)[0].toLongLong(), (*row)[1].toString(), (*row)[2].toString()})
               : std::nullopt;
}

std::optional<Change> Changes::RemovalOf(const QString& table, const QString& keyText, qint64 session) const {
    const QVariant id = m_database.FirstValue("SELECT record_id FROM record_changes WHERE table_name=? AND "
                                              "removed='Y' AND key_text=? ORDER BY number DESC",
                                              {table, Fold(keyText)});
    return id.isValid() ? RemovalOf(table, id.toLongLong(), session) : std::nullopt;
}

QStringList Changes::TablesChangedSince(qint64 number, qint64 session) const {
    QStringList tables;
    m_database.Each("SELECT table_name FROM record_changes "
                    "WHERE number>? AND (session<>? OR earlier_number>?) "
                    "UNION SELECT table_name FROM added_records WHERE number>? AND session<>?",
                    {number, session, number, number, session},
                    [&](const ResultRow& row) { tables << row.value(0).toString(); });
    return tables;
}

} // namespace sysadmin::server
