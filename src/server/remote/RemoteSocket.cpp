#include "server/remote/RemoteSocket.h"

#include "wire/Tls.h"

#include <QEventLoop>
#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslError>
#include <QSslSocket>
#include <QTimer>

namespace sysadmin::server {

namespace {

constexpr qint64 ReadBufferSize = 64 * 1024; // what the system may hold for us besides

} // namespace

RemoteSocket::RemoteSocket(const Patience& patience)
    : m_patience(patience)
    , m_socket(std::make_unique<QSslSocket>()) {
    m_socket->setReadBufferSize(ReadBufferSize);
    m_socket->setProxy(QNetworkProxy::NoProxy);
    QObject::connect(m_socket.get(), &QSslSocket::errorOccurred, m_socket.get(), [this] { m_failed = true; });
    QObject::connect(m_socket.get(), &QSslSocket::sslErrors, m_socket.get(), [this] {
        // Whose certificate it is gets checked before anything is sent.
        m_vouchedFor = false;
        m_socket->ignoreSslErrors();
    });
}

RemoteSocket::~RemoteSocket() {
    m_socket->disconnect();
    m_socket->abort();
}

bool RemoteSocket::Connect(const QString& host, quint16 port, Encryption encryption) {
    if (encryption == Encryption::None) {
        m_socket->connectToHost(host, port);
        return WaitUntil([this] { return m_socket->state() == QAbstractSocket::ConnectedState; });
    }
    QSslConfiguration configuration = wire::TlsConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    m_socket->setSslConfiguration(configuration);
    m_socket->connectToHostEncrypted(host, port);
    return WaitUntil([this] { return m_socket->isEncrypted(); });
}

bool RemoteSocket::Write(const QByteArray& bytes) {
    m_socket->write(bytes);
    return WaitUntil(
        [this] { return m_socket->bytesToWrite() == 0 && m_socket->encryptedBytesToWrite() == 0; });
}

std::optional<QByteArray> RemoteSocket::Read(const Measure& measure, qint64 most) {
    qint64 measured = -1; // so many bytes were there at the last look
    qint64 length = 0;
    QDeadlineTimer nextLook(0);
    const bool complete = WaitUntil([&] {
        m_received += m_socket->readAll();
        // Whoever sends byte by byte does not make us look at each of them.
        const bool grown = m_received.size() > measured + measured / 4;
        if (m_received.size() > measured && (grown || nextLook.hasExpired() || m_failed)) {
            measured = m_received.size();
            nextLook = QDeadlineTimer(Patience::Tick);
            length = measure(m_received);
        }
        return length != 0 || m_received.size() > most;
    });
    if (length < 0) {
        Fail(Outcome::OtherProtocol);
        return {};
    }
    if (length > most || (length == 0 && m_received.size() > most)) {
        Fail(Outcome::TooLong);
        return {};
    }
    if (!complete)
        return {};
    const QByteArray message = m_received.left(length);
    m_received.remove(0, length);
    return message;
}

QSslCertificate RemoteSocket::Certificate() const {
    return m_socket->peerCertificate();
}

bool RemoteSocket::WaitUntil(const std::function<bool()>& done) {
    if (done())
        return true;
    QEventLoop loop;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &loop, &QEventLoop::quit);
    tick.start(Patience::Tick);
    QObject::connect(m_socket.get(), &QSslSocket::connected, &loop, &QEventLoop::quit);
    QObject::connect(m_socket.get(), &QSslSocket::disconnected, &loop, &QEventLoop::quit);
    QObject::connect(m_socket.get(), &QSslSocket::readyRead, &loop, &QEventLoop::quit);
    QObject::connect(m_socket.get(), &QSslSocket::encrypted, &loop, &QEventLoop::quit);
    QObject::connect(m_socket.get(), &QSslSocket::bytesWritten, &loop, &QEventLoop::quit);
    QObject::connect(m_socket.get(), &QSslSocket::errorOccurred, &loop, &QEventLoop::quit);
    for (;;) {
        if (m_patience.IsOver())
            return Fail(m_patience.Reason());
        if (!m_failed)
            loop.exec();
        if (done()) // what came before an end still counts
            return true;
        if (m_failed)
            return FailBySocket();
    }
}

bool RemoteSocket::Fail(Outcome outcome, const QString& detail) {
    m_failure = outcome;
    m_detail = detail;
    return false;
}

bool RemoteSocket::FailBySocket() {
    switch (m_socket->error()) {
    case QAbstractSocket::HostNotFoundError:
        return Fail(Outcome::UnknownHost);
    case QAbstractSocket::ConnectionRefusedError:
        return Fail(Outcome::Refused);
    case QAbstractSocket::SocketTimeoutError:
        return Fail(Outcome::TimedOut);
    case QAbstractSocket::RemoteHostClosedError:
        return Fail(Outcome::Closed);
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        return Fail(Outcome::OtherProtocol, m_socket->errorString());
    default:
        return Fail(Outcome::Unreachable, m_socket->errorString());
    }
}

} // namespace sysadmin::server
