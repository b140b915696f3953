#include "comm/NetworkTransport.h"

#include "comm/Waiting.h"
#include "core/Prompter.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QSslCertificate>
#include <QSslCipher>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>

namespace sysadmin {

namespace {

// Bytes that the system may hold for us; a server that floods us meets its own full window.
constexpr qint64 ReadBufferSize = 1024 * 1024;

QSslConfiguration SecureConfiguration() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    return configuration;
}

QByteArray FingerprintOf(const QSslCertificate& certificate) {
    return certificate.isNull() ? QByteArray() : certificate.digest(QCryptographicHash::Sha256);
}

} // namespace

NetworkTransport::NetworkTransport(const ServerAddress& server, Prompter& prompter)
    : m_server(server)
    , m_prompter(prompter) {}

NetworkTransport::~NetworkTransport() = default;

QString NetworkTransport::Open() {
    ClearFailure();
    m_certificateChanged = false;
    // After the question the server is called anew, because it need not wait for the answer; the certificate
    // that was trusted must come back.
    for (;;) {
        if (!Connect()) {
            const QString problem = ConnectProblem();
            Close();
            return Fail(TransportFailure::Unreachable, problem);
        }
        switch (CheckCertificate()) {
        case Trust::Given:
            m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            return {};
        case Trust::Refused:
            Close();
            return LastProblem();
        case Trust::AskAgain:
            break;
        }
    }
}

bool NetworkTransport::Connect() {
    m_socket = std::make_unique<QSslSocket>();
    m_socket->setSslConfiguration(SecureConfiguration());
    m_socket->setReadBufferSize(ReadBufferSize);
    m_vouchedFor = true;
    QEventLoop loop;
    QObject::connect(m_socket.get(), &QSslSocket::sslErrors, m_socket.get(), [this] {
        // Whose certificate it is gets checked before anything is sent.
        m_vouchedFor = false;
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
    return m_socket->isEncrypted() && m_socket->state() == QAbstractSocket::ConnectedState;
}

QString NetworkTransport::ConnectProblem() const {
    const QString server = m_server.Text();
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

NetworkTransport::Trust NetworkTransport::CheckCertificate() {
    if (m_vouchedFor)
        return Trust::Given;
    const QByteArray fingerprint = FingerprintOf(m_socket->peerCertificate());
    const QByteArray kept = m_trust.Fingerprint(m_server);
    if (!fingerprint.isEmpty() && kept == fingerprint)
        return Trust::Given;
    if (!kept.isEmpty()) {
        m_certificateChanged = true;
        Fail(TransportFailure::Refused, tr("%1 shows another certificate than before, so nothing was sent to "
                                           "it. Either the server was set up "
                                           "anew, or something else pretends to be it. Ask the server's "
                                           "administrator whether the fingerprint "
                                           "is now %2.")
                                            .arg(m_server.Text(), FingerprintText(fingerprint)));
        return Trust::Refused;
    }
    Close();
    if (!AskForTrust(fingerprint)) {
        Fail(TransportFailure::Refused, tr("The certificate of %1 was not trusted.").arg(m_server.Text()));
        return Trust::Refused;
    }
    m_trust.Keep(m_server, fingerprint);
    return Trust::AskAgain;
}

bool NetworkTransport::AskForTrust(const QByteArray& fingerprint) {
    PauseWaiting();
    const QString text =
        tr("This is the first connection to %1.\r\n\r\n"
           "The server proves who it is with a certificate of its own making. Its fingerprint "
           "(SHA-256) is\r\n\r\n%2\r\n\r\n"
           "The server's administrator can tell whether that is right.\r\n\r\n"
           "Do you trust this server, now and in future?")
            .arg(m_server.Text(), FingerprintText(fingerprint));
    return m_prompter.ShowBox(nullptr, {text, Box::Icon::Question, Box::Buttons::YesNo});
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
    const QString proof =
        m_vouchedFor ? tr("Certificate of an authority")
                     : tr("Certificate %1").arg(FingerprintText(FingerprintOf(m_socket->peerCertificate())));
    return {m_server.Text(), protocol + ", " + m_socket->sessionCipher().name() + "\n" + proof};
}

} // namespace sysadmin
