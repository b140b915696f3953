#include "comm/NetworkTransport.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/TlsPeer.h"
#include "comm/WireChannel.h"
#include "support/ScriptedPrompter.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QSslConfiguration>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace sysadmin {
namespace {

const QByteArray Hello = wire::Encode(wire::Request{0, "Hello", {}});

QString TrustQuestion(const ServerAddress& server, const SelfMadeCertificate& certificate) {
    return QString("This is the first connection to %1.\r\n\r\nThe server proves who it is with a "
                   "certificate of its "
                   "own making. Its fingerprint (SHA-256) is\r\n\r\n%2\r\n\r\nThe server's administrator can "
                   "tell "
                   "whether that is right.\r\n\r\nDo you trust this server, now and in future?")
        .arg(server.Text(), FingerprintText(certificate.Fingerprint()));
}

/// Answers whatever is asked.
class QuestionPrompter : public ScriptedPrompter {
public:
    explicit QuestionPrompter(std::function<bool(const Box&)> answer)
        : m_answer(std::move(answer)) {}
    bool ShowBox(QWidget*, const Box& box) override { return m_answer(box); }

private:
    std::function<bool(const Box&)> m_answer;
};

class NetworkTransportTest : public ::testing::Test {
protected:
    void SetUp() override { Keep(Trust::Accepted(certificate.Fingerprint())); }
    void TearDown() override { TrustStore().Forget(peer.Address()); }

    void Keep(const Trust& trust) { TrustStore().Keep(peer.Address(), trust); }
    Trust Kept() const { return TrustStore().Of(peer.Address()); }

    // A channel over a new transport, signed on as OPER.
    std::unique_ptr<WireChannel> SignedOnChannel() {
        auto channel = std::make_unique<WireChannel>();
        channel->Use(std::make_unique<NetworkTransport>(peer.Address(), prompter));
        SessionData session;
        const Greeting greeting = channel->Hello();
        session.SetCredentials("OPER", PasswordEncoder(greeting.publicKey, greeting.nonce)
                                           .Encode("secret", wire::PasswordPurpose::SignOn));
        EXPECT_TRUE(channel->SignOn(session)) << channel->LastProblem().toStdString();
        return channel;
    }

    static qint16 Add(WireChannel& channel, const QString& value) {
        channel.PutField("V", value);
        return channel.SendRequest("Add");
    }

    // Lets the next request of this name go wrong.
    void FailOnce(const QString& name, TlsPeer::Fault fault) {
        peer.SetFaults([name, fault, done = false](const wire::Request& request, int) mutable {
            if (done || request.name != name)
                return TlsPeer::Fault();
            done = true;
            return fault;
        });
    }

    ModelServer server;
    SelfMadeCertificate certificate = MakeCertificate();
    TlsPeer peer{server, certificate};
    ScriptedPrompter prompter;
};

TEST_F(NetworkTransportTest, AnUnknownCertificateIsShownOnceAndKeptWhenTrusted) {
    TrustStore().Forget(peer.Address());
    NetworkTransport transport(peer.Address(), prompter);
    prompter.ExpectBox(TrustQuestion(peer.Address(), certificate), false, Box::Icon::Question);
    EXPECT_TRUE(transport.Open().contains("was not trusted"));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Refused));
    EXPECT_FALSE(transport.IsOpen());
    EXPECT_EQ(Kept(), Trust());

    prompter.ExpectBox(TrustQuestion(peer.Address(), certificate), true);
    EXPECT_EQ(transport.Open(), QString());
    EXPECT_TRUE(transport.Exchange(Hello, 5s));
    EXPECT_EQ(Kept(), Trust::Accepted(certificate.Fingerprint()));
    const ConnectionInfo info = transport.Describe();
    EXPECT_EQ(info.server, peer.Address().Text());
    EXPECT_TRUE(info.connection.startsWith("TLS 1.3, TLS_AES_") &&
                info.connection.contains(FingerprintText(certificate.Fingerprint())))
        << info.connection.toStdString();

    NetworkTransport next(peer.Address(), prompter);
    EXPECT_EQ(next.Open(), QString()) << "not asked again";
    ServerAddress otherPort = peer.Address();
    ++otherPort.port;
    EXPECT_EQ(TrustStore().Of(otherPort), Trust());
}

/// An authority that this process knows, for as long as it lives.
class KnownAuthority {
public:
    KnownAuthority()
        : m_before(QSslConfiguration::defaultConfiguration()) {
        QSslConfiguration configuration = m_before;
        configuration.addCaCertificate(authority.certificate);
        QSslConfiguration::setDefaultConfiguration(configuration);
    }
    ~KnownAuthority() { QSslConfiguration::setDefaultConfiguration(m_before); }

    SelfMadeCertificate authority = MakeCertificate({.name = "Library Authority", .isAuthority = true});

private:
    QSslConfiguration m_before;
};

// Which certificate meets which trust, and what comes of it.
TEST_F(NetworkTransportTest, TrustIsGivenKeptAndRefusedByWhatVouches) {
    const KnownAuthority known;
    const SelfMadeCertificate stranger = MakeCertificate({.name = "Strange Authority", .isAuthority = true});
    const SelfMadeCertificate vouched = MakeCertificate({.authority = &known.authority});
    const SelfMadeCertificate renewed = MakeCertificate({.authority = &known.authority});
    const SelfMadeCertificate expired = MakeCertificate({.days = -1, .authority = &known.authority});
    const SelfMadeCertificate otherName =
        MakeCertificate({.forThisHost = false, .authority = &known.authority});
    const SelfMadeCertificate strange = MakeCertificate({.authority = &stranger});
    const SelfMadeCertificate selfExpired = MakeCertificate({.days = -1});
    const SelfMadeCertificate own = MakeCertificate({.name = "sysadmin-server", .forThisHost = false});
    const Trust none;
    const Trust authority = Trust::Vouched();
    const QString expiry = "It expired on ";
    const QString another = "It was made for another name: for localhost, not for 127.0.0.1.";

    enum Outcome { Trusted, Asked, Warned, Refused };
    const struct {
        const char* what;
        Trust kept;
        const SelfMadeCertificate& shown;
        Outcome outcome;
        QStringList words;
    } cases[] = {
        {"vouched for, first time", none, vouched, Trusted, {}},
        {"own making, first time", none, certificate, Asked, {"of its own making. Its fingerprint"}},
        {"a server's own making names nobody", none, own, Asked, {"of its own making. Its fingerprint"}},
        {"expired, first time", none, expired, Warned, {expiry}},
        {"other name, first time", none, otherName, Warned, {another}},
        {"unknown authority, first time", none, strange, Warned, {"(Strange Authority)"}},
        {"own making and expired", none, selfExpired, Warned, {"of its own making", expiry}},
        {"renewed by the authority", authority, renewed, Trusted, {}},
        {"fallen back to its own making",
         authority,
         certificate,
         Refused,
         {"Until now an authority vouched", "It vouches only for itself", "something else pretends"}},
        {"fallen back to an expired one", authority, expired, Refused, {"Until now an authority", expiry}},
        {"fallen back to another name", authority, otherName, Refused, {"Until now an authority", another}},
        {"accepted", Trust::Accepted(own.Fingerprint()), own, Trusted, {}},
        {"accepted, now another",
         Trust::Accepted(own.Fingerprint()),
         certificate,
         Refused,
         {"another certificate than before", "something else pretends"}},
        {"accepted, now vouched for",
         Trust::Accepted(own.Fingerprint()),
         vouched,
         Refused,
         {"another certificate than before", "An authority (Library Authority) vouches for the new one"}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        Keep(one.kept);
        peer.Show(one.shown);
        const QString fingerprint = FingerprintText(one.shown.Fingerprint());
        QString asked;
        QuestionPrompter questions([&](const Box& box) {
            asked = box.text;
            EXPECT_EQ(box.icon, one.outcome == Warned ? Box::Icon::Exclamation : Box::Icon::Question);
            return true;
        });
        NetworkTransport transport(peer.Address(), questions);
        const QString problem = transport.Open();
        EXPECT_EQ(problem.isEmpty(), one.outcome != Refused) << problem.toStdString();
        EXPECT_EQ(transport.IsOpen(), one.outcome != Refused);
        EXPECT_EQ(asked.isEmpty(), one.outcome == Trusted || one.outcome == Refused) << asked.toStdString();
        for (const QString& word : one.words)
            EXPECT_TRUE((asked + problem).contains(word)) << word.toStdString() << "\n"
                                                          << (asked + problem).toStdString();
        EXPECT_EQ((asked + problem).contains(fingerprint), one.outcome != Trusted);
        EXPECT_EQ(transport.Offer().has_value(), one.outcome == Refused);
        const bool isVouched = &one.shown == &vouched || &one.shown == &renewed;
        const Trust wanted = isVouched ? authority : Trust::Accepted(one.shown.Fingerprint());
        if (one.outcome != Refused) {
            EXPECT_EQ(Kept(), wanted);
            continue;
        }
        EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Refused));
        EXPECT_FALSE(transport.Exchange(Hello, 1s));
        EXPECT_EQ(Kept(), one.kept);
        EXPECT_EQ(transport.Offer()->trust, wanted);
        Keep(transport.Offer()->trust);
        EXPECT_EQ(transport.Open(), QString()) << "accepted";
    }
    EXPECT_TRUE(server.Received().isEmpty());
}

TEST_F(NetworkTransportTest, AWeakKeyIsCalledThatAtOnce) {
    const SelfMadeCertificate weak = MakeCertificate({.weak = true});
    const QTemporaryDir folder;
    QFile file(folder.filePath("both.pem"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(weak.certificate.toPem() + weak.key.toPem());
    file.close();
    QProcess openssl;
    openssl.start("openssl", {"s_server", "-accept", "127.0.0.1:0", "-cert", file.fileName(), "-cipher",
                              "DEFAULT@SECLEVEL=0", "-tls1_2"});
    QByteArray said;
    while (!said.contains("ACCEPT 127.0.0.1:") && openssl.waitForReadyRead(10000))
        said += openssl.readAllStandardOutput();
    const ServerAddress address{"127.0.0.1", said.mid(said.indexOf("127.0.0.1:") + 10).trimmed().toUShort()};
    ASSERT_NE(address.port, 0) << said.toStdString();
    NetworkTransport transport(address, prompter);
    const QString problem = transport.Open();
    EXPECT_TRUE(problem.contains("too weak")) << problem.toStdString();
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Refused)) << "not tried again";
    EXPECT_FALSE(transport.Offer());
    openssl.kill();
    openssl.waitForFinished();
}

TEST_F(NetworkTransportTest, OldCipherSuitesAreNotTalked) {
    const auto connects = [this](const QString& suite) {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setProtocol(QSsl::TlsV1_2);
        configuration.setCiphers(suite);
        peer.Offer(configuration);
        NetworkTransport transport(peer.Address(), prompter);
        return transport.Open().isEmpty();
    };
    EXPECT_TRUE(connects("ECDHE-ECDSA-AES256-GCM-SHA384"));
    EXPECT_FALSE(connects("ECDHE-ECDSA-AES256-SHA384"));
    EXPECT_FALSE(connects("ECDHE-ECDSA-AES128-SHA"));
}

TEST_F(NetworkTransportTest, SaysWhyThereIsNoConnection) {
    peer.Stop();
    NetworkTransport none(peer.Address(), prompter);
    EXPECT_EQ(none.Open(), "No settings server is running at " + peer.Address().Text() + ".");
    EXPECT_EQ(int(none.LastFailure()), int(TransportFailure::Unreachable));
    NetworkTransport unknown({"no-such-host.invalid", 7443}, prompter);
    EXPECT_TRUE(unknown.Open().contains("no-such-host.invalid"));

    QTcpServer mute;
    ASSERT_TRUE(mute.listen(QHostAddress::LocalHost));
    NetworkTransport silent({"127.0.0.1", mute.serverPort()}, prompter);
    silent.SetOpenTimeLimit(200ms);
    EXPECT_TRUE(silent.Open().contains("did not answer within 1 second"));
    QObject::connect(&mute, &QTcpServer::newConnection, &mute, [&mute] {
        while (QTcpSocket* socket = mute.nextPendingConnection())
            socket->write("220 mail.example.org ESMTP\r\n");
    });
    silent.SetOpenTimeLimit(5s);
    EXPECT_TRUE(silent.Open().contains("is not a settings server"));
}

TEST_F(NetworkTransportTest, ACutConnectionIsResumedAndTheAddIsThereOnce) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    FailOnce("Add", {TlsPeer::Fault::CutBefore});
    EXPECT_EQ(Add(*channel, "before"), 0);
    FailOnce("Add", {TlsPeer::Fault::CutAfter});
    EXPECT_EQ(Add(*channel, "after"), 0);
    EXPECT_EQ(server.Added(), (QStringList{"before", "after"}));
    EXPECT_EQ(peer.Connections(), 3);
    EXPECT_EQ(server.Received().mid(2), (QStringList{"0 Resume", "1 Add", "2 Add", "0 Resume", "2 Add"}));
}

TEST_F(NetworkTransportTest, AServerThatIsStartedAgainIsWaitedFor) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    peer.Stop();
    const std::unique_ptr<QThread> restart(QThread::create([this] {
        QThread::msleep(700);
        peer.Start();
    }));
    restart->start();
    EXPECT_EQ(Add(*channel, "patient"), 0) << channel->LastProblem().toStdString();
    restart->wait();
    peer.Stop();
    channel->SetReconnectLimit(100ms);
    EXPECT_EQ(Add(*channel, "impatient"), 1);
    EXPECT_TRUE(channel->LastProblem().contains("No settings server"));
    peer.Start();
    EXPECT_EQ(Add(*channel, "again"), 0);
    EXPECT_EQ(server.Added(), (QStringList{"patient", "again"}));
}

TEST_F(NetworkTransportTest, TheTimeLimitHoldsAndTheSessionGoesOn) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    channel->SetTimeLimit(300ms);
    FailOnce("Add", {TlsPeer::Fault::Silence});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Add(*channel, "slow"), 1);
    EXPECT_TRUE(timer.elapsed() >= 290 && timer.elapsed() < 2000) << timer.elapsed();
    EXPECT_TRUE(channel->LastProblem().contains("in time"));
    channel->SetTimeLimit(10s);
    EXPECT_EQ(Add(*channel, "slow"), 0);
    EXPECT_EQ(channel->GetField("Count"), "1");
    EXPECT_EQ(server.Added(), QStringList{"slow"});
}

TEST_F(NetworkTransportTest, HostileRepliesEndTheConnection) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    const QByteArray hostile[] = {
        "HTTP/1.1 200 OK\r\n\r\n",
        QByteArray::fromHex("830300817bffffffffffffffff"),
        QByteArray::fromHex("8301009bffffffffffffffff"),
        QByteArray(200000, '\0'),
        wire::Encode(wire::Reply{999999, 0, {}}),
    };
    for (const QByteArray& bytes : hostile) {
        FailOnce("Get", {TlsPeer::Fault::Send, bytes});
        EXPECT_EQ(channel->SendRequest("Get"), 1);
        EXPECT_FALSE(channel->LastProblem().isEmpty());
        EXPECT_EQ(channel->SendRequest("Get"), 0) << "a well-behaved server is taken back";
    }
    FailOnce("Get", {TlsPeer::Fault::Append, wire::Encode(wire::Reply{2, 0, {}})});
    // What comes unasked is nobody's answer, whether it comes with the reply or after it.
    const int statusWithIt = channel->SendRequest("Get");
    QTest::qWait(50);
    EXPECT_EQ(statusWithIt + Add(*channel, "x"), 1);

    // Before sign-on 64 KiB are enough.
    NetworkTransport transport(peer.Address(), prompter);
    ASSERT_EQ(transport.Open(), QString());
    FailOnce("Hello",
             {TlsPeer::Fault::Send, wire::Encode(wire::Reply{0, 0, {{"SWT", QString(66000, 'x')}}})});
    EXPECT_FALSE(transport.Exchange(Hello, 5s));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Broken));
}

TEST_F(NetworkTransportTest, RepliesInCrumbsAndLargeOnesArriveWhole) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    FailOnce("Get", {.kind = TlsPeer::Fault::None, .piece = 1});
    channel->PutField("A", "crumbs");
    EXPECT_EQ(channel->SendRequest("Get"), 0);
    EXPECT_EQ(channel->GetField("A"), "crumbs");

    // More than any buffer between the two, both ways.
    const QString big(1024 * 1024, 'b');
    for (int i = 0; i < 20; ++i)
        channel->PutField("B", big);
    EXPECT_EQ(channel->SendRequest("Get"), 0) << channel->LastProblem().toStdString();
    ASSERT_EQ(channel->ReplyFields().size(), 20);
    EXPECT_EQ(channel->ReplyFields().last().value, big);
}

// Counts what reaches it.
class WatchedWidget : public QWidget {
public:
    int paints = 0;
    int clicks = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
    void mousePressEvent(QMouseEvent*) override { ++clicks; }
};

TEST_F(NetworkTransportTest, AWindowPaintsDuringALongWaitWhichIsTold) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    WatchedWidget window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const int paintsBefore = window.paints;
    QStringList told;
    channel->SetWaitObserver([&](const QString& request, bool waiting) {
        told.append(request + (waiting ? " begins" : " ends"));
        EXPECT_EQ(QGuiApplication::overrideCursor() != nullptr, waiting);
        window.update();
    });
    FailOnce("Get", {.kind = TlsPeer::Fault::None, .delay = 150});
    EXPECT_EQ(channel->SendRequest("Get"), 0);
    EXPECT_EQ(told, QStringList()) << "a short wait is no news";
    FailOnce("Get", {.kind = TlsPeer::Fault::None, .delay = 600});
    EXPECT_EQ(channel->SendRequest("Get"), 0);
    EXPECT_EQ(told, (QStringList{"Get begins", "Get ends"}));
    EXPECT_GT(window.paints, paintsBefore);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

// Only a real window system queues input: the test runs itself on a virtual one.
TEST_F(NetworkTransportTest, ClicksOfALongWaitAreDroppedAndThoseOfAShortOneKept) {
    if (QGuiApplication::platformName() != "xcb") {
        const QString virtualScreen = QStandardPaths::findExecutable("xvfb-run");
        if (virtualScreen.isEmpty() || QStandardPaths::findExecutable("xdotool").isEmpty())
            GTEST_SKIP() << "needs xvfb-run and xdotool";
        const auto* self = ::testing::UnitTest::GetInstance()->current_test_info();
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "xcb");
        // The libraries behind a real window keep memory to the end; what this program leaks is found without
        // one.
        environment.insert("ASAN_OPTIONS", "detect_leaks=0");
        process.setProcessEnvironment(environment);
        process.start(virtualScreen,
                      {"-a", QCoreApplication::applicationFilePath(),
                       QString("--gtest_filter=%1.%2").arg(self->test_suite_name(), self->name())});
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), 0);
        return;
    }
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    WatchedWidget window;
    window.setGeometry(0, 0, 300, 300);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const auto clicksDuringGet = [&](int milliseconds) {
        window.clicks = 0;
        QProcess mouse;
        mouse.start("xdotool", {"mousemove", "150", "150", "click", "--repeat", "3", "--delay", "20", "1"});
        FailOnce("Get", {.kind = TlsPeer::Fault::None, .delay = milliseconds});
        EXPECT_EQ(channel->SendRequest("Get"), 0);
        EXPECT_EQ(window.clicks, 0) << "no input while a request is in flight";
        EXPECT_TRUE(QTest::qWaitFor([&] { return mouse.state() == QProcess::NotRunning; }));
        EXPECT_EQ(mouse.exitCode(), 0) << mouse.readAllStandardError().toStdString();
        QTest::qWait(50);
        return window.clicks;
    };
    EXPECT_EQ(clicksDuringGet(1000), 0);
    EXPECT_EQ(clicksDuringGet(250), 3);
}

} // namespace
} // namespace sysadmin
