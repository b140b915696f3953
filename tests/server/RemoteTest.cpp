#include "server/remote/TargetTest.h"
#include "support/TargetProcess.h"
#include "support/TestServer.h"

#include <QSemaphore>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <gtest/gtest.h>

namespace sysadmin::testing {
namespace {

using namespace server;

/// Whatever answers at an address, one caller after the other, in a thread of its own.
class Peer {
public:
    using Behaviour = std::function<void(QTcpSocket& caller, const std::atomic_bool& stop)>;

    explicit Peer(const Behaviour& behave)
        : m_thread(QThread::create([this, behave] {
            QTcpServer server;
            server.listen(QHostAddress::LocalHost, 0);
            m_port = server.serverPort();
            m_listens.release();
            while (!m_stop)
                if (server.waitForNewConnection(50)) {
                    const std::unique_ptr<QTcpSocket> caller(server.nextPendingConnection());
                    behave(*caller, m_stop);
                    caller->abort();
                }
        })) {
        m_thread->start();
        m_listens.acquire();
    }
    ~Peer() {
        m_stop = true;
        m_thread->wait();
    }
    QString Port() const { return QString::number(m_port); }

    /// Answers every request with these bytes.
    static Behaviour Says(const QByteArray& answer) {
        return [answer](QTcpSocket& caller, const std::atomic_bool& stop) {
            while (!stop && caller.state() == QAbstractSocket::ConnectedState)
                if (caller.waitForReadyRead(50) && !caller.readAll().isEmpty()) {
                    caller.write(answer);
                    caller.waitForBytesWritten(1000);
                }
        };
    }
    /// Goes on sending whatever anybody asked, up to 64 MiB.
    static Behaviour NeverEnds(const QByteArray& beginning) {
        return [beginning](QTcpSocket& caller, const std::atomic_bool& stop) {
            caller.waitForReadyRead(5000);
            caller.write(beginning);
            const QByteArray more(1024 * 1024, '\x04');
            for (int i = 0; i < 64 && !stop && caller.state() == QAbstractSocket::ConnectedState; ++i) {
                caller.write(more);
                while (!stop && caller.bytesToWrite() > 0 && caller.waitForBytesWritten(50)) {
                }
            }
        };
    }

private:
    quint16 m_port = 0;
    std::atomic_bool m_stop = false;
    QSemaphore m_listens;
    std::unique_ptr<QThread> m_thread;
};

/// An init response (protocol 3, search and present) that says yes or no.
QByteArray InitResponse(bool accepts) {
    QByteArray response = QByteArray::fromHex("b513830205e0840200c085021000860210008c0100");
    if (accepts)
        response[response.size() - 1] = '\x01';
    return response;
}

class RemoteTest : public ::testing::Test {
protected:
    void Define(const QString& port, const wire::Fields& more = {}) {
        m_server.Send("DelDB", {{"C", "X"}});
        wire::Fields fields{{"NCd", "X"},          {"Nm", "X"},     {"Pr", "Z"},
                            {"ADRO", "127.0.0.1"}, {"POPAC", port}, {"DN", "Default"}};
        ASSERT_EQ(m_server.StatusOf("AddDB",
                                    fields + more + wire::Fields{{"AS", "1"}, {"ASC", "TITL"}, {"A1", "4"}}),
                  status::Ok);
    }
    wire::Reply Ask(const QString& goesOn) {
        wire::Fields fields{{"C", "X"}, {"ASC", "TITL"}, {"TRM", "computer"}};
        if (!goesOn.isEmpty())
            fields.append({"55", goesOn});
        return m_server.Send("TstDB", fields);
    }
    /// The reply once the test is over.
    wire::Reply Test() {
        wire::Reply reply = Ask({});
        while (reply.status == status::Continues)
            reply = Ask("Y");
        return reply;
    }
    QString Outcome() {
        const wire::Reply reply = Test();
        EXPECT_EQ(reply.status, status::Ok);
        return wire::FirstValue(reply.fields, "RES");
    }

    TestServer m_server;
};

TEST_F(RemoteTest, EachCauseIsToldApart) {
    {
        const Peer silent([](QTcpSocket& caller, const std::atomic_bool& stop) {
            while (!stop && caller.state() == QAbstractSocket::ConnectedState)
                caller.waitForReadyRead(50);
        });
        Define(silent.Port(), {{"DCTO", "1"}});
        EXPECT_EQ(Outcome(), "timed-out");
        // Cancelling needs no patience, and nobody waits for the test meanwhile.
        Define(silent.Port(), {{"DCTO", "32767"}});
        EXPECT_EQ(Ask({}).status, status::Continues);
        EXPECT_EQ(m_server.StatusOf("AddVenTp", {{"Cd", "NEW"}, {"Nm", "New"}}), status::Ok);
        EXPECT_EQ(Ask("Y").status, status::Continues);
        EXPECT_EQ(wire::FirstValue(Ask("N").fields, "RES"), "cancelled");
        EXPECT_EQ(wire::FirstValue(Ask("Y").fields, "RES"), "cancelled");
    }
    QString gone;
    {
        const Peer peer([](QTcpSocket&, const std::atomic_bool&) {});
        gone = peer.Port();
        Define(gone);
        EXPECT_EQ(Outcome(), "closed");
    }
    Define(gone);
    EXPECT_EQ(Outcome(), "refused");
    Define("0");
    EXPECT_EQ(Outcome(), "no-address");
    Define("210", {{"ADRO", "unused"}});
    ASSERT_EQ(m_server.StatusOf("UpdDB", {{"C", "X"}, {"ADRO", "no-such-host.invalid"}, {"DCTO", "20"}}),
              status::Ok);
    EXPECT_EQ(Outcome(), "unknown-host");
    const Peer web(Peer::Says("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n"));
    Define(web.Port());
    EXPECT_EQ(Outcome(), "other-protocol");
    const Peer refusing(Peer::Says(InitResponse(false)));
    Define(refusing.Port(), {{"OI", "guest"}, {"PC", "Y"}, {"PW", m_server.Client().Seal("wrong")}});
    EXPECT_EQ(Outcome(), "sign-on-refused");
    // Says yes to everything, and never answers a search.
    const Peer confused(Peer::Says(InitResponse(true)));
    Define(confused.Port());
    EXPECT_EQ(Outcome(), "other-protocol");
    EXPECT_EQ(m_server.StatusOf("TstDB", {{"C", "NOBODY"}}), status::NotFound);
    m_server.SignOnAs("VIEWER");
    EXPECT_EQ(Test().status, status::NotAuthorised);
}

TEST_F(RemoteTest, ALyingTargetCostsNothingButItsOwnTest) {
    // An answer whose length is 2 GB, one that never ends, and one that begins again and again inside itself.
    for (const QByteArray& beginning : {QByteArray::fromHex("b5847fffffff"), QByteArray::fromHex("b580"),
                                        QByteArray::fromHex("b580").repeated(5000)}) {
        const Peer liar(Peer::NeverEnds(beginning));
        Define(liar.Port(), {{"DCTO", "30"}});
        const QString outcome = Outcome();
        EXPECT_TRUE(outcome == u"too-long" || outcome == u"other-protocol") << outcome.toStdString();
    }
    // Well-formed all round, with a record that is none.
    const Peer nonsense(Peer::Says(InitResponse(true) + InitResponse(true)));
    Define(nonsense.Port(), {{"DCTO", "5"}});
    EXPECT_NE(Outcome(), "connected");
    EXPECT_EQ(m_server.StatusOf("LstDB"), status::Ok);
}

TEST_F(RemoteTest, AWebAddressIsToldByTheBeginningOfItsAnswer) {
    const auto ask = [this](const QString& address) {
        EXPECT_EQ(m_server.StatusOf("UpdRdaTk", {{"On", "Y"}, {"Ad", address}}), status::Ok);
        wire::Reply reply = m_server.Send("TstRdaTk");
        while (reply.status == status::Continues)
            reply = m_server.Send("TstRdaTk", {{"55", "Y"}});
        return wire::FirstValue(reply.fields, "RES") + ' ' + wire::FirstValue(reply.fields, "DT");
    };
    const QList<std::pair<QByteArray, QString>> answers{
        {"HTTP/1.1 200 OK\r\nContent-Length: 90000000\r\n\r\n", "connected 200 OK"},
        {"HTTP/1.1 302 Found\r\nLocation: /login\r\n\r\n", "connected 302 Found (http://127.0.0.1:%1/login)"},
        {"HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n\r\n", "sign-on-refused 401 Unauthorized"},
        {"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n", "search-refused 404 Not Found"},
        {"SSH-2.0-Server\r\n", "closed "},
    };
    for (const auto& [answer, outcome] : answers) {
        const Peer peer(Peer::Says(answer));
        EXPECT_EQ(ask("http://127.0.0.1:" + peer.Port() + "/"), QString(outcome).replace("%1", peer.Port()))
            << answer.toStdString();
    }
    const Peer plain(Peer::Says("HTTP/1.1 200 OK\r\n\r\n"));
    EXPECT_EQ(ask("https://127.0.0.1:" + plain.Port() + "/").section(' ', 0, 0), "other-protocol");
    const Peer silent([](QTcpSocket& caller, const std::atomic_bool& stop) {
        while (!stop && caller.state() == QAbstractSocket::ConnectedState)
            caller.waitForReadyRead(50);
    });
    EXPECT_EQ(m_server.StatusOf("UpdRdaTk", {{"Ad", "http://127.0.0.1:" + silent.Port()}}), status::Ok);
    EXPECT_EQ(m_server.StatusOf("TstRdaTk"), status::Continues);
    EXPECT_EQ(wire::FirstValue(m_server.Send("TstRdaTk", {{"55", "N"}}).fields, "RES"), "cancelled");
}

TEST_F(RemoteTest, APasswordOfAnotherServerIsNotGuessedAt) {
    Define("9", {{"PC", "Y"}, {"PW", m_server.Client().Seal("hidden-1")}});
    ASSERT_TRUE(QFile::exists(m_server.Directory() + "/secrets.key"));
    EXPECT_EQ(QFileInfo(m_server.Directory() + "/secrets.key").permissions() &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              0);
    // The file without its key, as somebody has it who copied the database alone.
    ASSERT_TRUE(QFile::remove(m_server.Directory() + "/secrets.key"));
    EXPECT_EQ(Outcome(), "password-unreadable");
    // A damaged key is not replaced: what was closed with it may still be saved.
    QFile key(m_server.Directory() + "/secrets.key");
    ASSERT_TRUE(key.open(QIODevice::WriteOnly));
    key.write("damaged\n");
    key.close();
    EXPECT_EQ(m_server.StatusOf("UpdDB", {{"C", "X"}, {"PC", "Y"}, {"PW", m_server.Client().Seal("new")}}),
              status::TableError);
    ASSERT_TRUE(QFile::remove(key.fileName()));
    EXPECT_EQ(m_server.StatusOf("UpdDB", {{"C", "X"}, {"PC", "Y"}, {"PW", m_server.Client().Seal("new")}}),
              status::Ok);
}

TEST_F(RemoteTest, ARealTargetIsSearched) {
    TargetProcess target;
    ASSERT_TRUE(target.IsThere()) << "yaz-ztest (package yaz) does not run";
    Define(target.Port(), {{"OI", "user"}, {"PC", "Y"}, {"PW", m_server.Client().Seal("word")}});
    const wire::Reply reply = Test();
    const auto value = [&](const QString& tag) { return wire::FirstValue(reply.fields, tag).toStdString(); };
    EXPECT_EQ(value("RES"), "connected");
    EXPECT_EQ(value("AT"), "127.0.0.1:" + target.Port().toStdString());
    EXPECT_NE(value("TNM").find("YAZ"), std::string::npos) << value("TNM");
    EXPECT_NE(value("TVR"), "");
    EXPECT_GT(std::stoi(value("HIT")), 0);
    EXPECT_NE(value("REC").find("245 "), std::string::npos) << value("REC");
    ASSERT_EQ(m_server.StatusOf("UpdDB", {{"C", "X"}, {"DN", "NoSuchDatabase"}}), status::Ok);
    const wire::Reply refused = Test();
    EXPECT_EQ(wire::FirstValue(refused.fields, "RES"), "search-refused");
    EXPECT_NE(wire::FirstValue(refused.fields, "DT"), "");
}

TEST(TargetTest, QueriesHoldTheAttributesAndTheWords) {
    EXPECT_EQ(PrefixQuery({}, " a \"b\" \\ "), "@attrset bib-1 \"a \\\"b\\\" \\\\\"");
    EXPECT_EQ(PrefixQuery({.use = 4, .relation = 3, .truncation = 1, .completeness = 2}, "rain"),
              "@attrset bib-1 @attr 1=4 @attr 2=3 @attr 5=1 @attr 6=2 \"rain\"");
    EXPECT_EQ(PrefixQuery({.use = 1016, .joinsWords = true}, "cats  and dogs"),
              "@attrset bib-1 @and @and @attr 1=1016 \"cats\" @attr 1=1016 \"and\" @attr 1=1016 \"dogs\"");
}

} // namespace
} // namespace sysadmin::testing
