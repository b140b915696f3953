#include "Engines.h"

#include "server/subjects/Registrations.h"
#include "support/TestServer.h"

namespace sysadmin::testing {
namespace {

using namespace server;

/// Every record of the sample library is asked for and deleted, subject by subject.
TEST(WhereUsedTest, SomethingIsNamedExactlyWhereADeleteIsRefusedForUse) {
    TestServer server(TestServer::Options{});
    const auto registry = MakeRegistry();
    constexpr qint16 HasOpacDesk = 80;
    constexpr qint16 IsSystemDefined = 81;
    const QList<qint16> otherReasons{status::DefaultRecord, status::SystemIndex,       status::NotAuthorised,
                                     status::LocalDatabase, status::LastSecurityRight, HasOpacDesk,
                                     IsSystemDefined};
    const QString defaultSortGroup =
        server.GetDatabase().FirstValue("SELECT id FROM sort_groups WHERE is_default='Y'", {}).toString();
    QStringList names = registry->RequestNames();
    names.sort();
    int kept = 0;
    for (const QString& name : names) {
        const RequestRule& rule = *registry->Find(name);
        if (!name.startsWith("Del") || rule.tables.size() != 1 || rule.keyTags.isEmpty() || rule.several ||
            !registry->ReadRuleOfWord(rule.Word()))
            continue;
        const QString column = rule.keyColumn.isEmpty() ? QString("id") : rule.keyColumn;
        for (const QVariant& key : server.GetDatabase().FirstColumn(
                 "SELECT " + column + " FROM " + rule.tables.first() + " ORDER BY id", {})) {
            SCOPED_TRACE(qPrintable(name + ' ' + key.toString()));
            const wire::Reply uses = server.Send("LstUse", {{"Sbj", rule.Word()}, {"ID", key.toString()}});
            ASSERT_EQ(uses.status, status::Ok);
            QStringList keepers = ValuesOf(uses.fields, "UX");
            for (const wire::Field& field : uses.fields)
                if (field.tag == u"UR" && field.value == u"Y")
                    keepers << field.value;
            const qint16 result = server.Send(name, {{rule.keyTags.last(), key.toString()}}).status;
            if (otherReasons.contains(result) ||
                (name == u"DelSort" && result == status::InUse && key.toString() == defaultSortGroup))
                continue;
            EXPECT_EQ(!keepers.isEmpty(), result != status::Ok)
                << result << ": " << qPrintable(ValuesOf(uses.fields, "UN").join(", ") + keepers.join(", "));
            kept += result != status::Ok ? 1 : 0;
        }
    }
    EXPECT_GT(kept, 50);
}

} // namespace
} // namespace sysadmin::testing
