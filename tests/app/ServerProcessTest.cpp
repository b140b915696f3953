#include "app/Programs.h"
#include "app/ServedTest.h"
#include "server/store/Database.h"
#include "server/store/Schema.h"

#include <QTcpServer>
#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace sysadmin {
namespace {

namespace status = wire::status;
using Fault = ServerRig::Fault;
using Direction = Fault::Direction;
using Then = Fault::Then;

class ServerProcessTest : public ServedTest {
protected:
    void SetUp() override {
        Serve(server::StoreAddress::InDirectory(m_directory.path()), {"--library", m_directory.path()});
    }

private:
    QTemporaryDir m_directory;
};

TEST_F(ServerProcessTest, WhateverHappensAroundAnAddItIsThereOnce) {
    const auto channel = SignedOnChannel();
    QStringList added;
    for (const Direction direction : {Direction::ToServer, Direction::ToClient})
        for (const auto& [then, passed] : std::initializer_list<std::pair<Then, qint64>>{{Then::Cut, 0},
                                                                                         {Then::Cut, 1},
                                                                                         {Then::Cut, 5},
                                                                                         {Then::Cut, 20},
                                                                                         {Then::Kill, 0},
                                                                                         {Then::Stall, 0}}) {
            added.append("F" + QString::number(added.size()));
            SCOPED_TRACE(added.last().toStdString());
            Rig().Expect({.direction = direction, .passed = passed, .then = then});
            if (then == Then::Stall) {
                channel->SetTimeLimit(400ms);
                EXPECT_EQ(Add(*channel, added.last()), status::CommunicationsFailure);
                channel->SetTimeLimit(30s);
            }
            EXPECT_EQ(Add(*channel, added.last()), status::Ok) << channel->LastProblem().toStdString();
            EXPECT_EQ(Rig().Faults(), added.size());
        }
    const QStringList codes = Codes(*channel);
    for (const QString& code : added)
        EXPECT_EQ(codes.count(code), 1) << code.toStdString();

    // A reply of many packets, cut far inside.
    Rig().Expect({.direction = Direction::ToClient, .passed = 1500});
    EXPECT_EQ(channel->SendRequest("LstItmTp"), status::Ok);
    EXPECT_EQ(Rig().Faults(), added.size() + 1);
    EXPECT_FALSE(channel->ReplyFields().isEmpty());
}

TEST_F(ServerProcessTest, KilledAtAnyMomentNothingIsLostOrDoubled) {
    const auto channel = SignedOnChannel();
    const QStringList before = Codes(*channel);
    constexpr int Kills = 4;
    Rig().KillAgainAndAgain(Kills, 150);
    QStringList added;
    while (Rig().Faults() < Kills && added.size() < 5000)
        added.append(AddInTheEnd(*channel, "K" + QString::number(added.size())));
    EXPECT_GT(added.size(), Kills);
    EXPECT_EQ(Sorted(Codes(*channel)), Sorted(before + added));
}

TEST_F(ServerProcessTest, AnotherCertificateIsRefusedUntilTheOperatorTrustsIt) {
    const auto channel = SignedOnChannel();
    const QString fingerprint = Rig().Fingerprint();
    Rig().KillServer();
    Rig().StartServer();
    EXPECT_EQ(Rig().Fingerprint(), fingerprint) << "a restart keeps the certificate";
    EXPECT_EQ(Add(*channel, "SAMECERT"), status::Ok) << channel->LastProblem().toStdString();

    Rig().KillServer();
    server::WriteSetting(*OpenLibrary()->Connect(), "tls_certificate", "");
    Rig().StartServer();
    ASSERT_NE(Rig().Fingerprint(), fingerprint);
    EXPECT_EQ(Add(*channel, "NEWCERT"), status::CommunicationsFailure);
    EXPECT_TRUE(channel->LastProblem().contains("another certificate than before") &&
                channel->LastProblem().contains(Rig().Fingerprint()))
        << channel->LastProblem().toStdString();

    // What the question shows is what the server told its administrator when it started.
    TrustStore().Forget(Rig().Address());
    prompter.ExpectBox(
        QString(
            "This is the first connection to %1.\r\n\r\nThe server proves who it is with a certificate of "
            "its "
            "own making. Its fingerprint (SHA-256) is\r\n\r\n%2\r\n\r\nThe server's administrator can tell "
            "whether that is right.\r\n\r\nDo you trust this server, now and in future?")
            .arg(Rig().Address().Text(), Rig().Fingerprint()));
    EXPECT_EQ(Add(*channel, "NEWCERT"), status::Ok) << channel->LastProblem().toStdString();
    EXPECT_EQ(Codes(*channel).count("NEWCERT"), 1);
}

TEST_F(ServerProcessTest, ASlowNetworkIsOnlySlow) {
    Rig().SetPieces(40);
    const auto channel = SignedOnChannel();
    const wire::Fields slowly = (Codes(*channel), channel->ReplyFields());
    Rig().SetPieces(0);
    Codes(*channel);
    EXPECT_EQ(channel->ReplyFields(), slowly);
}

TEST_F(ServerProcessTest, AnEditSurvivesWhatHappensToTheServer) {
    OpenVendorTypes();
    EnterNew("KILLED");
    Rig().Expect({.direction = Direction::ToClient, .then = Then::Kill});
    Click("cmdSave");
    EXPECT_FALSE(IsEditing());
    EXPECT_EQ(Grid().SelectedKey(), "KILLED");

    EnterNew("AWAY");
    Rig().KillServer();
    SaveInVain();
    Rig().StartServer();
    Channel().SetReconnectLimit(10s);
    Click("cmdSave");
    EXPECT_FALSE(IsEditing());
    const QStringList codes = Codes(*SignedOnChannel("VIEWER"));
    EXPECT_EQ(codes.count("KILLED"), 1);
    EXPECT_EQ(codes.count("AWAY"), 1);
}

TEST(ServerProgramTest, RefusesInOneLine) {
    const QTemporaryDir folder;
    const QString sample = folder.filePath("sample");
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost));
    const QString taken = "127.0.0.1:" + QString::number(other.serverPort());
    QFile notes(folder.filePath("notes"));
    ASSERT_TRUE(notes.open(QIODevice::WriteOnly));
    QDir(folder.path()).mkdir("damaged");
    QFile damaged(folder.filePath("damaged/library.sqlite"));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly) && damaged.write(QByteArray(8192, 'x')) > 0);
    damaged.close();

    const struct {
        QStringList arguments;
        int exitStatus;
        QString word;
    } cases[] = {
        {{"--bogus"}, 2, "--bogus"},
        {{"--listen", "nowhere:port"}, 2, "--listen"},
        {{"--library"}, 2, "--library"},
        {{"--library", sample, "--create-sample", "--listen", "0.0.0.0:0"}, 1, "this machine"},
        {{"--library", sample, "--listen", "[::]:0"}, 1, "this machine"},
        {{"--library", sample, "--listen", taken}, 1, taken},
        {{"--library", notes.fileName()}, 1, notes.fileName()},
        {{"--library", folder.filePath("damaged")}, 1, "damaged"},
        {{"--library", sample, "--certificate", notes.fileName(), "--key", notes.fileName()}, 1, "notes"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.arguments.join(' ').toStdString());
        const ProgramResult result = RunProgram(SYSADMIN_SERVER_PROGRAM, one.arguments);
        EXPECT_EQ(result.exitStatus, one.exitStatus);
        EXPECT_TRUE(result.IsOneLineOfErrors() && result.errors.contains(one.word))
            << result.output.toStdString() << result.errors.toStdString();
    }
    const ProgramResult help = RunProgram(SYSADMIN_SERVER_PROGRAM, {"--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_TRUE(help.errors.isEmpty() && help.output.contains("--create-sample"));

    const QString nowhere = folder.filePath("nowhere");
    const std::pair<QString, QString> checks[] = {{sample, "Everything is in order."},
                                                  {folder.filePath("damaged"), "FAULT: "},
                                                  {nowhere, "There is no library"}};
    for (const auto& [library, words] : checks) {
        const ProgramResult check = RunProgram(SYSADMIN_SERVER_PROGRAM, {"--library", library, "--check"});
        EXPECT_EQ(check.exitStatus, library == sample ? 0 : 1) << library.toStdString();
        EXPECT_TRUE(check.errors.isEmpty() && check.output.contains(words)) << check.output.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(nowhere));
}

} // namespace
} // namespace sysadmin
