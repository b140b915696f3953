#include "server/PeerConnection.h"

#include <QHostAddress>

namespace sysadmin::server {

namespace {

using Share = MemoryShares::Share;

/// How much is read or written at a time.
constexpr qint64 PieceBytes = 32 * 1024;

QString AddressText(const QHostAddress& address) {
    // An IPv4 peer of a socket for both protocols comes in its IPv6 form.
    bool isIPv4 = false;
    const quint32 number = address.toIPv4Address(&isIPv4);
    return isIPv4 ? QHostAddress(number).toString() : address.toString();
}

} // namespace

PeerConnection::PeerConnection(quint64 number, const PeerLimits& limits, MemoryShares& shares,
                               QObject* parent)
    : QObject(parent)
    , m_number(number)
    , m_limits(limits)
    , m_shares(shares) {
    m_patience.setSingleShot(true);
    m_signOnTime.setSingleShot(true);
    m_idle.start();
    connect(&m_patience, &QTimer::timeout, this, &PeerConnection::Leave);
    connect(&m_signOnTime, &QTimer::timeout, this, &PeerConnection::Leave);
}

PeerConnection::~PeerConnection() {
    m_socket.disconnect(this);
}

void PeerConnection::Begin(qintptr handle, const QSslConfiguration& configuration) {
    if (!m_socket.setSocketDescriptor(handle)) {
        Leave();
        return;
    }
    m_address = AddressText(m_socket.peerAddress());
    m_socket.setSslConfiguration(configuration);
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    m_socket.setReadBufferSize(PieceBytes); // what is not read yet stays with the peer
    connect(&m_socket, &QSslSocket::encrypted, this, [this] {
        m_patience.stop();
        Advance();
    });
    connect(&m_socket, &QSslSocket::readyRead, this, &PeerConnection::Advance);
    connect(&m_socket, &QSslSocket::encryptedBytesWritten, this, [this] {
        m_patience.stop(); // the peer takes what it gets
        Advance();
    });
    connect(&m_socket, &QSslSocket::disconnected, this, &PeerConnection::Leave);
    m_patience.start(m_limits.handshakeMilliseconds);
    m_signOnTime.start(m_limits.signOnMilliseconds);
    m_socket.startServerEncryption();
}

void PeerConnection::SetAccount(const QString& account, qint64 messageLimit) {
    if (account.isEmpty() && IsSignedOn())
        m_signOnTime.start(m_limits.signOnMilliseconds);
    else if (!account.isEmpty())
        m_signOnTime.stop();
    m_account = account;
    wire::Limits limits = account.isEmpty() ? wire::Limits::BeforeSignOn() : wire::Limits();
    limits.message = messageLimit;
    m_scanner.SetLimits(limits);
}

void PeerConnection::Granted() {
    if (m_state != State::WaitingForMemory)
        return;
    m_state = State::Receiving;
    m_patience.start(m_limits.lentMilliseconds);
    Advance();
}

void PeerConnection::Reply(const QByteArray& reply) {
    m_idle.restart();
    m_shares.Release(m_number);
    m_share = Share::Own;
    m_reply = reply;
    m_sent = 0;
    m_state = State::Sending;
    Advance();
}

void PeerConnection::Advance() {
    if (m_advancing) {
        m_again = true; // a socket tells of its progress while it is being written to
        return;
    }
    m_advancing = true;
    try {
        do {
            m_again = false;
            if (!m_finished && m_state == State::Sending)
                Send();
            if (!m_finished && m_state == State::Receiving && m_socket.isEncrypted())
                Receive();
        } while (m_again && !m_finished);
        if (!m_finished)
            WatchTime();
    } catch (const std::exception& error) {
        qWarning("The connection from %s ends: %s", qPrintable(m_address), error.what());
        Leave();
    }
    m_advancing = false;
}

void PeerConnection::Receive() {
    for (;;) {
        const auto result = m_scanner.Scan(m_received);
        if (result == wire::FrameScanner::Result::Broken) {
            Leave();
            return;
        }
        const Share share = MemoryShares::ShareFor(m_scanner.Length(), m_scanner.DecodedBytes());
        if (share == Share::Reply || (share != Share::Own && !IsSignedOn())) {
            Leave();
            return;
        }
        if (share > m_share) {
            m_share = share;
            if (!m_shares.Ask(m_number, m_account, share)) {
                m_state = State::WaitingForMemory;
                return;
            }
            m_patience.start(m_limits.lentMilliseconds);
        }
        if (result == wire::FrameScanner::Result::Complete)
            break;
        const QByteArray piece = m_socket.read(PieceBytes);
        if (piece.isEmpty())
            return;
        m_received += piece;
    }
    const qint64 length = m_scanner.Length();
    const QByteArray request = m_scanner.Name(m_received).toByteArray();
    QByteArray message = m_received.left(length);
    m_received = m_received.mid(length); // not what a long message has taken
    m_scanner.Reset();
    m_state = State::Handled;
    emit Received(std::move(message), request);
}

void PeerConnection::Send() {
    while (m_sent < m_reply.size() &&
           m_socket.bytesToWrite() + m_socket.encryptedBytesToWrite() < PieceBytes) {
        const qint64 written =
            m_socket.write(m_reply.constData() + m_sent, qMin<qint64>(PieceBytes, m_reply.size() - m_sent));
        if (written < 0) {
            Leave();
            return;
        }
        m_sent += written;
        m_socket.flush();
        if (m_finished)
            return;
    }
    // One request is answered before the next is looked at: a reply that the peer does not take holds up its
    // own requests only.
    if (!IsSent())
        return;
    m_reply = QByteArray();
    m_sent = 0;
    m_state = State::Receiving;
    m_patience.stop();
}

bool PeerConnection::IsSent() const {
    return m_sent == m_reply.size() && m_socket.bytesToWrite() == 0 && m_socket.encryptedBytesToWrite() == 0;
}

void PeerConnection::WatchTime() {
    if (!m_socket.isEncrypted())
        return;
    const bool waitsForPeer = m_state == State::Receiving ? !m_received.isEmpty() : m_state != State::Handled;
    if (!waitsForPeer)
        m_patience.stop();
    else if (!m_patience.isActive())
        m_patience.start(m_limits.messageMilliseconds);
}

void PeerConnection::Leave() {
    if (m_finished)
        return;
    m_finished = true;
    m_patience.stop();
    m_signOnTime.stop();
    m_socket.disconnect(this);
    m_socket.abort();
    emit Finished();
}

} // namespace sysadmin::server
