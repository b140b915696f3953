#include "Engines.h"

#include "server/Registry.h"
#include "server/store/Changes.h"
#include "server/subjects/Registrations.h"
#include "support/TestServer.h"
#include "wire/ManyChanges.h"

#include <algorithm>

namespace sysadmin::testing {
namespace {

using namespace server;

/// Two operators on one library: neither overwrites what the other one changed and he has not seen.
class LostUpdateTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped())
            return;
        m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address()});
        m_other = m_server->Connect();
        ASSERT_EQ(m_other->SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
    }

    TestClient& Mine() { return m_server->Client(); }
    TestClient& Other() { return *m_other; }

    /// The name of the request by which a session reads what the rule changes.
    QPair<QString, bool> ReaderOf(const RequestRule& rule) {
        const Registry& registry = m_server->GetLibrary().GetRegistry();
        QString list;
        for (const QString& name : registry.RequestNames()) {
            const RequestRule* reader = registry.Find(name);
            if (reader->access != Access::View || !reader->tables.contains(rule.tables.first()) ||
                reader->scope != rule.scope)
                continue;
            if (!reader->keyTags.isEmpty() || reader->single)
                return {name, true};
            list = name;
        }
        return {list, false};
    }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<TestClient> m_other;
};
INSTANTIATE_ON_ENGINES(LostUpdateTest);

TEST_P(LostUpdateTest, RecordsThatWereAddedTogetherAreWatchedLikeOthers) {
    const auto isRefused = [](const wire::Reply& reply, qint16 status) {
        return reply.status == status && !wire::FirstValue(reply.fields, "ChBy").isEmpty();
    };
    wire::Fields thirty;
    for (int i = 0; i < 30; ++i)
        thirty << wire::Field{"RQ", "AddVenTp"} << wire::Field{"Cd", "T" + QString::number(i)}
               << wire::Field{"Nm", "Type " + QString::number(i)};
    const auto list = [](TestClient& client) { return client.Send("LstVenTp"); };
    const auto remove = [](TestClient& client, const QString& code) {
        return client.Send("DelVenTp", {{"Cd", code}});
    };
    ASSERT_EQ(list(Mine()).status, status::Ok);
    ASSERT_EQ(Other().Send(wire::many::Request, thirty).status, status::Ok);
    EXPECT_EQ(m_server->Value("SELECT last_id-first_id FROM added_records"), "29");
    EXPECT_TRUE(Mine().Send("LstStCat").changed.contains("VenTp"));
    EXPECT_FALSE(Other().Send("LstStCat").changed.contains("VenTp"));
    EXPECT_TRUE(isRefused(remove(Mine(), "T3"), status::RecordChanged)) << "it was not there in the list";
    ASSERT_TRUE(list(Mine()).changed.isEmpty());
    ASSERT_EQ(list(Other()).status, status::Ok);
    EXPECT_EQ(remove(Mine(), "T3").status, status::Ok);
    EXPECT_TRUE(isRefused(remove(Other(), "T3"), status::NotFound));
    // Who changes one of them meets the change of whoever added it, and the other way round.
    const wire::Fields renamed{{"OCd", "T4"}, {"Cd", "T4"}, {"Nm", "Renamed"}};
    EXPECT_EQ(Mine().Send("UpdVenTp", renamed).status, status::Ok);
    EXPECT_TRUE(isRefused(remove(Other(), "T4"), status::RecordChanged));
    EXPECT_EQ(remove(Mine(), "T4").status, status::Ok) << "the last change by others was seen";
    EXPECT_EQ(remove(Other(), "T5").status, status::Ok);
    EXPECT_TRUE(isRefused(remove(Mine(), "T5"), status::NotFound));
    // What was there for a session that ended is kept as long as one goes on that may ask.
    EXPECT_EQ(m_server->Connect()->SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
    EXPECT_EQ(m_server->Value("SELECT COUNT(*) FROM added_records"), "1");
}

TEST_P(LostUpdateTest, EveryUpdateAndDeleteIsRefusedOnceSomebodyElseChangedTheRecord) {
    const Registry& registry = m_server->GetLibrary().GetRegistry();
    int tried = 0;
    // What is deleted cannot be updated any more: those come last.
    QStringList requests = registry.RequestNames();
    std::stable_partition(requests.begin(), requests.end(),
                          [](const QString& name) { return !name.startsWith("Del"); });
    for (const QString& name : requests) {
        const RequestRule& rule = *registry.Find(name);
        if (!rule.changes || rule.access != Access::Edit)
            continue;
        // Stories tell of what is read by cluster and database, and of saves that stand in one request: each
        // of those is held to this by itself.
        if (name == u"UpdMap" || name == wire::many::Request)
            continue;
        const bool names = !rule.keyTags.isEmpty() || rule.single;
        const bool mustSay =
            name.startsWith("Del") || (name.startsWith("Upd") && name != "UpdPINs" &&
                                       name != "UpdCrcLocAlrts"); // rows of many locations at once
        EXPECT_TRUE(names || !mustSay) << name.toStdString() << " does not say which record it changes";
        if (!names)
            continue;
        SCOPED_TRACE(name.toStdString());
        const QString table = rule.tables.first();
        const QString column = rule.keyColumn.isEmpty() ? QString("id") : rule.keyColumn;
        const QString key =
            rule.single ? QString() : m_server->Value("SELECT " + column + " FROM " + table + " ORDER BY id");
        const qint64 id =
            rule.single ? 0 : m_server->Value("SELECT id FROM " + table + " ORDER BY id").toLongLong();
        wire::Fields fields;
        if (!rule.single)
            fields.append({rule.keyTags.first(), key});
        const auto [reader, byKey] = ReaderOf(rule);
        ASSERT_FALSE(reader.isEmpty());
        const wire::Fields readFields = byKey && !rule.single
                                            ? wire::Fields{{registry.Find(reader)->keyTags.first(), key}}
                                            : wire::Fields();
        const auto change = [&](qint64 session) {
            RunInTransaction(m_server->GetDatabase(), [&] {
                Database& database = m_server->GetDatabase();
                const QString now = StoredTime(m_server->Now());
                const qint64 number = database.RunInsert(
                    "INSERT INTO history_requests (at, operator_id, peer, request) VALUES (?, ?, ?, ?)",
                    {now, "ANNA", "local", "Test"});
                Changes(database).Enter({{table, id, {}}}, number, {session, "Anna Other", now});
            });
        };

        const auto read = [&] {
            const qint16 answered = Mine().Send(reader, readFields).status;
            return answered == status::Ok || answered == status::Continues; // the first part of it
        };
        ASSERT_TRUE(read());
        change(987654);
        const wire::Reply refused = Mine().Send(name, fields);
        EXPECT_EQ(refused.status, status::RecordChanged);
        EXPECT_EQ(wire::FirstValue(refused.fields, "ChBy"), "Anna Other");
        EXPECT_FALSE(wire::FirstValue(refused.fields, "ChAt").isEmpty());
        // The answer to the question is to read it again.
        ASSERT_TRUE(read());
        EXPECT_NE(Mine().Send(name, fields).status, status::RecordChanged);
        ++tried;
    }
    EXPECT_GT(tried, 40);
}

TEST_P(LostUpdateTest, AChangeOfSeveralRecordsSaysWhichOnesOthersChanged) {
    const auto registry = std::const_pointer_cast<Registry>(MakeRegistry());
    registry->AddRequest({.name = "UpdMultVenTp",
                          .area = Area::Acquisitions,
                          .access = Access::Edit,
                          .changes = true,
                          .handler = [](Context&, const wire::Fields&) { return Answer(); },
                          .tables = {"vendor_types"},
                          .keyTags = {"Cd"},
                          .keyColumn = "code",
                          .several = true});
    m_other.reset();
    m_server.reset();
    m_server = std::make_unique<TestServer>(TestServer::Options{.address = Address(), .registry = registry});
    m_other = m_server->Connect();
    ASSERT_EQ(m_other->SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);

    const auto rename = [&](const char* code) {
        ASSERT_EQ(
            Other().Send("UpdVenTp", {{"Cd", code}, {"Nm", QString("New ") + code}, {"OCd", code}}).status,
            status::Ok);
    };
    const QStringList codes = ValuesOf(Mine().Send("LstVenTp").fields, "Cd");
    wire::Fields all;
    for (const QString& code : codes)
        all.append({"Cd", code});
    EXPECT_EQ(Mine().Send("UpdMultVenTp", all).status, status::Ok);
    rename("BOOK");
    rename("PUB");
    const wire::Reply refused = Mine().Send("UpdMultVenTp", all);
    EXPECT_EQ(refused.status, status::RecordChanged);
    QStringList named = ValuesOf(refused.fields, "Cd");
    named.sort();
    EXPECT_EQ(named, (QStringList{"BOOK", "PUB"}));
    EXPECT_FALSE(InRecord(refused.fields, "Cd", "PUB", "ChBy").isEmpty());
    EXPECT_EQ(Mine().Send("UpdMultVenTp", {all[0]}).status,
              named.contains(all[0].value) ? status::RecordChanged : status::Ok);
    Mine().Send("LstVenTp"); // and has seen them
    EXPECT_EQ(Mine().Send("UpdMultVenTp", all).status, status::Ok);
}

TEST_P(LostUpdateTest, ARestartForgetsNoConflict) {
    const QString token = Mine().Token();
    ASSERT_EQ(Mine().Send("GetSecOptions").status, status::Ok);
    const quint64 number = Mine().LastNumber();
    ASSERT_EQ(Other().Send("UpdSecOptions", {{"PAX", "66"}}).status, status::Ok);
    m_server->Restart();
    auto again = m_server->Connect();
    ASSERT_EQ(again->Resume(token, number), status::Ok);
    EXPECT_EQ(again->Send("UpdSecOptions", {{"PAX", "55"}}).status, status::RecordChanged);
    ASSERT_EQ(again->Send("GetSecOptions").status, status::Ok);
    EXPECT_EQ(again->Send("UpdSecOptions", {{"PAX", "55"}}).status, status::Ok);
}

TEST_P(LostUpdateTest, TwoProgramsOnOneLibrarySeeEachOther) {
    LibraryOptions options;
    options.address = m_server->GetLibrary().GetAddress();
    options.hashCost = m_server->GetLibrary().GetHashCost();
    options.now = [this] { return m_server->Now(); };
    QString error;
    const auto second = Library::Open(options, &error);
    ASSERT_TRUE(second) << error.toStdString();
    TestClient there(second, "local");
    ASSERT_EQ(there.SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
    ASSERT_EQ(there.Send("LstVenTp").status, status::Ok);
    ASSERT_EQ(Mine().Send("UpdVenTp", {{"Cd", "BOOK"}, {"Nm", "Here"}, {"OCd", "BOOK"}}).status, status::Ok);
    EXPECT_EQ(there.Send("UpdVenTp", {{"Cd", "BOOK"}, {"Nm", "There"}, {"OCd", "BOOK"}}).status,
              status::RecordChanged);
}

} // namespace
} // namespace sysadmin::testing
