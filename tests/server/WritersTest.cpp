#include "Engines.h"

#include "support/TestServer.h"

#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThread>

#include <future>
#include <thread>

namespace sysadmin::testing {
namespace {

using namespace server;
using namespace std::chrono_literals;

template <class Condition>
void WaitUntil(const Condition& condition) {
    while (!condition())
        QThread::msleep(1);
}

TEST(WriterQueueTest, FirstComeFirstServed) {
    WriterQueue queue;
    auto turn = queue.Wait(WriterQueue::Clock::now());
    ASSERT_TRUE(turn);
    EXPECT_FALSE(queue.TakeIfFree());
    EXPECT_FALSE(queue.Wait(WriterQueue::Clock::now() + 1ms)) << "who has waited long enough leaves the line";
    QList<int> served;
    std::vector<std::thread> threads;
    for (int place = 0; place < 5; ++place) {
        threads.emplace_back([&, place] {
            const auto mine = queue.Wait(WriterQueue::Clock::now() + 1h);
            served.append(place);
        });
        WaitUntil([&] { return queue.CountWaiting() == place + 1; });
    }
    turn.End();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(served, (QList<int>{0, 1, 2, 3, 4}));
    EXPECT_TRUE(queue.TakeIfFree());
}

// A commit whose log cannot be brought to the disk may be lost with the machine: nobody is told that it is
// kept.
TEST(LogSyncTest, EverybodyWhoWaitsIsServedAndAMissingLogIsTold) {
    const QTemporaryDir folder;
    const StoreAddress address = StoreAddress::InDirectory(folder.path());
    LogSync sync;
    const quint64 lost = sync.Open(address);
    EXPECT_THROW(sync.Wait(lost), StoreError);
    Database database(address);
    database.Run("CREATE TABLE things (id INTEGER)");
    const quint64 way = sync.Open(address);
    EXPECT_THROW(sync.Wait(lost), StoreError)
        << "what was committed before the way was lost may be lost, too";
    std::atomic<int> served = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 20; ++i)
        threads.emplace_back([&] {
            for (int j = 0; j < 20; ++j) {
                sync.Wait(sync.Open(address));
                ++served;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(served, 400);
    EXPECT_EQ(sync.Open(address), way);
    // A connection that defers the disk says so; one that does not has waited when the commit returns.
    RunInTransaction(database, [&] { database.Run("INSERT INTO things VALUES (?)", {1}); });
    EXPECT_FALSE(database.HasCommitted());
    database.DeferDisk();
    RunInTransaction(database, [&] { database.Run("INSERT INTO things VALUES (?)", {2}); });
    EXPECT_TRUE(database.HasCommitted());
    std::promise<bool> onDisk;
    database.WhenOnDisk([&](bool done) { onDisk.set_value(done); });
    EXPECT_TRUE(onDisk.get_future().get());
    EXPECT_FALSE(database.HasCommitted());
    // Whoever removes the log takes away what was committed to it.
    QFile::remove(address.file + "-wal");
    RunInTransaction(database, [&] { database.Run("INSERT INTO things VALUES (?)", {3}); });
    EXPECT_THROW(database.WaitForDisk(), StoreError);
}

/// Two servers, each a program of its own as far as they know, on one library.
class WritersTest : public EngineTest {
protected:
    struct Ask {
        QString name;
        wire::Fields fields;
        QString operatorId = "SYSADMIN";
    };

    void SetUp() override {
        EngineTest::SetUp();
        if (IsSkipped())
            return;
        m_server.emplace(TestServer::Options{.address = Address()});
        m_second.emplace(TestServer::Options{
            .address = Address().value_or(StoreAddress::InDirectory(m_server->Directory())), .signOnAs = {}});
    }

    std::unique_ptr<TestClient> SignOn(const TestServer& server, const QString& operatorId) {
        auto client = server.Connect();
        EXPECT_EQ(client->SignOn(operatorId, SamplePassword(operatorId)), status::Ok);
        return client;
    }

    /// Sends both requests, to the same server or to one each, while somebody else changes something, so that
    /// both wait and then come one right after the other; answers the statuses in ascending order. Meanwhile
    /// somebody who only reads is answered.
    QList<qint16> AtOnce(const Ask& one, const Ask& other, bool sameServer) {
        TestServer& second = sameServer ? *m_server : *m_second;
        const auto reader = SignOn(*m_server, "SYSADMIN");
        const std::unique_ptr<TestClient> clients[] = {SignOn(*m_server, one.operatorId),
                                                       SignOn(second, other.operatorId)};
        m_server->Advance(3600); // the time of a session's last use is due
        QList<qint16> statuses{-1, -1};
        const Ask* asks[] = {&one, &other}; // a thread may look at them only when the change has ended
        std::vector<std::thread> threads;
        {
            const auto database = m_server->GetLibrary().Connect();
            const Transaction others(*database, Transaction::Mode::Write);
            for (int i = 0; i < 2; ++i)
                threads.emplace_back(
                    [&, i] { statuses[i] = clients[i]->Send(asks[i]->name, asks[i]->fields).status; });
            WaitUntil(
                [&] { return m_server->GetLibrary().Writers().CountWaiting() == (sameServer ? 2 : 1); });
            EXPECT_EQ(reader->Send("LstVenTp").status, status::Ok) << "who reads waits for nobody";
        }
        for (std::thread& thread : threads)
            thread.join();
        std::sort(statuses.begin(), statuses.end());
        return statuses;
    }

    QString IdOf(const QString& table, const QString& column, const QString& value) {
        return m_server->Value("SELECT id FROM " + table + " WHERE " + column + "=?", {value});
    }

    std::optional<TestServer> m_server;
    std::optional<TestServer> m_second; // the clocks are set apart
};
INSTANTIATE_ON_ENGINES(WritersTest);

/// Every kind of rule that looks at what is stored before it writes.
TEST_P(WritersTest, RulesHoldWhenTwoComeAtOnce) {
    struct Case {
        const char* rule;
        std::function<QPair<Ask, Ask>()> prepare;
        QList<QList<qint16>> allowed; ///< the statuses, whoever comes first
        QString check;
        QString checked;
    };
    const auto desk = [](int place) {
        return [place](TestServer& server) {
            const QString id = server.Value("SELECT id FROM clusters WHERE code='MAIN'");
            wire::Fields fields{{"CID", id}, {"CCD", "MAIN"}, {"CNM", "University Libraries"}, {"BLT", "N"}};
            const wire::Fields record = server.Send("GetCluster", {{"CID", id}}).fields;
            const QStringList groups = ValuesOf(record, "CPGID");
            const QStringList locations = ValuesOf(record, "CLOCID");
            for (const int i : {0, 1})
                fields += wire::Fields{
                    {"CPGID", groups[i]}, {"CLOCID", locations[i]}, {"COPCDF", i == place ? "Y" : "N"}};
            return Ask{"UpdCluster", fields};
        };
    };
    const Case cases[] = {
        {"a code is given once",
         [] {
             return qMakePair(Ask{"AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}}},
                              Ask{"AddVenTp", {{"Cd", "zine"}, {"Nm", "Little magazines"}}});
         },
         {{status::Ok, status::DuplicateCode}},
         "SELECT COUNT(*) FROM vendor_types WHERE code IN ('ZINE', 'zine')",
         "1"},
        {"a code is given once within a cluster",
         [this] {
             const wire::Fields fields{
                 {"Cd", "ZINE"}, {"Nm", "Zinesters"}, {"CID", IdOf("clusters", "code", "MAIN")}};
             return qMakePair(Ask{"AddPatGp", fields}, Ask{"AddPatGp", fields});
         },
         {{status::Ok, status::DuplicateCode}},
         "SELECT COUNT(*) FROM patron_groups WHERE code='ZINE'",
         "1"},
        {"one default",
         [] {
             return qMakePair(Ask{"AddPL", {{"Cd", "D1"}, {"Nm", "Desk 1"}, {"DP", "Y"}}},
                              Ask{"AddPL", {{"Cd", "D2"}, {"Nm", "Desk 2"}, {"DP", "Y"}}});
         },
         {{status::Ok, status::Ok}},
         "SELECT COUNT(*) FROM print_locations WHERE is_default='Y'",
         "1"},
        {"one public catalogue's desk",
         [&] { return qMakePair(desk(0)(*m_server), desk(1)(*m_server)); },
         {{status::Ok, status::Ok}},
         "SELECT COUNT(*) FROM circulation_policy_locations p JOIN circulation_policy_groups g ON "
         "g.id=p.group_id JOIN clusters c ON c.id=g.cluster_id WHERE c.code='MAIN' AND p.is_opac_desk='Y'",
         "1"},
        {"a single record is made once",
         [this] {
             m_server->GetDatabase().Run("DELETE FROM base_currency");
             const wire::Fields fields{{"CrNm", "Euro"}, {"CrCd", "EUR"}, {"Dec", "2"}, {"Dlm", ","}};
             return qMakePair(Ask{"AddBsCur", fields}, Ask{"AddBsCur", fields});
         },
         {{status::Ok, status::DuplicateRecord}},
         "SELECT COUNT(*) FROM base_currency",
         "1"},
        {"what is in use is not deleted",
         [this] {
             const QString id = wire::FirstValue(m_server->Send("AddLib", {{"LN", "Annex"}}).fields, "ID");
             return qMakePair(Ask{"DelLib", {{"ID", id}, {"LN", "Annex"}}},
                              Ask{"AddLoc", {{"Cd", "ANX"}, {"Nm", "Annex"}, {"Lb", id}}});
         },
         {{status::Ok, status::ColumnError}, {status::Ok, 62}},
         "SELECT COUNT(*) FROM locations WHERE code='ANX' AND owning_library_id IS NULL",
         "0"},
        {"somebody keeps the security right, and who lost it changes nothing more",
         [this] {
             const QString deputies = wire::FirstValue(
                 m_server
                     ->Send("AddMPrf", {{"SOI", "VIEWER"}, {"OSt", "1"}, {"Sec", "Y"}, {"Nm", "Deputies"}})
                     .fields,
                 "ID");
             const QString administrators =
                 m_server->Value("SELECT profile_id FROM master_profile_operators m JOIN operators o ON "
                                 "o.id=m.operator_row WHERE o.operator_id='SYSADMIN'");
             return qMakePair(Ask{"DelMPrf", {{"ID", administrators}}},
                              Ask{"DelMPrf", {{"ID", deputies}}, "VIEWER"});
         },
         {{status::Ok, status::LastSecurityRight}},
         "SELECT COUNT(*) FROM master_profile_operators m JOIN master_profiles p ON p.id=m.profile_id WHERE "
         "p.security_edit='Y'",
         "1"},
    };
    for (const bool sameServer : {true, false}) {
        if (!sameServer) { // as if nothing had been
            m_server.reset();
            m_second.reset();
            SetUp();
        }
        for (const Case& one : cases) {
            SCOPED_TRACE(QString("%1, %2").arg(one.rule, sameServer ? "one server" : "two").toStdString());
            const auto [first, second] = one.prepare();
            const QList<qint16> statuses = AtOnce(first, second, sameServer);
            EXPECT_TRUE(one.allowed.contains(statuses)) << statuses[0] << ' ' << statuses[1];
            EXPECT_EQ(m_server->Value(one.check), one.checked);
        }
    }
}

TEST_P(WritersTest, WhoWaitsTooLongIsToldAndHasChangedNothing) {
    LibraryOptions options;
    options.address = m_server->GetLibrary().GetAddress();
    options.patience = 20ms;
    options.now = [this] { return m_server->Now(); };
    QString error;
    const auto hasty = Library::Open(options, &error);
    ASSERT_TRUE(hasty) << error.toStdString();
    TestClient client(hasty, "local");
    ASSERT_EQ(client.SignOn("SYSADMIN", SamplePassword("SYSADMIN")), status::Ok);
    {
        const auto database = m_server->GetLibrary().Connect();
        const Transaction others(*database, Transaction::Mode::Write);
        EXPECT_TRUE(database->FirstValue("SELECT MAX(id) FROM vendor_types").isValid());
        EXPECT_EQ(client.Send("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}}).status,
                  status::CommunicationsFailure);
    }
    EXPECT_EQ(client.Send("AddVenTp", {{"Cd", "ZINE"}, {"Nm", "Zines"}}).status, status::Ok);
}

} // namespace
} // namespace sysadmin::testing
