#include "app/Client.h"
#include "app/Programs.h"
#include "app/RawPeer.h"
#include "app/ServedTest.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "framework/ListGrid.h"
#include "server/store/Database.h"
#include "server/store/Schema.h"
#include "wire/Codec.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <random>
#include <thread>

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

TEST_F(ServerProcessTest, KilledAroundAnAddItIsThereOnce) {
    const auto channel = SignedOnChannel();
    Rig().Expect({.direction = Direction::ToClient, .then = Then::Kill});
    EXPECT_EQ(Add(*channel, "REPLYLOST"), status::Ok) << channel->LastProblem().toStdString();
    Rig().Expect({.direction = Direction::ToServer, .then = Then::Kill});
    EXPECT_EQ(Add(*channel, "ASKEDLOST"), status::Ok) << channel->LastProblem().toStdString();
    EXPECT_EQ(Rig().Faults(), 2);
    const QStringList codes = Codes(*channel);
    EXPECT_EQ(codes.count("REPLYLOST"), 1);
    EXPECT_EQ(codes.count("ASKEDLOST"), 1);
}

TEST_F(ServerProcessTest, KilledAtAnyMomentNothingIsLostOrDoubled) {
    const auto channel = SignedOnChannel();
    const QStringList before = Codes(*channel);
    constexpr int Kills = 4;
    Rig().KillAgainAndAgain(Kills, 150);
    QStringList added;
    while (Rig().Faults() < Kills && added.size() < 5000) {
        const QString code = "K" + QString::number(added.size());
        // Hit three times in a row the client gives up; the operator presses "Save" again.
        qint16 result = status::CommunicationsFailure;
        for (int tries = 0; tries < 5 && result == status::CommunicationsFailure; ++tries)
            result = Add(*channel, code);
        ASSERT_EQ(result, status::Ok) << code.toStdString() << ": " << channel->LastProblem().toStdString();
        added.append(code);
    }
    EXPECT_GT(added.size(), Kills);
    QStringList now = Codes(*channel);
    QStringList wanted = before + added;
    now.sort();
    wanted.sort();
    EXPECT_EQ(now, wanted);
}

TEST_F(ServerProcessTest, CutInTheMiddleOfARequestOrAReplyTheAddIsThereOnce) {
    const auto channel = SignedOnChannel();
    QStringList added;
    int faults = 0;
    for (const Direction direction : {Direction::ToServer, Direction::ToClient})
        for (const qint64 passed : {0, 1, 5, 20}) {
            added.append(QString("C%1").arg(++faults));
            Rig().Expect({.direction = direction, .passed = passed});
            EXPECT_EQ(Add(*channel, added.last()), status::Ok) << channel->LastProblem().toStdString();
            EXPECT_EQ(Rig().Faults(), faults);
        }
    const QStringList codes = Codes(*channel);
    for (const QString& code : added)
        EXPECT_EQ(codes.count(code), 1) << code.toStdString();

    // A reply of many packets, cut far inside.
    Rig().Expect({.direction = Direction::ToClient, .passed = 1500});
    EXPECT_EQ(channel->SendRequest("LstItmTp"), status::Ok);
    EXPECT_EQ(Rig().Faults(), faults + 1);
    EXPECT_FALSE(channel->ReplyFields().isEmpty());
}

TEST_F(ServerProcessTest, AStalledConnectionEndsWithTheTimeLimitAndTheNextTryGetsTheReply) {
    const auto channel = SignedOnChannel();
    for (const Direction direction : {Direction::ToServer, Direction::ToClient}) {
        const QString code = direction == Direction::ToServer ? "STALLASK" : "STALLREPLY";
        channel->SetTimeLimit(400ms);
        Rig().Expect({.direction = direction, .then = Then::Stall});
        EXPECT_EQ(Add(*channel, code), status::CommunicationsFailure);
        channel->SetTimeLimit(30s);
        EXPECT_EQ(Add(*channel, code), status::Ok) << channel->LastProblem().toStdString();
        EXPECT_EQ(Codes(*channel).count(code), 1);
    }
}

TEST_F(ServerProcessTest, ASlowNetworkIsOnlySlow) {
    Rig().SetPieces(40);
    const auto channel = SignedOnChannel();
    EXPECT_EQ(Add(*channel, "SLOW"), status::Ok) << channel->LastProblem().toStdString();
    const wire::Fields slowly = (Codes(*channel), channel->ReplyFields());
    Rig().SetPieces(0);
    Codes(*channel);
    EXPECT_EQ(channel->ReplyFields(), slowly);
}

TEST_F(ServerProcessTest, HostilePeersDisturbNobody) {
    const auto channel = SignedOnChannel();
    RawPeer slow(Rig().ServerPort());
    slow.Write(wire::Encode(wire::Request{0, "Hello", {}}).chopped(2));

    QList<QByteArray> hostile{
        "GET / HTTP/1.1\r\nHost: localhost\r\n\r\n",
        QByteArray::fromHex("830065") + "Hello" + QByteArray::fromHex("9affffffff"),
        QByteArray::fromHex("83007b00000000ffffffff"),
        wire::Encode(wire::Request{0, QString(65, 'n'), {}}),
        wire::Encode(wire::Request{0, "Hello", {{QString(33, 't'), ""}}}),
        wire::Encode(wire::Request{0, "Hello", {{"V", QString(70'000, 'v')}}}),
        wire::Encode(wire::Request{7, "LstVenTp", {}}),
    };
    std::mt19937 random(20261);
    for (int i = 0; i < 20; ++i) {
        QByteArray noise(1 + int(random() % 3000), '\0');
        for (char& byte : noise)
            byte = char(random());
        noise[0] = char(0xff); // never the beginning of a message
        hostile.append(noise);
    }
    int number = 0;
    for (const QByteArray& bytes : hostile) {
        RawPeer peer(Rig().ServerPort());
        ASSERT_TRUE(peer.IsConnected());
        peer.Write(bytes);
        EXPECT_TRUE(peer.IsCutOff()) << bytes.left(32).toHex().toStdString();
        EXPECT_EQ(Add(*channel, "H" + QString::number(++number)), status::Ok);
    }

    // Somebody who has signed on may send more, but is held to limits, too, before memory is taken.
    const qint64 memoryBefore = Rig().PeakMemory();
    const QByteArray greedy[] = {
        QByteArray::fromHex("83016841646456656e54708262436e7a00100001"), // a value of a byte too much
        QByteArray::fromHex("83016841646456656e54709a10000000"),         // fields without end
        QByteArray::fromHex("83016841646456656e54709a00040000") +        // more than a message may hold
            (QByteArray::fromHex("61567a000fffff") + QByteArray(0xfffff, 'x')).repeated(65),
    };
    for (const QByteArray& bytes : greedy) {
        RawPeer peer(Rig().ServerPort());
        ASSERT_TRUE(peer.SignOn("VIEWER"));
        peer.Write(bytes);
        EXPECT_TRUE(peer.IsCutOff()) << bytes.left(32).toHex().toStdString();
        EXPECT_EQ(Add(*channel, "H" + QString::number(++number)), status::Ok);
    }
    EXPECT_LT(Rig().PeakMemory() - memoryBefore, 400 * 1024);
    EXPECT_EQ(Rig().Faults(), 0);
    EXPECT_EQ(Codes(*channel).filter(QRegularExpression("^H\\d")).size(), number);
}

TEST_F(ServerProcessTest, ClientsAtOnceSeeEachOthersChangesAndLoseNone) {
    const auto first = SignedOnChannel();
    const auto second = SignedOnChannel();
    EXPECT_EQ(Add(*first, "BOTH"), status::Ok);
    EXPECT_TRUE(Codes(*second).contains("BOTH"));
    EXPECT_EQ(Add(*second, "BOTH"), status::DuplicateCode);
    second->PutField("Cd", "BOTH");
    EXPECT_EQ(second->SendRequest("DelVenTp"), status::Ok);
    first->PutField("Cd", "BOTH");
    EXPECT_EQ(first->SendRequest("DelVenTp"), status::NotFound);

    constexpr int Peers = 4;
    constexpr int Adds = 15;
    std::atomic<int> done = 0;
    std::vector<std::thread> threads;
    for (int peer = 0; peer < Peers; ++peer)
        threads.emplace_back([&, peer] {
            RawPeer client(Rig().ServerPort());
            if (!client.SignOn("SYSADMIN"))
                return;
            for (int i = 0; i < Adds; ++i) {
                const QString code = QString("P%1N%2").arg(peer).arg(i);
                const auto reply = client.Ask(quint64(i) + 1, "AddVenTp", {{"Cd", code}, {"Nm", code}});
                done += reply && reply->status == status::Ok;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(done, Peers * Adds);
    EXPECT_EQ(Codes(*first).filter(QRegularExpression("^P\\dN\\d+$")).size(), Peers * Adds);
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

TEST_F(ServerProcessTest, TheScreensLiveThroughIt) {
    CommandLine line;
    line.server = Rig().Address();
    Client client(prompter, line);
    ASSERT_EQ(client.Comm().SignOnDirectly("SYSADMIN", testing::SamplePassword("SYSADMIN")), "");
    ASSERT_TRUE(client.Start({"--server", line.server->Text()}));
    MainWindow& window = *client.Window();
    window.OpenScreen("Acquisitions_VendorTypes");
    Screen* screen = window.FindScreen("Acquisitions_VendorTypes");
    ASSERT_TRUE(screen);
    const auto click = [&](const char* button) { screen->findChild<QAbstractButton*>(button)->click(); };
    const auto isEditing = [&] { return screen->findChild<QAbstractButton*>("cmdCancel")->isEnabled(); };
    const auto enter = [&](const QString& code) {
        click("cmdNew");
        QTest::keyClicks(screen->findChild<QLineEdit*>("txtCode"), code);
        QTest::keyClicks(screen->findChild<QLineEdit*>("txtName"), "Type " + code);
    };
    auto* grid = screen->findChild<ListGrid*>("vsf");

    enter("KILLED");
    Rig().Expect({.direction = Direction::ToClient, .then = Then::Kill});
    click("cmdSave");
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(grid->SelectedKey(), "KILLED");

    enter("AWAY");
    Rig().KillServer();
    client.Comm().GetChannel().SetReconnectLimit(300ms);
    prompter.ExpectDialogResult("frmError", [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLabel*>("lblErrorMessage")->text(), "Communications Failure");
        dialog.findChild<QAbstractButton*>("cmdOKCompress")->click();
    });
    click("cmdSave");
    EXPECT_TRUE(isEditing()) << "what was entered is not lost";
    Rig().StartServer();
    client.Comm().GetChannel().SetReconnectLimit(10s);
    click("cmdSave");
    EXPECT_FALSE(isEditing());
    const auto channel = SignedOnChannel("VIEWER");
    EXPECT_EQ(Codes(*channel).count("KILLED"), 1);
    EXPECT_EQ(Codes(*channel).count("AWAY"), 1);
    window.Abort = true;
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
