#include "Engines.h"

#include "server/subjects/Registrations.h"
#include "support/TestServer.h"

#include <QRandomGenerator>

namespace sysadmin::testing {
namespace {

using namespace server;

/// Changes rows of a library at random, as requests do: with an author, so that the history knows.
class Changer {
public:
    Changer(TestServer& server, const Registry& registry)
        : m_server(server)
        , m_registry(registry)
        , m_random(20261122) {}

    /// Changes something of the record or of its parts; false when there was nothing that could be.
    bool Change(const RecordName& record) {
        QList<RecordName> rows{record};
        AddParts(record, rows);
        for (int attempt = 0; attempt < 20; ++attempt)
            if (TryTo(rows[m_random.bounded(int(rows.size()))], record))
                return true;
        return false;
    }

    template <class Work>
    bool Try(const QString& request, const Work& work) {
        Database& database = m_server.GetDatabase();
        try {
            RunInTransaction(database, [&] {
                Records records(database, m_registry.GetTables(),
                                Author{"SYSADMIN", "local", request, StoredTime(m_server.Now()), "", 0});
                work(records);
                records.Finish();
            });
        } catch (const StoreError&) {
            return false; // a rule of the tables
        }
        return true;
    }

private:
    void AddParts(const RecordName& record, QList<RecordName>& rows) {
        for (const Table& table : m_registry.GetTables())
            if (!table.owner.isEmpty() && table.Find(table.owner)->target == record.table)
                for (const QVariant& id : m_server.GetDatabase().FirstColumn(
                         "SELECT id FROM " + table.name + " WHERE " + table.owner + "=? LIMIT 5",
                         {record.id})) {
                    rows << RecordName{table.name, id.toLongLong()};
                    AddParts(rows.last(), rows);
                }
    }

    QVariant NewValue(const Table& table, const Column& column, const QVariant& value) {
        Database& database = m_server.GetDatabase();
        switch (column.type) {
        case ColumnType::Flag:
            return value.toString() == u"Y" ? "N" : "Y";
        case ColumnType::Text:
            return table.IsUniqueText(column.name) || m_random.bounded(3) == 0
                       ? QVariant(value.toString().left(3) + QString::number(m_random.bounded(1000)))
                       : database.FirstValue("SELECT " + column.name + " FROM " + table.name +
                                             " ORDER BY id DESC LIMIT 1");
        case ColumnType::Whole:
            return m_random.bounded(4) == 0 ? QVariant() : QVariant(m_random.bounded(50));
        case ColumnType::Reference:
            return database.FirstValue("SELECT MAX(id) FROM " + column.target);
        case ColumnType::Bytes:
            break;
        }
        return value;
    }

    bool TryTo(const RecordName& row, const RecordName& record) {
        const Table& table = *m_registry.GetTables().constFind(row.table);
        if (table.columns.isEmpty())
            return false;
        const bool isPart = row.table != record.table;
        const int what = m_random.bounded(4);
        bool changed = false;
        const bool isDone = Try("Test", [&](Records& records) {
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

    TestServer& m_server;
    const Registry& m_registry;
    QRandomGenerator m_random;
};

wire::Fields WithoutKey(wire::Fields fields) {
    fields.removeIf([](const wire::Field& field) { return field.tag == u"AsKey"; });
    return fields;
}

QString Differences(const wire::Fields& one, const wire::Fields& other) {
    QStringList lines;
    for (qsizetype i = 0; i < qMax(one.size(), other.size()) && lines.size() < 6; ++i) {
        const wire::Field a = one.value(i);
        const wire::Field b = other.value(i);
        if (a != b)
            lines << a.tag + '=' + a.value + " is " + b.tag + '=' + b.value;
    }
    return lines.join("; ");
}

/// The requests that read one record of a subject.
QList<const RequestRule*> GetRules(const Registry& registry) {
    QStringList names = registry.RequestNames();
    names.sort();
    QList<const RequestRule*> rules;
    for (const QString& name : names)
        if (const RequestRule* rule = registry.Find(name);
            name.startsWith("Get") && !rule->tables.isEmpty() && rule->keyQuery.isEmpty() &&
            (rule->single || !rule->keyTags.isEmpty()) && registry.ReadRuleOfWord(rule->Word()) == rule)
            rules << rule;
    return rules;
}

class RecordHistoryTest : public EngineTest {};

/// Of every subject: after any changes, the record is shown as it was after each of them, and as it was
/// before all of them, also when its key is another one by now and when it is gone.
TEST_P(RecordHistoryTest, EveryRecordIsShownAsItWas) {
    const auto registry = MakeRegistry();
    TestServer server({.address = Address()});
    Changer changer(server, *registry);
    int compared = 0;
    for (const RequestRule* rule : GetRules(*registry)) {
        const QString table = rule->tables.first();
        if (table == u"master_profiles") // whoever looks would lose his rights
            continue;
        for (const QVariant& row :
             server.GetDatabase().FirstColumn("SELECT id FROM " + table + " ORDER BY id LIMIT 2", {})) {
            const RecordName record{table, row.toLongLong()};
            const auto keyNow = [&] {
                return rule->keyTags.isEmpty()
                           ? wire::Fields()
                           : wire::Fields{{rule->keyTags.last(),
                                           rule->keyColumn.isEmpty()
                                               ? row.toString()
                                               : server.Value("SELECT " + rule->keyColumn + " FROM " + table +
                                                                  " WHERE id=?",
                                                              {row})}};
            };
            SCOPED_TRACE(qPrintable(rule->name + ' ' + row.toString()));
            QList<std::pair<qint64, wire::Fields>> states;
            const auto keep = [&] {
                const wire::Reply reply = server.Send(rule->name, keyNow());
                if (reply.status == status::Ok)
                    states.append(
                        {server.Value("SELECT COALESCE(MAX(id), 0) FROM history_requests").toLongLong(),
                         reply.fields});
                return reply.status == status::Ok;
            };
            if (!keep())
                continue;
            for (int i = 0; i < 6 && changer.Change(record) && keep(); ++i) {
            }
            const wire::Fields last = keyNow();
            const bool isGone = !rule->single && changer.Try("Remove", [&](Records& records) {
                records.Remove(record.table, record.id);
            });
            for (const auto& [number, before] : states) {
                const wire::Reply then =
                    server.Send(rule->name, last + wire::Fields{{"AsOf", QString::number(number)},
                                                                {"AsSbj", rule->Word()},
                                                                {"AsRow", row.toString()}});
                EXPECT_EQ(then.status, status::Ok);
                EXPECT_TRUE(WithoutKey(then.fields) == before)
                    << (isGone ? "gone " : "") << qPrintable(Differences(WithoutKey(then.fields), before));
                ++compared;
            }
            // Looking back has changed nothing.
            EXPECT_EQ(server.Value("SELECT COUNT(*) FROM " + table + " WHERE id=?", {row}),
                      isGone ? "0" : "1");
        }
    }
    EXPECT_GT(compared, 200);
}

INSTANTIATE_ON_ENGINES(RecordHistoryTest);

} // namespace
} // namespace sysadmin::testing
