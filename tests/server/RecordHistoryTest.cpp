#include "Engines.h"

#include "server/subjects/Registrations.h"
#include "support/RecordChanger.h"
#include "support/TestServer.h"

namespace sysadmin::testing {
namespace {

using namespace server;

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
    RecordChanger changer(server.GetDatabase(), registry->GetTables());
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
            const bool isGone = !rule->single && changer.Try([&](Records& records) {
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
