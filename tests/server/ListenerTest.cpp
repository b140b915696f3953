#include "server/Listener.h"
#include "server/Databases.h"

#include "server/OperatorPasswords.h"
#include "server/ServerOptions.h"
#include "server/remote/AddressTest.h"
#include "support/TestServer.h"
#include "wire/Codec.h"

#include <QSslConfiguration>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

/// A client's socket, for well-behaved clients and for others.
class TlsClient {
public:
    explicit TlsClient(quint16 port, bool encrypt = true) {
        m_socket.setPeerVerifyMode(QSslSocket::VerifyNone);
        if (encrypt)
            m_socket.connectToHostEncrypted("127.0.0.1", port);
        else
            m_socket.connectToHost("127.0.0.1", port);
        m_connected = QTest::qWaitFor([&] {
            return encrypt ? m_socket.isEncrypted() : m_socket.state() == QTcpSocket::ConnectedState;
        });
    }

    bool IsConnected() const { return m_connected && m_socket.state() == QTcpSocket::ConnectedState; }
    bool IsCutOff(int milliseconds = 5000) {
        return QTest::qWaitFor([&] { return m_socket.state() == QTcpSocket::UnconnectedState; },
                               milliseconds);
    }
    void Write(const QByteArray& bytes) {
        m_socket.write(bytes);
        m_socket.flush();
    }
    std::optional<wire::Reply> Read() {
        wire::FrameScanner scanner;
        QByteArray received;
        const bool complete = QTest::qWaitFor([&] {
            received += m_socket.readAll();
            return scanner.Scan(received) == wire::FrameScanner::Result::Complete;
        });
        return complete ? wire::DecodeReply(received) : std::nullopt;
    }
    std::optional<wire::Reply> Ask(quint64 number, const QString& name, const wire::Fields& fields = {}) {
        Write(wire::Encode(wire::Request{number, name, fields}));
        return Read();
    }
    QString SignOn(const QString& id) {
        const auto hello = Ask(0, "Hello");
        if (!hello)
            return {};
        const QByteArray key = QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1());
        const QString sealed = Seal(SamplePassword(id), key, wire::PasswordPurpose::SignOn,
                                    wire::FirstValue(hello->fields, "NC"));
        const auto reply = Ask(0, "SignOn", {{"OI", id}, {"PW", sealed}});
        return reply ? wire::FirstValue(reply->fields, "SID") : QString();
    }
    QSslSocket& Socket() { return m_socket; }

private:
    QSslSocket m_socket;
    bool m_connected = false;
};

class ListenerTest : public ::testing::Test {
protected:
    ListenerTest() { Listen({}); }

    void Listen(const PeerLimits& limits, wire::EndpointFactory factory = {}) {
        QString error;
        m_identity = OwnIdentity(m_server.GetLibrary(), &error);
        ASSERT_TRUE(m_identity) << error.toStdString();
        // The library outlives the connections: they go with the listener.
        const std::shared_ptr<const Library> library(&m_server.GetLibrary(), [](const Library*) {});
        if (!factory)
            factory = [library, databases = std::make_shared<Databases>(library)](const QString& peer) {
                return std::make_unique<ServerConnection>(library, peer, databases);
            };
        m_listener = std::make_unique<Listener>(*m_identity, factory, limits);
        ASSERT_TRUE(m_listener->listen(QHostAddress::LocalHost, 0));
    }
    quint16 Port() const { return m_listener->serverPort(); }
    /// Whether the server still serves whoever behaves.
    bool IsServing() {
        TlsClient client(Port());
        return !client.SignOn("VIEWER").isEmpty() && client.Ask(1, "LstVenTp")->status == status::Ok;
    }

    TestServer m_server{{.signOnAs = ""}};
    std::optional<ServerIdentity> m_identity;
    std::unique_ptr<Listener> m_listener;
};

TEST_F(ListenerTest, TalksOnlyCiphersThatAreNotBroken) {
    const auto connects = [this](const QString& suite) {
        QSslSocket socket;
        QSslConfiguration configuration = socket.sslConfiguration();
        configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
        configuration.setProtocol(QSsl::TlsV1_2);
        configuration.setCiphers(suite);
        socket.setSslConfiguration(configuration);
        socket.connectToHostEncrypted("127.0.0.1", Port());
        const bool settled = QTest::qWaitFor(
            [&] { return socket.isEncrypted() || socket.state() == QAbstractSocket::UnconnectedState; });
        return settled && socket.isEncrypted();
    };
    EXPECT_TRUE(connects("ECDHE-ECDSA-AES256-GCM-SHA384"));
    EXPECT_TRUE(connects("ECDHE-ECDSA-CHACHA20-POLY1305"));
    EXPECT_FALSE(connects("ECDHE-ECDSA-AES256-SHA384"));
    EXPECT_FALSE(connects("ECDHE-ECDSA-AES128-SHA"));
}

TEST_F(ListenerTest, AnAccountDoesNotGoToACertificateThatNobodyVouchesFor) {
    QUrl url("https://127.0.0.1/");
    url.setPort(Port());
    const auto password = std::make_shared<const Secret>(Secret::FromText("secret-1"));
    const RemoteResult result = AskAddress({.url = url, .user = "library", .password = password},
                                           {.deadline = QDeadlineTimer(20'000)});
    EXPECT_EQ(result.outcome, Outcome::NewCertificate) << result.detail.toStdString();
}

TEST_F(ListenerTest, ServesOverTls) {
    TlsClient client(Port());
    ASSERT_TRUE(client.IsConnected());
    const QSslCertificate certificate = client.Socket().peerCertificate();
    EXPECT_EQ(ServerIdentity{.chain = {certificate}}.Fingerprint(), m_identity->Fingerprint());
    QString error;
    EXPECT_EQ(OwnIdentity(m_server.GetLibrary(), &error)->Fingerprint(), m_identity->Fingerprint());
    EXPECT_EQ(m_identity->Fingerprint().size(), 95);

    ASSERT_FALSE(client.SignOn("SYSADMIN").isEmpty());
    const QString longName(40, 'n');
    EXPECT_EQ(client.Ask(1, "AddVenTp", {{"Cd", "ZINE"}, {"Nm", longName}})->status, status::Ok);
    // Byte by byte, and two requests at once.
    const QByteArray request = wire::Encode(wire::Request{2, "LstVenTp", {}});
    for (const char byte : request) {
        client.Write(QByteArray(1, byte));
        QTest::qWait(1);
    }
    EXPECT_EQ(InRecord(client.Read()->fields, "Cd", "ZINE", "Nm"), longName);
    client.Write(wire::Encode(wire::Request{3, "DelVenTp", {{"Cd", "ZINE"}}}) +
                 wire::Encode(wire::Request{4, "DelVenTp", {{"Cd", "ZINE"}}}));
    QByteArray both;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        both += client.Socket().readAll();
        return both == wire::Encode(wire::Reply{3, status::Ok, {}}) +
                           wire::Encode(wire::Reply{4, status::NotFound, {}});
    }));
}

TEST_F(ListenerTest, CutsOffWhoBreaksTheProtocol) {
    const QByteArray hello = wire::Encode(wire::Request{0, "Hello", {}});
    const QList<QByteArray> wrongs{
        "GET / HTTP/1.1\r\n\r\n",
        QByteArray::fromHex("9bffffffffffffffff"),     // an array of very many
        QByteArray::fromHex("83007b7fffffffffffffff"), // a name that is longer than memory
        QByteArray::fromHex("83006141") +
            QByteArray::fromHex("9a10000000"),          // more fields than a message may hold
        wire::Encode(wire::Request{1, "LstVenTp", {}}), // nobody has signed on
        wire::Encode(wire::Request{0, "Hello", {{"X", QString(100'000, 'x')}}}),
    };
    for (const QByteArray& wrong : wrongs) {
        TlsClient client(Port());
        ASSERT_TRUE(client.IsConnected());
        client.Write(wrong);
        EXPECT_TRUE(client.IsCutOff()) << wrong.left(40).toHex().toStdString();
    }
    TlsClient plain(Port(), false);
    plain.Write(hello);
    EXPECT_TRUE(plain.IsCutOff());
    EXPECT_TRUE(IsServing());
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_listener->CountConnections() == 0; }));
}

TEST_F(ListenerTest, DoesNotWaitForEver) {
    Listen({.handshakeMilliseconds = 200, .messageMilliseconds = 300, .signOnMilliseconds = 900});
    TlsClient silent(Port(), false);
    EXPECT_TRUE(silent.IsConnected());
    EXPECT_TRUE(silent.IsCutOff());
    TlsClient half(Port());
    half.Write(wire::Encode(wire::Request{0, "Hello", {}}).chopped(1));
    EXPECT_TRUE(half.IsCutOff());
    TlsClient undecided(Port());
    EXPECT_EQ(undecided.Ask(0, "Hello")->status, status::Ok);
    EXPECT_FALSE(undecided.IsCutOff(500));
    EXPECT_TRUE(undecided.IsCutOff());
    // Who has signed on may think as long as wanted.
    TlsClient working(Port());
    ASSERT_FALSE(working.SignOn("VIEWER").isEmpty());
    EXPECT_FALSE(working.IsCutOff(1500));
    EXPECT_EQ(working.Ask(1, "LstVenTp")->status, status::Ok);
}

TEST_F(ListenerTest, StrangersMakeRoom) {
    Listen({.strangers = 4});
    TlsClient working(Port());
    ASSERT_FALSE(working.SignOn("VIEWER").isEmpty());
    std::vector<std::unique_ptr<TlsClient>> strangers;
    for (int i = 0; i < 8; ++i) {
        strangers.push_back(std::make_unique<TlsClient>(Port()));
        QTest::qWait(20);
    }
    EXPECT_TRUE(strangers.front()->IsCutOff());
    EXPECT_TRUE(strangers.back()->IsConnected());
    EXPECT_EQ(working.Ask(1, "LstVenTp")->status, status::Ok);
    EXPECT_LE(m_listener->CountConnections(), 5);
    strangers.clear();
    EXPECT_TRUE(IsServing());
}

TEST_F(ListenerTest, PastTheLimitTheIdlestSessionGoes) {
    Listen({.sessions = 2});
    TlsClient first(Port());
    TlsClient second(Port());
    TlsClient third(Port());
    ASSERT_FALSE(first.SignOn("VIEWER").isEmpty());
    QTest::qWait(5);
    ASSERT_FALSE(second.SignOn("VIEWER").isEmpty());
    QTest::qWait(5);
    EXPECT_EQ(first.Ask(1, "LstVenTp")->status, status::Ok);
    ASSERT_FALSE(third.SignOn("VIEWER").isEmpty());
    EXPECT_TRUE(second.IsCutOff());
    EXPECT_EQ(first.Ask(2, "LstVenTp")->status, status::Ok);
    EXPECT_EQ(third.Ask(1, "LstVenTp")->status, status::Ok);

    // The idlest of the operator who has the most: nobody signs others off by signing on.
    m_server.GetDatabase().Run("DELETE FROM sessions");
    Sessions sessions(m_server.GetDatabase());
    const qint64 other = sessions.Start("other", "nonce", 2, "", false, m_server.Now().addSecs(-60), 4);
    QList<qint64> rows;
    for (const char* token : {"a", "b", "c", "d"})
        rows.append(sessions.Start(token, "nonce", 1, "", false, m_server.Now().addSecs(rows.size()), 4));
    EXPECT_TRUE(sessions.Load(other, m_server.Now()));
    EXPECT_FALSE(sessions.Load(rows[0], m_server.Now()));
    for (const qint64 row : rows.mid(1))
        EXPECT_TRUE(sessions.Load(row, m_server.Now()));
}

TEST_F(ListenerTest, PipelinedMessagesWithResetsCostTheirConnectionOnly) {
    const QByteArray hellos = wire::Encode(wire::Request{0, "Hello", {}}).repeated(20);
    for (int round = 0; round < 60; ++round) {
        TlsClient client(Port());
        ASSERT_TRUE(client.IsConnected());
        client.Write(hellos);
        // The reset comes before, while, and after the messages are handled.
        QTest::qWait(round % 12);
        client.Socket().abort();
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_listener->CountConnections() == 0; }));
    EXPECT_TRUE(IsServing());
    TlsClient patient(Port());
    const QByteArray one = wire::Encode(*patient.Ask(0, "Hello"));
    patient.Write(hellos);
    QByteArray received;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        received += patient.Socket().readAll();
        return received.size() >= one.size() * 20;
    }));
    EXPECT_EQ(received, one.repeated(20));
}

TEST_F(ListenerTest, WhoReadsWaitsForNobodyWhoWrites) {
    Listen({.workers = 2, .writers = 4});
    std::vector<std::unique_ptr<TlsClient>> writers;
    for (int i = 0; i < 16; ++i) {
        writers.push_back(std::make_unique<TlsClient>(Port()));
        ASSERT_FALSE(writers.back()->SignOn(i % 2 == 0 ? "SYSADMIN" : "VIEWER").isEmpty());
    }
    TlsClient reader(Port());
    ASSERT_FALSE(reader.SignOn("VIEWER").isEmpty());
    {
        const auto database = m_server.GetLibrary().Connect();
        const Transaction others(*database, Transaction::Mode::Write);
        for (int i = 0; i < 16; ++i)
            writers[size_t(i)]->Write(wire::Encode(wire::Request{
                1, "AddVenTp", {{"Cd", "W" + QString::number(i)}, {"Nm", "Waits " + QString::number(i)}}}));
        // Also those who sign on, resume or sign off.
        TlsClient stranger(Port());
        stranger.Write(wire::Encode(wire::Request{0, "SignOn", {{"OI", "NOBODY"}}}).repeated(4));
        ASSERT_TRUE(QTest::qWaitFor([&] { return m_server.GetLibrary().Writers().CountWaiting() == 4; }));
        EXPECT_EQ(reader.Ask(1, "LstVenTp")->status, status::Ok);
        EXPECT_EQ(TlsClient(Port()).Ask(0, "Hello")->status, status::Ok);
        EXPECT_EQ(m_server.GetLibrary().Writers().CountWaiting(), 4);
    }
    for (int i = 0; i < 16; ++i) {
        const auto reply = writers[size_t(i)]->Read();
        ASSERT_TRUE(reply);
        EXPECT_EQ(reply->status, i % 2 == 0 ? status::Ok : status::NotAuthorised);
    }
}

/// Does with a message what its name says.
class OddEndpoint : public wire::Endpoint {
public:
    explicit OddEndpoint(QSemaphore& released)
        : m_released(released) {}
    std::optional<QByteArray> Handle(const QByteArray& message) override {
        const QString name = wire::DecodeRequest(message)->name;
        if (name == "Throw")
            throw std::bad_alloc();
        if (name == "Wait")
            m_released.acquire();
        return wire::Encode(wire::Reply{0, 0, {}});
    }
    QString Account() const override { return "ODD"; }
    bool Writes(const QByteArray&) const override { return false; }
    qint64 MessageLimit() const override { return wire::Limits().message; }

private:
    QSemaphore& m_released;
};

TEST_F(ListenerTest, WhatAHandlerDoesCostsItsConnectionOnly) {
    QSemaphore released;
    Listen({}, [&](const QString&) { return std::make_unique<OddEndpoint>(released); });
    TlsClient failing(Port());
    failing.Write(wire::Encode(wire::Request{0, "Throw", {}}));
    EXPECT_TRUE(failing.IsCutOff());
    // Its connection is gone before the message has been handled.
    TlsClient gone(Port());
    gone.Write(wire::Encode(wire::Request{0, "Wait", {}}).repeated(3));
    QTest::qWait(50);
    gone.Socket().abort();
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_listener->CountConnections() == 0; }));
    released.release(3);
    TlsClient good(Port());
    EXPECT_TRUE(good.Ask(0, "Echo"));
    // The listener waits for what is being handled.
    good.Write(wire::Encode(wire::Request{0, "Wait", {}}));
    QTest::qWait(50);
    released.release(1);
    m_listener.reset();
}

TEST_F(ListenerTest, LargeMessagesWaitInTurnAndOthersDoNot) {
    Listen({.lentMilliseconds = 3000});
    const QByteArray large =
        wire::Encode(wire::Request{1, "LstVenTp", wire::Fields(3, {"X", QString(1'000'000, 'x')})});
    TlsClient stalled(Port());
    ASSERT_FALSE(stalled.SignOn("VIEWER").isEmpty());
    stalled.Write(large.chopped(1));
    QTest::qWait(300);
    TlsClient waiting(Port());
    ASSERT_FALSE(waiting.SignOn("SYSADMIN").isEmpty());
    waiting.Write(large);
    TlsClient normal(Port());
    ASSERT_FALSE(normal.SignOn("SYSADMIN").isEmpty());
    EXPECT_EQ(normal.Ask(1, "LstVenTp")->status, status::Ok);
    EXPECT_TRUE(stalled.IsCutOff());
    const auto reply = waiting.Read();
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, status::Ok);

    // What decodes to more than anybody may have is refused by its beginning.
    TlsClient greedy(Port());
    ASSERT_FALSE(greedy.SignOn("SYSADMIN").isEmpty());
    greedy.Write(QByteArray::fromHex("8301684c737456656e54709a00800000"));
    EXPECT_TRUE(greedy.IsCutOff());
    EXPECT_EQ(normal.Ask(2, "LstVenTp")->status, status::Ok);
}

} // namespace
} // namespace sysadmin::testing
