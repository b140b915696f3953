#include "app/ServedTest.h"
#include "support/PostgresServer.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

using namespace std::chrono_literals;

namespace sysadmin {
namespace {

namespace status = wire::status;

/// A server whose database is taken away while it runs.
class DatabaseAwayTest : public ServedTest {
protected:
    void ServeOnPostgres() {
        m_postgres = std::make_unique<testing::PostgresServer>();
        if (!m_postgres->Reason().isEmpty())
            GTEST_SKIP() << m_postgres->Reason().toStdString();
        Serve(m_postgres->MakeDatabase("away"), {"--database", m_postgres->Url("away")});
    }

    /// Runs `work` while the database is torn away and comes back, over and over again.
    template <class Work>
    void WhileItComesAndGoes(int times, int awayMilliseconds, const Work& work) {
        std::atomic<int> left = times;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            for (; left > 0; --left) {
                Postgres().Crash();
                QThread::msleep(ulong(awayMilliseconds));
                Postgres().Start();
                QThread::msleep(200);
            }
        }));
        thread->start();
        while (left > 0)
            work();
        thread->wait();
    }

    testing::PostgresServer& Postgres() { return *m_postgres; }

private:
    std::unique_ptr<testing::PostgresServer> m_postgres;
};

TEST_F(DatabaseAwayTest, TornAwayAgainAndAgainNothingIsLostOrDoubled) {
    ServeOnPostgres();
    if (IsSkipped())
        return;
    const auto channel = SignedOnChannel();
    const QStringList before = Codes(*channel);
    QStringList added;
    WhileItComesAndGoes(3, 700,
                        [&] { added.append(AddInTheEnd(*channel, "T" + QString::number(added.size()))); });
    EXPECT_EQ(Sorted(Codes(*channel)), Sorted(before + added));
}

TEST_F(DatabaseAwayTest, AnEditSurvivesThatTheDatabaseIsAwayForLong) {
    ServeOnPostgres();
    if (IsSkipped())
        return;
    OpenVendorTypes();
    EnterNew("AWAY");
    Postgres().Crash();
    for (int tries = 0; tries < 2; ++tries) {
        SaveInVain();
        EXPECT_TRUE(Channel().LastProblem().contains("database"));
        EXPECT_EQ(TextOf("txtCode"), "AWAY");
    }
    Postgres().Start();
    Click("cmdSave");
    EXPECT_FALSE(IsEditing()) << "the session has gone on";
    EXPECT_EQ(Grid().SelectedKey(), "AWAY");
    EXPECT_EQ(Codes(Channel()).count("AWAY"), 1);
    EXPECT_EQ(Codes(*SignedOnChannel("VIEWER")).count("AWAY"), 1) << "and others see it";
}

TEST_F(DatabaseAwayTest, AFullDiskRefusesChangesAndEndsNoSession) {
    const QTemporaryDir folder;
    Serve(server::StoreAddress::InDirectory(folder.path()), {"--library", folder.path()});
    const auto channel = SignedOnChannel();
    ASSERT_EQ(Add(*channel, "ROOM"), status::Ok);
    const qint64 used = QFileInfo(folder.filePath("library.sqlite-wal")).size();
    ASSERT_GT(used, 0);
    if (!Rig().LimitFiles(quint64(used)))
        GTEST_SKIP() << "this system cannot limit the files of another process";

    // The change that no longer fits is refused whole; what is there can still be read.
    QStringList added{"ROOM"};
    qint16 result = status::Ok;
    while (result == status::Ok && added.size() < 1000) {
        added.append("FULL" + QString::number(added.size()));
        result = Add(*channel, added.last());
    }
    EXPECT_EQ(result, status::TableError);
    const QString refused = added.takeLast();
    EXPECT_FALSE(Codes(*channel).contains(refused));
    EXPECT_EQ(Add(*channel, refused), status::TableError);

    // Neither does a connection that breaks just now end the session.
    channel->SetReconnectLimit(300ms);
    Rig().Expect({.direction = ServerRig::Fault::Direction::ToServer});
    EXPECT_EQ(Add(*channel, refused), status::CommunicationsFailure);
    EXPECT_TRUE(channel->LastProblem().contains("disk")) << channel->LastProblem().toStdString();
    EXPECT_EQ(Add(*channel, refused), status::CommunicationsFailure);

    EXPECT_TRUE(Rig().LimitFiles(0));
    EXPECT_EQ(Add(*channel, refused), status::Ok) << channel->LastProblem().toStdString();
    const QStringList codes = Codes(*channel);
    for (const QString& code : added + QStringList{refused})
        EXPECT_EQ(codes.count(code), 1) << code.toStdString();
}

} // namespace
} // namespace sysadmin
