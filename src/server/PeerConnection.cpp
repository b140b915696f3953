#include "server/PeerConnection.h"

#include <QHostAddress>

namespace sysadmin::server {

namespace {

QString AddressText(const QHostAddress& address) {
    // An IPv4 peer of a socket for both protocols comes in its IPv6 form.
    bool isIPv4 = false;
    const quint32 number = address.toIPv4Address(&isIPv4);
    return isIPv4 ? QHostAddress(number).toString() : address.toString();
}

} // namespace

PeerConnection::PeerConnection(qintptr handle, const QSslConfiguration& configuration,
                               wire::EndpointFactory factory, const PeerLimits& limits)
    : m_handle(handle)
    , m_configuration(configuration)
    , m_factory(std::move(factory))
    , m_limits(limits) {}

PeerConnection::~PeerConnection() = default;

void PeerConnection::Begin() {
    m_socket = new QSslSocket(this);
    m_patience = new QTimer(this);
    m_patience->setSingleShot(true);
    m_signOnTime = new QTimer(this);
    m_signOnTime->setSingleShot(true);
    connect(m_patience, &QTimer::timeout, this, &PeerConnection::Leave);
    connect(m_signOnTime, &QTimer::timeout, this, &PeerConnection::Leave);
    if (m_finished || !m_socket->setSocketDescriptor(m_handle)) {
        Leave();
        return;
    }
    m_socket->setSslConfiguration(m_configuration);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    m_endpoint = m_factory(AddressText(m_socket->peerAddress()));
    ApplyLimits();
    connect(m_socket, &QSslSocket::encrypted, this, [this] {
        m_patience->stop();
        TakeMessages();
    });
    connect(m_socket, &QSslSocket::readyRead, this, &PeerConnection::TakeMessages);
    connect(m_socket, &QSslSocket::encryptedBytesWritten, this, [this] {
        m_patience->stop(); // the peer takes what it gets
        TakeMessages();
    });
    connect(m_socket, &QSslSocket::disconnected, this, &PeerConnection::Leave);
    m_patience->start(m_limits.handshakeMilliseconds);
    m_signOnTime->start(m_limits.signOnMilliseconds);
    m_socket->startServerEncryption();
}

void PeerConnection::ApplyLimits() {
    const qint64 limit = m_endpoint->MessageLimit();
    wire::Limits limits;
    limits.message = limit;
    m_scanner.SetLimits(limits);
    // What is not read yet stays with the peer.
    m_socket->setReadBufferSize(qMin<qint64>(limit, 256 * 1024));
}

void PeerConnection::TakeMessages() {
    if (m_finished || !m_socket->isEncrypted())
        return;
    // One request is answered before the next is looked at, and a reply that the peer does not take holds up
    // its own requests only.
    while (m_socket->bytesToWrite() == 0 && m_socket->encryptedBytesToWrite() == 0) {
        m_received += m_socket->readAll();
        const auto result = m_scanner.Scan(m_received);
        if (result == wire::FrameScanner::Result::Broken) {
            Leave();
            return;
        }
        if (result == wire::FrameScanner::Result::Incomplete)
            break;
        const qint64 length = m_scanner.Length();
        const auto reply = m_endpoint->Handle(m_received.left(length));
        if (!reply) {
            Leave();
            return;
        }
        m_received.remove(0, length);
        m_scanner.Reset();
        m_patience->stop();
        const bool signedOn = m_endpoint->MessageLimit() > wire::Limits::BeforeSignOn().message;
        if (signedOn != m_signedOn) {
            m_signedOn = signedOn;
            if (signedOn) {
                m_signOnTime->stop();
                emit SignedOn();
            } else {
                m_signOnTime->start(m_limits.signOnMilliseconds);
            }
        }
        ApplyLimits();
        m_socket->write(*reply);
        m_socket->flush();
    }
    const bool waiting =
        !m_received.isEmpty() || m_socket->bytesToWrite() > 0 || m_socket->encryptedBytesToWrite() > 0;
    if (!waiting)
        m_patience->stop();
    else if (!m_patience->isActive())
        m_patience->start(m_limits.messageMilliseconds);
}

void PeerConnection::Leave() {
    if (m_finished)
        return;
    m_finished = true;
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->abort();
        // They belong to this thread and go before it ends.
        m_socket->deleteLater();
        m_patience->deleteLater();
        m_signOnTime->deleteLater();
    }
    m_endpoint.reset(); // its database connection belongs to this thread
    emit Finished();
}

} // namespace sysadmin::server
