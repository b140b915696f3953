#include "comm/WireChannel.h"
#include "comm/EmbeddedTransport.h"
#include "comm/ModelServer.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/TraceLog.h"
#include "comm/Waiting.h"
#include "wire/Codec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSemaphore>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace sysadmin {
namespace {

enum class Mishap {
    None,
    LostBefore, // the request does not get there
    LostAfter,  // the reply does not come back
    LateBefore, // the same, found out by the time limit
    LateAfter,
};

// A transport to the model server that goes wrong when it is told to.
class FaultyTransport : public Transport {
public:
    explicit FaultyTransport(ModelServer& server)
        : m_server(server) {}

    QList<Mishap> mishaps; // of the next exchanges, in order
    int unreachable = 0;   // so many calls of Open fail
    bool refused = false;
    std::function<void()> during; // runs within an exchange

    QString Open() override {
        ClearFailure();
        if (refused)
            return Fail(TransportFailure::Refused, "refused");
        if (unreachable-- > 0)
            return Fail(TransportFailure::Unreachable, "unreachable");
        m_connection = ModelServer::Connection();
        return {};
    }
    bool IsOpen() const override { return m_connection.has_value(); }
    void Close() override { m_connection.reset(); }
    ConnectionInfo Describe() const override { return {"model", "by hand"}; }

    std::optional<QByteArray> Exchange(const QByteArray& message, std::chrono::milliseconds) override {
        ClearFailure();
        if (during)
            std::exchange(during, {})();
        const Mishap mishap = mishaps.isEmpty() ? Mishap::None : mishaps.takeFirst();
        if (mishap == Mishap::LostBefore || mishap == Mishap::LateBefore)
            return Break(mishap);
        const wire::Request request = wire::DecodeRequest(message).value();
        const std::optional<wire::Reply> reply = m_server.Handle(*m_connection, request);
        return reply && mishap == Mishap::None ? wire::Encode(*reply) : Break(mishap);
    }

private:
    std::optional<QByteArray> Break(Mishap mishap) {
        const bool late = mishap == Mishap::LateBefore || mishap == Mishap::LateAfter;
        Close();
        Fail(late ? TransportFailure::TimeLimit : TransportFailure::Lost, "broken");
        return {};
    }

    ModelServer& m_server;
    std::optional<ModelServer::Connection> m_connection;
};

class WireChannelTest : public ::testing::Test {
protected:
    WireChannelTest() {
        auto owned = std::make_unique<FaultyTransport>(server);
        transport = owned.get();
        channel.Use(std::move(owned));
        channel.SetReconnectLimit(50ms);
    }

    bool SignOn(const QString& password = "secret") {
        const Greeting greeting = channel.Hello();
        session.SetCredentials("oper", PasswordEncoder(greeting.publicKey, greeting.nonce)
                                           .Encode(password, wire::PasswordPurpose::SignOn));
        return channel.SignOn(session);
    }

    qint16 Add(const QString& value) {
        channel.PutField("V", value);
        return channel.SendRequest("Add");
    }

    QString Problem() const { return channel.LastProblem(); }

    ModelServer server;
    FaultyTransport* transport = nullptr;
    WireChannel channel;
    SessionData session;
};

TEST_F(WireChannelTest, SignsOnAndNumbersItsRequests) {
    server.signOn = {{"CHG", "Y"}, {"WARN", "5"}};
    EXPECT_FALSE(channel.SignOn(session)) << "nobody has entered anything";
    EXPECT_FALSE(SignOn("wrong"));
    EXPECT_TRUE(Problem().contains("password is not right")) << Problem().toStdString();
    EXPECT_TRUE(session.OperatorId().isEmpty());
    EXPECT_EQ(Add("nobody"), 1);
    transport->Close();
    transport->unreachable = 1;
    EXPECT_EQ(channel.Hello().problem, "unreachable");

    ASSERT_TRUE(SignOn());
    EXPECT_EQ(session.OperatorId(), "OPER");
    EXPECT_EQ(session.Operator().name + '@' + session.Operator().server, "O. Perator@model");
    EXPECT_TRUE(session.Operator().mustChangePassword);
    EXPECT_EQ(session.Operator().passwordDaysLeft, 5);
    EXPECT_FALSE(session.HasCredentials());
    EXPECT_TRUE(channel.SignOn(session)) << "start-up asks again after the dialog";
    EXPECT_EQ(Add("one"), 0);
    EXPECT_EQ(channel.SendRequest("Nonsense"), 6);
    channel.PutField("A", "1");
    channel.PutField("A", "2");
    EXPECT_EQ(channel.SendRequest("Get"), 0);
    EXPECT_EQ(channel.ReplyFields(), (wire::Fields{{"A", "1"}, {"A", "2"}}));
    EXPECT_EQ(server.Received().mid(3), (QStringList{"0 SignOn", "1 Add", "2 Nonsense", "3 Get"}));
}

// However the connection breaks, the request is carried out once, under its number.
TEST_F(WireChannelTest, ALostConnectionIsMadeAnewAndTheRequestSentAgain) {
    ASSERT_TRUE(SignOn());
    const QList<Mishap> cases[] = {
        {Mishap::LostBefore},
        {Mishap::LostAfter},
        {Mishap::LostAfter, Mishap::LostBefore /* of Resume */, Mishap::None, Mishap::LostAfter},
    };
    QStringList added;
    for (const QList<Mishap>& mishaps : cases) {
        transport->mishaps = mishaps;
        added.append(QString::number(added.size()));
        EXPECT_EQ(Add(added.last()), 0);
    }
    EXPECT_EQ(server.Added(), added);
    EXPECT_EQ(server.Received().mid(2, 5), (QStringList{"0 Resume", "1 Add", "2 Add", "0 Resume", "2 Add"}));
}

TEST_F(WireChannelTest, ARequestIsGivenUpThatKeepsBreakingTheConnectionOrWhoseServerMayNotBeTrusted) {
    ASSERT_TRUE(SignOn());
    transport->mishaps = {Mishap::LostBefore, Mishap::None, Mishap::LostBefore, Mishap::None,
                          Mishap::LostBefore};
    EXPECT_EQ(Add("deadly"), 1);
    EXPECT_FALSE(Problem().isEmpty());
    EXPECT_EQ(Add("harmless"), 0);
    EXPECT_TRUE(Problem().isEmpty());
    EXPECT_EQ(server.Added(), QStringList{"harmless"});

    channel.SetReconnectLimit(1min);
    transport->Close();
    transport->refused = true;
    EXPECT_EQ(Add("x"), 1);
    EXPECT_EQ(Problem(), "refused");
}

TEST_F(WireChannelTest, AfterAFailureTheSameRequestIsNotCarriedOutTwiceAndAnotherOneIsNotMistakenForIt) {
    ASSERT_TRUE(SignOn());
    for (const Mishap mishap : {Mishap::LateBefore, Mishap::LateAfter}) {
        const QString name = mishap == Mishap::LateBefore ? "before" : "after";
        transport->mishaps = {mishap};
        EXPECT_EQ(Add(name + "-retried"), 1);
        EXPECT_TRUE(channel.ReplyFields().isEmpty());
        EXPECT_EQ(Add(name + "-retried"), 0);

        transport->mishaps = {mishap};
        EXPECT_EQ(Add(name + "-left"), 1);
        EXPECT_EQ(Add(name + "-other"), 0);
    }
    EXPECT_EQ(server.Added(),
              (QStringList{"before-retried", "before-other", "after-retried", "after-left", "after-other"}));
}

TEST_F(WireChannelTest, TheEndOfTheSessionIsExplained) {
    ASSERT_TRUE(SignOn());
    server.ForgetSessions();
    transport->Close();
    EXPECT_EQ(Add("late"), 1);
    EXPECT_TRUE(Problem().contains("sign on")) << Problem().toStdString();
    const qsizetype received = server.Received().size();
    EXPECT_EQ(Add("later"), 1);
    EXPECT_TRUE(Problem().contains("over"));
    EXPECT_EQ(server.Received().size(), received) << "the server is left alone";
    EXPECT_TRUE(server.Added().isEmpty());
}

TEST_F(WireChannelTest, ARequestInsideARequestFailsAndLeavesTheOuterOneAlone) {
    ASSERT_TRUE(SignOn());
    qint16 inner = 0;
    transport->during = [&] { inner = channel.SendRequest("Get"); };
    EXPECT_EQ(Add("outer"), 0);
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(channel.GetField("Count"), "1");
    EXPECT_EQ(Add("next"), 0);
}

TEST_F(WireChannelTest, TheTraceTellsEveryRequestAndNoSecret) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("trace.jsonl"));
    TraceLog trace;
    ASSERT_EQ(trace.Open(file.fileName()), QString());
    channel.SetTrace(&trace);
    server.signOn = {{"Note", "Zeile 1\r\n\"Zeile\" 2 é"}};
    ASSERT_TRUE(SignOn());
    channel.PutField("DP", "1234");
    EXPECT_EQ(channel.SendRequest("Get"), 0);
    channel.ChangeOwnPassword("sealed-old", "sealed-new");
    channel.PutField("P", "sealed-voucher");
    channel.SendRequest("AddOFrm");
    transport->mishaps = {Mishap::LateBefore};
    EXPECT_EQ(channel.SendRequest("LstVenTp"), 1);

    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.permissions() & (QFile::ReadGroup | QFile::ReadOther));
    const QByteArray text = file.readAll();
    for (const char* secret : {"1234", "sealed-old", "sealed-new", "sealed-voucher", "token1"})
        EXPECT_FALSE(text.contains(secret)) << secret;
    const QList<QByteArray> lines = text.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_EQ(QJsonDocument::fromJson(lines[1])["reply"].toArray().last().toArray(),
              (QJsonArray{"Note", "Zeile 1\r\n\"Zeile\" 2 é"}));
    EXPECT_EQ(QJsonDocument::fromJson(lines[5])["status"].toInt(), 1);
}

TEST(EmbeddedTransport, CarriesMessagesOpensOnceAndRefusesWhatANetworkWould) {
    ModelServer server;
    int made = 0;
    EmbeddedTransport transport("/the/library", [&](const QString&, QString* error) {
        *error = ++made == 1 ? "locked" : "";
        return made == 1 ? wire::EndpointFactory() : server.Endpoints();
    });
    EXPECT_TRUE(transport.Open().contains("locked"));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Refused));
    const QByteArray hello = wire::Encode(wire::Request{0, "Hello", {}});
    EXPECT_EQ(transport.Open(), QString());
    ASSERT_TRUE(transport.Exchange(hello, 1s));
    transport.Close();
    EXPECT_EQ(transport.Open(), QString());
    EXPECT_EQ(made, 2) << "the library stays open between connections";
    EXPECT_FALSE(transport.Exchange(wire::Encode(wire::Request{1, "Get", {}}), 1s));
    EXPECT_FALSE(transport.IsOpen());
    // Before sign-on a reply is small.
    EXPECT_EQ(transport.Open(), QString());
    server.hello = {{"LIB", QString(70000, 'x')}};
    EXPECT_FALSE(transport.Exchange(hello, 1s));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Broken));
}

/// Answers when it is let go.
class HeldEndpoint : public wire::Endpoint {
public:
    explicit HeldEndpoint(QSemaphore& letGo)
        : m_letGo(letGo) {}
    std::optional<QByteArray> Handle(const QByteArray&) override {
        m_letGo.acquire();
        return wire::Encode(wire::Reply{0, 0, {{"LIB", "Held"}}});
    }
    QString Account() const override { return {}; }
    bool Writes(const QByteArray&) const override { return false; }
    qint64 MessageLimit() const override { return wire::Limits().message; }

private:
    QSemaphore& m_letGo;
};

// Another program holds the library: the window lives, the time limit holds, and the next connection does not
// stand behind the one that was given up.
TEST(EmbeddedTransport, WaitsForTheLibraryAsForANetwork) {
    QSemaphore letGo;
    EmbeddedTransport transport("/the/library", [&](const QString&, QString*) {
        return [&](const QString&) { return std::make_unique<HeldEndpoint>(letGo); };
    });
    ASSERT_EQ(transport.Open(), QString());
    QStringList told;
    const WaitObserver observer = [&](const QString& request, bool waiting) {
        told.append(request + (waiting ? " begins" : " ends"));
    };
    const QByteArray hello = wire::Encode(wire::Request{0, "Hello", {}});
    {
        Waiting waiting("Hello", observer);
        transport.SetWaiting(&waiting);
        EXPECT_FALSE(transport.Exchange(hello, 400ms));
        transport.SetWaiting(nullptr);
    }
    EXPECT_EQ(told, (QStringList{"Hello begins", "Hello ends"}));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::TimeLimit));
    EXPECT_FALSE(transport.IsOpen());
    ASSERT_EQ(transport.Open(), QString());
    letGo.release(2);
    EXPECT_TRUE(transport.Exchange(hello, 1min));
}

} // namespace
} // namespace sysadmin
