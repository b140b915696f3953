#include "comm/WireChannel.h"
#include "comm/EmbeddedTransport.h"
#include "comm/ModelServer.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/TraceLog.h"
#include "wire/Codec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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
    NoDatabase, // the server cannot do anything at the moment, and says so
    Garbage,
    WrongNumber,
};

// A transport to the model server that goes wrong when it is told to.
class FaultyTransport : public Transport {
public:
    explicit FaultyTransport(ModelServer& server)
        : m_server(server) {}

    QList<Mishap> mishaps; // of the next exchanges, in order
    int unreachable = 0;   // so many calls of Open fail
    bool refused = false;
    int opened = 0;
    std::function<void()> during; // runs within an exchange

    QString Open() override {
        ClearFailure();
        if (refused)
            return Fail(TransportFailure::Refused, "refused");
        if (unreachable > 0) {
            --unreachable;
            return Fail(TransportFailure::Unreachable, "unreachable");
        }
        ++opened;
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
        if (mishap == Mishap::LostBefore)
            return Break(TransportFailure::Lost);
        if (mishap == Mishap::LateBefore)
            return Break(TransportFailure::TimeLimit);
        const wire::Request request = wire::DecodeRequest(message).value();
        if (mishap == Mishap::NoDatabase)
            return wire::Encode(wire::Reply{request.number, 2, {}});
        std::optional<wire::Reply> reply = m_server.Handle(*m_connection, request);
        if (!reply || mishap == Mishap::LostAfter)
            return Break(TransportFailure::Lost);
        if (mishap == Mishap::LateAfter)
            return Break(TransportFailure::TimeLimit);
        if (mishap == Mishap::WrongNumber)
            ++reply->number;
        return mishap == Mishap::Garbage ? QByteArray("garbage") : wire::Encode(*reply);
    }

private:
    std::optional<QByteArray> Break(TransportFailure failure) {
        Close();
        Fail(failure, "broken");
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
        encoder = PasswordEncoder(greeting.publicKey, greeting.nonce);
        session.SetCredentials("oper", encoder.Encode(password, wire::PasswordPurpose::SignOn));
        return channel.SignOn(session);
    }

    qint16 Add(const QString& value) {
        channel.PutField("V", value);
        return channel.SendRequest("Add");
    }

    ModelServer server;
    FaultyTransport* transport = nullptr;
    WireChannel channel;
    SessionData session;
    PasswordEncoder encoder;
};

TEST_F(WireChannelTest, SignsOnAndNumbersItsRequests) {
    server.SetSignOn({{"CHG", "Y"}, {"WARN", "5"}});
    ASSERT_TRUE(SignOn());
    EXPECT_EQ(session.OperatorId(), "OPER");
    EXPECT_EQ(session.Operator().name, "O. Perator");
    EXPECT_EQ(session.Operator().server, "model");
    EXPECT_TRUE(session.Operator().mustChangePassword);
    EXPECT_EQ(session.Operator().passwordDaysLeft, 5);
    EXPECT_FALSE(session.HasCredentials());

    EXPECT_EQ(Add("one"), 0);
    EXPECT_EQ(channel.GetField("Count"), "1");
    EXPECT_EQ(channel.SendRequest("Nonsense"), 6);
    channel.PutField("A", "1");
    channel.PutField("A", "2");
    EXPECT_EQ(channel.SendRequest("Get"), 0);
    EXPECT_EQ(channel.ReplyFields(), (wire::Fields{{"A", "1"}, {"A", "2"}}));
    EXPECT_TRUE(channel.SignOn(session)) << "start-up asks again after the dialog";
    EXPECT_EQ(server.Received(), (QStringList{"0 Hello", "0 SignOn", "1 Add", "2 Nonsense", "3 Get"}));
}

TEST_F(WireChannelTest, AFailedSignOnSaysWhy) {
    EXPECT_FALSE(channel.SignOn(session)) << "nobody has entered anything";
    EXPECT_FALSE(SignOn("wrong"));
    EXPECT_TRUE(channel.LastProblem().contains("password is not right"))
        << channel.LastProblem().toStdString();
    EXPECT_TRUE(session.OperatorId().isEmpty());
    EXPECT_EQ(Add("nobody"), 1);
    transport->Close();
    transport->unreachable = 1;
    EXPECT_EQ(channel.Hello().problem, "unreachable");
    ASSERT_TRUE(SignOn());
}

// However the connection breaks, the request is carried out once, under its number.
TEST_F(WireChannelTest, ALostConnectionIsMadeAnewAndTheRequestSentAgain) {
    ASSERT_TRUE(SignOn());
    transport->mishaps = {Mishap::LostBefore};
    EXPECT_EQ(Add("before"), 0);
    transport->mishaps = {Mishap::LostAfter};
    EXPECT_EQ(Add("after"), 0);
    EXPECT_EQ(channel.GetField("Count"), "2");
    transport->mishaps = {Mishap::LostAfter, Mishap::LostBefore /* of Resume */, Mishap::None,
                          Mishap::LostAfter};
    EXPECT_EQ(Add("thrice"), 0);
    transport->unreachable = 1;
    transport->Close();
    EXPECT_EQ(Add("idle"), 0) << "a connection that ended between two requests";
    EXPECT_EQ(server.Added(), (QStringList{"before", "after", "thrice", "idle"}));
    EXPECT_EQ(server.Received().mid(2, 6),
              (QStringList{"0 Resume", "1 Add", "2 Add", "0 Resume", "2 Add", "3 Add"}));
}

TEST_F(WireChannelTest, ARequestThatKeepsBreakingTheConnectionIsGivenUp) {
    ASSERT_TRUE(SignOn());
    transport->mishaps = {Mishap::LostBefore, Mishap::None, Mishap::LostBefore, Mishap::None,
                          Mishap::LostBefore};
    EXPECT_EQ(Add("deadly"), 1);
    EXPECT_FALSE(channel.LastProblem().isEmpty());
    EXPECT_EQ(Add("harmless"), 0);
    EXPECT_TRUE(channel.LastProblem().isEmpty());
    EXPECT_EQ(server.Added(), QStringList{"harmless"});
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

TEST_F(WireChannelTest, AnAnswerThatIsNoneEndsTheConnection) {
    ASSERT_TRUE(SignOn());
    for (const Mishap mishap : {Mishap::Garbage, Mishap::WrongNumber}) {
        transport->mishaps = {mishap};
        const int opened = transport->opened;
        EXPECT_EQ(channel.SendRequest("Get"), 1);
        EXPECT_TRUE(channel.LastProblem().contains("not the answer"));
        EXPECT_EQ(transport->opened, opened) << "it is not asked again";
        EXPECT_FALSE(transport->IsOpen());
        EXPECT_EQ(channel.SendRequest("Get"), 0);
    }
}

TEST_F(WireChannelTest, TheEndOfTheSessionIsExplained) {
    ASSERT_TRUE(SignOn());
    server.ForgetSessions();
    transport->Close();
    EXPECT_EQ(Add("late"), 1);
    EXPECT_TRUE(channel.LastProblem().contains("sign on")) << channel.LastProblem().toStdString();
    const qsizetype received = server.Received().size();
    EXPECT_EQ(Add("later"), 1);
    EXPECT_TRUE(channel.LastProblem().contains("over"));
    EXPECT_EQ(server.Received().size(), received) << "the server is left alone";
    EXPECT_TRUE(server.Added().isEmpty());
}

TEST_F(WireChannelTest, AServerWithoutItsDatabaseIsTriedAgainAndTheSessionIsKept) {
    transport->mishaps = {Mishap::NoDatabase};
    EXPECT_TRUE(channel.Hello().problem.contains("database"));
    ASSERT_TRUE(SignOn());
    channel.SetReconnectLimit(1min);
    transport->mishaps = {Mishap::LostAfter, Mishap::NoDatabase, Mishap::NoDatabase};
    EXPECT_EQ(Add("short"), 0) << "waited for";

    channel.SetReconnectLimit(0ms);
    transport->mishaps = {Mishap::LostBefore, Mishap::NoDatabase};
    EXPECT_EQ(Add("long"), 1);
    EXPECT_TRUE(channel.LastProblem().contains("database")) << channel.LastProblem().toStdString();
    transport->mishaps = {Mishap::NoDatabase};
    EXPECT_EQ(Add("long"), 1);
    EXPECT_EQ(Add("long"), 0) << "the next try, in the same session";
    EXPECT_EQ(server.Added(), (QStringList{"short", "long"}));
}

TEST_F(WireChannelTest, AServerThatMayNotBeTrustedIsNotTriedAgain) {
    ASSERT_TRUE(SignOn());
    channel.SetReconnectLimit(1min);
    transport->Close();
    transport->refused = true;
    EXPECT_EQ(Add("x"), 1);
    EXPECT_EQ(channel.LastProblem(), "refused");
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

TEST_F(WireChannelTest, ThePasswordIsChangedOnTheSessionsConnection) {
    ASSERT_TRUE(SignOn());
    const auto change = [&](const QString& old) {
        return channel.ChangeOwnPassword(encoder.Encode(old, wire::PasswordPurpose::Confirm),
                                         encoder.Encode("new", wire::PasswordPurpose::Set));
    };
    EXPECT_EQ(change("wrong"), 11);
    transport->Close();
    EXPECT_EQ(change("secret"), 0) << "sealed for the session, not for one of its connections";
    channel.SignOff();
    EXPECT_FALSE(SignOn("secret"));
    EXPECT_TRUE(SignOn("new"));
}

TEST_F(WireChannelTest, TheTraceTellsEveryRequestAndNoSecret) {
    const QTemporaryDir folder;
    const QString fileName = folder.filePath("trace.jsonl");
    TraceLog trace;
    ASSERT_EQ(trace.Open(fileName), QString());
    channel.SetTrace(&trace);
    server.SetSignOn({{"Note", "Zeile 1\r\n\"Zeile\" 2 é"}});
    ASSERT_TRUE(SignOn());
    channel.PutField("OI", "X");
    channel.PutField("PW", "sealed-password");
    channel.PutField("DP", "1234");
    EXPECT_EQ(channel.SendRequest("Get"), 0);
    channel.ChangeOwnPassword("sealed-old", "sealed-new");
    transport->mishaps = {Mishap::LateBefore};
    EXPECT_EQ(channel.SendRequest("LstVenTp"), 1);

    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.permissions() & (QFile::ReadGroup | QFile::ReadOther));
    const QByteArray text = file.readAll();
    for (const char* secret : {"sealed-password", "1234", "sealed-old", "sealed-new", "token1"})
        EXPECT_FALSE(text.contains(secret)) << secret;
    QList<QJsonObject> lines;
    for (const QByteArray& line : text.trimmed().split('\n'))
        lines.append(QJsonDocument::fromJson(line).object());
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines[1]["request"].toString(), "SignOn");
    EXPECT_EQ(lines[1]["put"].toArray(), (QJsonArray{QJsonArray{"OI", "oper"}, QJsonArray{"PW", "***"}}));
    EXPECT_EQ(lines[1]["reply"].toArray(),
              (QJsonArray{QJsonArray{"SID", "***"}, QJsonArray{"OI", "OPER"}, QJsonArray{"ONM", "O. Perator"},
                          QJsonArray{"Note", "Zeile 1\r\n\"Zeile\" 2 é"}}));
    EXPECT_EQ(lines[2]["put"].toArray(),
              (QJsonArray{QJsonArray{"OI", "X"}, QJsonArray{"PW", "***"}, QJsonArray{"DP", "***"}}));
    EXPECT_EQ(lines[4]["status"].toInt(), 1);
    EXPECT_TRUE(QDateTime::fromString(lines[4]["time"].toString(), Qt::ISODateWithMs).isValid());
    EXPECT_TRUE(lines[4]["ms"].isDouble());
}

TEST(EmbeddedTransport, CarriesMessagesOpensOnceAndRefusesWhatANetworkWould) {
    ModelServer server;
    int made = 0;
    QString problem = "locked";
    EmbeddedTransport transport("/the/library", [&](const QString& folder, QString* error) {
        ++made;
        EXPECT_EQ(folder, "/the/library");
        *error = problem;
        return problem.isEmpty() ? server.Endpoints() : wire::EndpointFactory();
    });
    EXPECT_TRUE(transport.Open().contains("locked"));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Refused));
    problem.clear();
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
    server.SetHello({{"LIB", QString(70000, 'x')}});
    EXPECT_FALSE(transport.Exchange(hello, 1s));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Broken));
}

} // namespace
} // namespace sysadmin
