#include "comm/NetworkTransport.h"

#include "comm/Waiting.h"
#include "core/Prompter.h"
#include "wire/Tls.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QRegularExpression>
#include <QSslCipher>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslSocket>
#include <QTimer>

namespace sysadmin {

namespace {

// Bytes that the system may hold for us; a server that floods us meets its own full window.
constexpr qint64 ReadBufferSize = 1024 * 1024;

} // namespace

NetworkTransport::NetworkTransport(const ServerAddress& server, Prompter& prompter)
    : m_server(server)
    , m_prompter(prompter) {}

NetworkTransport::~NetworkTransport() = default;

QString NetworkTransport::Open() {
    ClearFailure();
    m_offer.reset();
    // After the question the server is called anew, because it need not wait for the answer; the certificate
    // that was trusted must come back.
    for (;;) {
        if (!Connect()) {
            const auto failure = IsKeyTooWeak() ? TransportFailure::Refused : TransportFailure::Unreachable;
            const QString problem = ConnectProblem();
            Close();
            return Fail(failure, problem);
        }
        switch (CheckCertificate()) {
        case Verdict::Trusted:
            m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            return {};
        case Verdict::Refused:
            Close();
            return LastProblem();
        case Verdict::CallAgain:
            break;
        }
    }
}

bool NetworkTransport::Connect() {
    m_socket = std::make_unique<QSslSocket>();
    QSslConfiguration configuration = wire::TlsConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    m_socket->setSslConfiguration(configuration);
    m_socket->setReadBufferSize(ReadBufferSize);
    QList<QSslError> faults;
    QEventLoop loop;
    QObject::connect(m_socket.get(), &QSslSocket::sslErrors, &loop, [&](const QList<QSslError>& errors) {
        // Whose certificate it is gets checked before anything is sent.
        faults = errors;
        m_socket->ignoreSslErrors();
    });
    QObject::connect(m_socket.get(), &QSslSocket::encrypted, &loop, &QEventLoop::quit);
    QObject::connect(m_socket.get(), &QSslSocket::errorOccurred, &loop, &QEventLoop::quit);
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    limit.start(m_openTimeLimit);
    QTimer pump;
    QObject::connect(&pump, &QTimer::timeout, &loop, [this] { Pump(); });
    pump.start(Waiting::Slice);
    m_socket->connectToHostEncrypted(m_server.host, m_server.port);
    if (m_socket->error() == QAbstractSocket::UnknownSocketError) {
        HoldInput();
        loop.exec();
        ReleaseInput();
    }
    m_found = ExamineCertificate(m_socket->peerCertificate(), faults, m_server.host);
    return m_socket->isEncrypted() && m_socket->state() == QAbstractSocket::ConnectedState;
}

// Where the system itself refuses weak keys the handshake ends with this.
bool NetworkTransport::IsKeyTooWeak() const {
    static const QRegularExpression words("(key|md|modulus) too (small|weak)");
    return words.match(m_socket->errorString()).hasMatch();
}

QString NetworkTransport::ConnectProblem() const {
    const QString server = m_server.Text();
    if (IsKeyTooWeak())
        return WeakKeyProblem({});
    switch (m_socket->error()) {
    case QAbstractSocket::UnknownSocketError: // none: the time limit has come
    case QAbstractSocket::SocketTimeoutError:
        return tr("%1 did not answer within %2 seconds.")
            .arg(server, QString::number(std::chrono::ceil<std::chrono::seconds>(m_openTimeLimit).count()));
    case QAbstractSocket::HostNotFoundError:
        return tr("There is no computer named %1. Check the name of the server.").arg(m_server.host);
    case QAbstractSocket::ConnectionRefusedError:
        return tr("No settings server is running at %1.").arg(server);
    case QAbstractSocket::RemoteHostClosedError:
    case QAbstractSocket::SslHandshakeFailedError:
        return tr("What answers at %1 is not a settings server, or one that this program cannot talk to: %2")
            .arg(server, m_socket->errorString());
    default:
        return tr("%1 cannot be reached: %2").arg(server, m_socket->errorString());
    }
}

NetworkTransport::Verdict NetworkTransport::CheckCertificate() {
    if (m_found.fingerprint.isEmpty())
        return Refuse(tr("%1 shows no certificate, so nothing was sent to it.").arg(m_server.Text()));
    if (!m_found.weakness.isEmpty())
        return Refuse(WeakKeyProblem(m_found.weakness));
    const Trust kept = m_trust.Of(m_server);
    const Trust shown = m_found.vouchedFor ? Trust::Vouched() : Trust::Accepted(m_found.fingerprint);
    if (kept == shown || kept == Trust::Accepted(m_found.fingerprint))
        return Verdict::Trusted;
    if (kept.kind != Trust::Kind::None) {
        m_offer = CertificateOffer{shown, m_found.fingerprint};
        return Refuse(ChangeProblem(kept));
    }
    if (m_found.vouchedFor) {
        m_trust.Keep(m_server, shown);
        return Verdict::Trusted;
    }
    Close();
    if (!AskForTrust())
        return Refuse(tr("The certificate of %1 was not trusted.").arg(m_server.Text()));
    m_trust.Keep(m_server, shown);
    return Verdict::CallAgain;
}

NetworkTransport::Verdict NetworkTransport::Refuse(const QString& problem) {
    Fail(TransportFailure::Refused, problem);
    return Verdict::Refused;
}

QString NetworkTransport::WeakKeyProblem(const QString& weakness) const {
    const QString key = weakness.isEmpty() ? QString() : " (" + weakness + ")";
    return tr("The key in the certificate of %1 is too weak%2: it can be broken, and then anybody could "
              "pretend to be this server. Its administrator has to give it a certificate with a stronger "
              "key.")
        .arg(m_server.Text(), key);
}

QString NetworkTransport::ChangeProblem(const Trust& kept) const {
    QStringList sentences;
    if (kept.kind == Trust::Kind::Authority)
        sentences << tr("Until now an authority vouched for the certificate of %1. For the one that it shows "
                        "now none does, so nothing was sent to it.")
                         .arg(m_server.Text());
    else
        sentences << tr("%1 shows another certificate than before, so nothing was sent to it.")
                         .arg(m_server.Text());
    if (m_found.vouchedFor)
        sentences << tr("An authority (%1) vouches for the new one, but it is not the certificate that you "
                        "accepted.")
                         .arg(m_found.issuer);
    else if (kept.kind == Trust::Kind::Authority && m_found.selfMade)
        sentences << tr("It vouches only for itself.");
    sentences += m_found.faults;
    if (m_found.selfMade || m_found.vouchedFor)
        sentences << tr("Either the server was set up anew, or something else pretends to be it.");
    else
        sentences << tr("Either its administrator has to mend this, or something else pretends to be it.");
    sentences << tr("Ask the server's administrator whether the fingerprint is now %1.")
                     .arg(FingerprintText(m_found.fingerprint));
    return sentences.join(' ');
}

bool NetworkTransport::AskForTrust() {
    PauseWaiting();
    const bool plain = m_found.selfMade && m_found.faults.isEmpty();
    const QString about =
        m_found.selfMade
            ? tr("The server proves who it is with a certificate of its own making.")
            : tr("This computer cannot tell whether the certificate that it shows is really its own.");
    const QString text = tr("This is the first connection to %1.\r\n\r\n%2 Its fingerprint "
                            "(SHA-256) is\r\n\r\n%3\r\n\r\n"
                            "The server's administrator can tell whether that is right.\r\n\r\n"
                            "Do you trust this server, now and in future?")
                             .arg(m_server.Text(), (QStringList{about} + m_found.faults).join(' '),
                                  FingerprintText(m_found.fingerprint));
    return m_prompter.ShowBox(nullptr, {.text = text,
                                        .icon = plain ? Box::Icon::Question : Box::Icon::Exclamation,
                                        .buttons = Box::Buttons::YesNo,
                                        .careful = true});
}

bool NetworkTransport::IsOpen() const {
    return m_socket && m_socket->state() == QAbstractSocket::ConnectedState;
}

void NetworkTransport::Close() {
    if (m_socket)
        m_socket->abort();
}

std::optional<QByteArray> NetworkTransport::Exchange(const QByteArray& message,
                                                     std::chrono::milliseconds timeLimit) {
    ClearFailure();
    if (!IsOpen())
        return FailAndClose(TransportFailure::Lost, tr("The connection to %1 is lost.").arg(m_server.Text()));
    if (m_socket->bytesAvailable() > 0)
        return FailAndClose(TransportFailure::Broken,
                            tr("%1 has sent something unasked.").arg(m_server.Text()));
    const QDeadlineTimer deadline(timeLimit);
    QDeadlineTimer nextPump(Waiting::Slice);
    m_socket->write(message);
    m_socket->flush();
    QByteArray reply;
    m_scanner.SetLimits(ReplyLimits());
    m_scanner.Reset();
    for (;;) {
        // What the server sent before the connection ended still counts.
        const bool open = IsOpen();
        reply += m_socket->readAll();
        switch (m_scanner.Scan(reply)) {
        case wire::FrameScanner::Result::Complete:
            if (m_scanner.Length() == reply.size())
                return reply;
            [[fallthrough]];
        case wire::FrameScanner::Result::Broken:
            return FailAndClose(TransportFailure::Broken,
                                tr("%1 has sent something that is not an answer.").arg(m_server.Text()));
        case wire::FrameScanner::Result::Incomplete:
            break;
        }
        if (!open)
            return FailAndClose(TransportFailure::Lost,
                                tr("The connection to %1 is lost.").arg(m_server.Text()));
        if (deadline.hasExpired())
            return FailAndClose(TransportFailure::TimeLimit,
                                tr("%1 has not answered in time.").arg(m_server.Text()));
        // Blocking is what makes a quick reply quick; in a long wait the windows get their turn between the
        // slices.
        m_socket->waitForReadyRead(int(qMin<qint64>(Waiting::Slice.count(), deadline.remainingTime() + 1)));
        if (nextPump.hasExpired()) {
            Pump();
            nextPump.setRemainingTime(Waiting::Slice);
        }
    }
}

std::optional<QByteArray> NetworkTransport::FailAndClose(TransportFailure failure, const QString& problem) {
    Close();
    Fail(failure, problem);
    return {};
}

ConnectionInfo NetworkTransport::Describe() const {
    if (!IsOpen())
        return {m_server.Text(), tr("Not connected at the moment")};
    const QString protocol =
        m_socket->sessionProtocol() == QSsl::TlsV1_3 ? QString("TLS 1.3") : QString("TLS 1.2");
    const QString proof = m_found.vouchedFor ? tr("Certificate of an authority (%1)").arg(m_found.issuer)
                                             : tr("Certificate %1").arg(FingerprintText(m_found.fingerprint));
    return {m_server.Text(), protocol + ", " + m_socket->sessionCipher().name() + "\n" + proof};
}

} // namespace sysadmin
