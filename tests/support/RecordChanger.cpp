#include "support/RecordChanger.h"

#include "server/Context.h"
#include "server/store/Database.h"

namespace sysadmin::testing {

using namespace server;

RecordChanger::RecordChanger(Database& database, const Tables& tables)
    : m_database(database)
    , m_tables(tables)
    , m_random(20261122) {}

bool RecordChanger::Change(const RecordName& record) {
    QList<RecordName> rows{record};
    AddParts(record, rows);
    for (int attempt = 0; attempt < 20; ++attempt)
        if (const RecordName& row = rows[m_random.bounded(int(rows.size()))];
            TryTo(row, row.table != record.table))
            return true;
    return false;
}

bool RecordChanger::Try(const std::function<void(Records&)>& work) {
    try {
        RunInTransaction(m_database, [&] {
            Records records(
                m_database, m_tables,
                Author{"SYSADMIN", "local", "Test", StoredTime(QDateTime::currentDateTimeUtc()), "", 0});
            work(records);
            records.Finish();
        });
    } catch (const StoreError&) {
        return false; // a rule of the tables
    }
    return true;
}

void RecordChanger::AddParts(const RecordName& record, QList<RecordName>& rows) {
    for (const Table& table : m_tables)
        if (!table.owner.isEmpty() && table.Find(table.owner)->target == record.table)
            for (const QVariant& id : m_database.FirstColumn(
                     "SELECT id FROM " + table.name + " WHERE " + table.owner + "=? LIMIT 5", {record.id})) {
                const RecordName part{table.name, id.toLongLong()};
                rows << part;
                AddParts(part, rows);
            }
}

QVariant RecordChanger::NewValue(const Table& table, const Column& column, const QVariant& value) {
    switch (column.type) {
    case ColumnType::Flag:
        return value.toString() == u"Y" ? "N" : "Y";
    case ColumnType::Text:
        return table.IsUniqueText(column.name) || m_random.bounded(3) == 0
                   ? QVariant(value.toString().left(3) + QString::number(m_random.bounded(1000)))
                   : m_database.FirstValue("SELECT " + column.name + " FROM " + table.name +
                                           " ORDER BY id DESC LIMIT 1");
    case ColumnType::Whole:
        return m_random.bounded(4) == 0 ? QVariant() : QVariant(m_random.bounded(50));
    case ColumnType::Reference:
        return m_database.FirstValue("SELECT MAX(id) FROM " + column.target);
    case ColumnType::Bytes:
        break;
    }
    return value;
}

bool RecordChanger::TryTo(const RecordName& row, bool isPart) {
    const Table& table = *m_tables.constFind(row.table);
    if (table.columns.isEmpty())
        return false;
    const int what = m_random.bounded(4);
    bool changed = false;
    const bool isDone = Try([&](Records& records) {
        const auto before = records.Find(row.table, row.id);
        if (!before)
            return;
        changed = true;
        if (isPart && what == 0) {
            records.Remove(row.table, row.id);
            return;
        }
        Row after = *before;
        for (int i = 0; i < 3; ++i) {
            const Column& column = table.columns[m_random.bounded(int(table.columns.size()))];
            if (!column.secret && !column.bookkeeping && column.name != table.owner)
                after[column.name] = NewValue(table, column, after[column.name]);
        }
        changed = after != *before;
        if (isPart && what == 1)
            records.Insert(row.table, after);
        else
            records.Update(row.table, row.id, after);
    });
    return isDone && changed;
}

} // namespace sysadmin::testing
