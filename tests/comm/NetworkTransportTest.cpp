#include "comm/NetworkTransport.h"
#include "comm/PasswordEncoder.h"
#include "comm/SessionData.h"
#include "comm/TlsPeer.h"
#include "comm/WireChannel.h"
#include "support/ScriptedPrompter.h"

#include <QGuiApplication>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace sysadmin {
namespace {

const QByteArray Hello = wire::Encode(wire::Request{0, "Hello", {}});

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

    ModelServer server;
    SelfMadeCertificate certificate = MakeCertificate();
    TlsPeer peer{server, certificate};
    ScriptedPrompter prompter;
};

TEST_F(NetworkTransportTest, WithoutTrustThereIsNoConnectionAndWithItNoQuestion) {
    TrustStore().Forget(peer.Address());
    QuestionPrompter declines([](const Box&) { return false; });
    NetworkTransport transport(peer.Address(), declines);
    EXPECT_TRUE(transport.Open().contains("was not trusted"));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Refused));
    EXPECT_FALSE(transport.IsOpen());
    EXPECT_EQ(Kept(), Trust());

    Keep(Trust::Accepted(certificate.Fingerprint()));
    EXPECT_EQ(transport.Open(), QString());
    EXPECT_TRUE(transport.Exchange(Hello, 5s));
    const ConnectionInfo info = transport.Describe();
    EXPECT_EQ(info.server, peer.Address().Text());
    EXPECT_TRUE(info.connection.startsWith("TLS 1.3, TLS_AES_") &&
                info.connection.contains(FingerprintText(certificate.Fingerprint())))
        << info.connection.toStdString();
    EXPECT_EQ(TrustStore().Of({"127.0.0.1", quint16(peer.Address().port + 1)}), Trust());
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
    const auto vouchedFor = [&](CertificateWish wish = {}) {
        wish.authority = &known.authority;
        return MakeCertificate(wish);
    };
    const SelfMadeCertificate vouched = vouchedFor();
    const SelfMadeCertificate renewed = vouchedFor();
    const SelfMadeCertificate expired = vouchedFor({.days = -1});
    const SelfMadeCertificate otherName = vouchedFor({.forThisHost = false});
    const SelfMadeCertificate strange = MakeCertificate({.authority = &stranger});
    const SelfMadeCertificate selfExpired = MakeCertificate({.days = -1});
    const SelfMadeCertificate own = MakeCertificate({.name = "sysadmin-server", .forThisHost = false});
    const Trust none;
    const Trust authority = Trust::Vouched();
    const Trust accepted = Trust::Accepted(own.Fingerprint());
    const QString another = "It was made for another name: for localhost, not for 127.0.0.1.";

    enum Outcome { Trusted, Asked, Warned, Refused };
    const struct {
        const char* what;
        Trust kept;
        const SelfMadeCertificate& shown;
        Outcome outcome;
        QString words; // what the operator reads, parted by "|"
    } cases[] = {
        {"vouched for, first time", none, vouched, Trusted, {}},
        {"own making, first time", none, certificate, Asked, "of its own making. Its fingerprint"},
        {"own making names nobody", none, own, Asked, "of its own making. Its fingerprint"},
        {"expired, first time", none, expired, Warned, "It expired on "},
        {"other name, first time", none, otherName, Warned, another},
        {"unknown authority, first time", none, strange, Warned, "(Strange Authority)"},
        {"own making and expired", none, selfExpired, Warned, "of its own making|It expired on "},
        {"renewed by the authority", authority, renewed, Trusted, {}},
        {"fallen back to its own making", authority, certificate, Refused,
         "Until now an authority vouched|It vouches only for itself|something else pretends"},
        {"now expired", authority, expired, Refused, "Until now an authority|It expired on "},
        {"now of another name", authority, otherName, Refused, "Until now an authority|" + another},
        {"accepted", accepted, own, Trusted, {}},
        {"accepted, now another", accepted, certificate, Refused,
         "another certificate than before|something else pretends"},
        {"accepted, now vouched for", accepted, vouched, Refused,
         "another certificate than before|An authority (Library Authority) vouches for the new one"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        Keep(one.kept);
        peer.Offer(one.shown);
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
        for (const QString& word : one.words.split('|', Qt::SkipEmptyParts))
            EXPECT_TRUE((asked + problem).contains(word)) << (asked + problem).toStdString();
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

TEST_F(NetworkTransportTest, OldCipherSuitesAreNotTalked) {
    const auto connects = [this](const QString& suite) {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setProtocol(QSsl::TlsV1_2);
        configuration.setCiphers(suite);
        peer.Offer(certificate, configuration);
        NetworkTransport transport(peer.Address(), prompter);
        return transport.Open().isEmpty();
    };
    EXPECT_TRUE(connects("ECDHE-ECDSA-AES256-GCM-SHA384"));
    EXPECT_FALSE(connects("ECDHE-ECDSA-AES256-SHA384"));
    EXPECT_FALSE(connects("ECDHE-ECDSA-AES128-SHA"));
}

TEST_F(NetworkTransportTest, SaysWhyThereIsNoConnection) {
    peer.StopListening();
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
        peer.FailOnce({.instead = bytes});
        EXPECT_EQ(channel->SendRequest("Get"), 1);
        EXPECT_FALSE(channel->LastProblem().isEmpty());
        EXPECT_EQ(channel->SendRequest("Get"), 0) << "a well-behaved server is taken back";
    }
    // What comes unasked is nobody's answer, whether it comes with the reply or after it.
    peer.FailOnce({.behind = wire::Encode(wire::Reply{2, 0, {}})});
    const int statusWithIt = channel->SendRequest("Get");
    QTest::qWait(50);
    EXPECT_EQ(statusWithIt + channel->SendRequest("Add"), 1);

    // Before sign-on 64 KiB are enough.
    NetworkTransport transport(peer.Address(), prompter);
    ASSERT_EQ(transport.Open(), QString());
    peer.FailOnce({.instead = wire::Encode(wire::Reply{0, 0, {{"SWT", QString(66000, 'x')}}})});
    EXPECT_FALSE(transport.Exchange(Hello, 5s));
    EXPECT_EQ(int(transport.LastFailure()), int(TransportFailure::Broken));
}

TEST_F(NetworkTransportTest, MoreThanAnyBufferHoldsArrivesWholeBothWays) {
    const std::unique_ptr<WireChannel> channel = SignedOnChannel();
    const wire::Fields fields(20, {"B", QString(1024 * 1024, 'b')});
    for (const wire::Field& field : fields)
        channel->PutField(field.tag, field.value);
    EXPECT_EQ(channel->SendRequest("Get"), 0) << channel->LastProblem().toStdString();
    EXPECT_TRUE(channel->ReplyFields() == fields);
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

TEST_F(NetworkTransportTest, DuringALongWaitWhichIsToldAWindowPaintsAndTakesNoClicks) {
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
        if (waiting)
            QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    });
    peer.FailOnce({.delay = 150});
    EXPECT_EQ(channel->SendRequest("Get"), 0);
    EXPECT_EQ(told, QStringList()) << "a short wait is no news";
    peer.FailOnce({.delay = 600});
    EXPECT_EQ(channel->SendRequest("Get"), 0);
    EXPECT_EQ(told, (QStringList{"Get begins", "Get ends"}));
    EXPECT_GT(window.paints, paintsBefore);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.clicks, 0);
}

} // namespace
} // namespace sysadmin
