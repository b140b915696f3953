#include "server/PeerConnection.h"

#include "server/SocketNews.h"
#include "server/SocketWatch.h"

#include <QHostAddress>

#include <array>

namespace sysadmin::server {

namespace {

using Share = MemoryShares::Share;

/// How much is read at a time: what TLS sends in one piece.
constexpr qint64 PieceBytes = 16 * 1024;
/// How much is read or written before the others have their turn.
constexpr qint64 TurnBytes = 16 * PieceBytes;

QString AddressText(const QHostAddress& address) {
    // An IPv4 peer of a socket for both protocols comes in its IPv6 form.
    bool isIPv4 = false;
    const quint32 number = address.toIPv4Address(&isIPv4);
    return isIPv4 ? QHostAddress(number).toString() : address.toString();
}

} // namespace

PeerConnection::PeerConnection(quint64 number, const PeerLimits& limits, MemoryShares& shares,
                               SocketWatch& watch, QObject* parent)
    : QObject(parent)
    , m_number(number)
    , m_limits(limits)
    , m_shares(shares)
    , m_watch(watch) {
    m_patience.setSingleShot(true);
    m_signOnTime.setSingleShot(true);
    m_idle.start();
    connect(&m_patience, &QTimer::timeout, this, &PeerConnection::Leave);
    connect(&m_signOnTime, &QTimer::timeout, this, &PeerConnection::Leave);
}

PeerConnection::~PeerConnection() {
    if (m_socket)
        m_watch.Remove(m_socket->Descriptor());
}

void PeerConnection::Begin(qintptr handle, const TlsContext& context) {
    m_socket = std::make_unique<TlsSocket>(handle, context);
    m_address = AddressText(PeerAddressOf(handle));
    m_patience.start(m_limits.handshakeMilliseconds);
    m_signOnTime.start(m_limits.signOnMilliseconds);
    m_watch.Add(handle, [this](bool isGone) {
        m_mayRead = true;
        Advance();
        if (isGone)
            Leave();
    });
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
    try {
        if (!m_finished && !m_socket->IsEncrypted())
            Shake();
        if (!m_finished && m_state == State::Sending)
            Send();
        if (!m_finished && m_state == State::Receiving && m_socket->IsEncrypted())
            Receive();
        if (!m_finished)
            WatchTime();
    } catch (const std::exception& error) {
        qWarning("The connection from %s ends: %s", qPrintable(m_address), error.what());
        Leave();
    }
}

bool PeerConnection::HasMoved(TlsSocket::Result result, bool toRead) {
    if (result == TlsSocket::Result::Waiting) {
        m_mayRead = m_mayRead && !toRead;
        m_watch.Await(m_socket->Descriptor(), toRead, !toRead);
    } else if (result == TlsSocket::Result::Gone) {
        Leave();
    }
    return result == TlsSocket::Result::Done;
}

void PeerConnection::Shake() {
    if (HasMoved(m_socket->Shake(), true)) {
        m_patience.stop();
        m_mayRead = true;
    }
}

void PeerConnection::Receive() {
    std::array<char, PieceBytes> piece;
    for (qint64 taken = 0;;) {
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
        if (taken >= TurnBytes)
            m_watch.Again(m_socket->Descriptor());
        qint64 count = 0;
        if (taken >= TurnBytes || !m_mayRead || !HasMoved(m_socket->Read(piece, &count), true))
            return;
        m_received.append(piece.data(), count);
        taken += count;
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
    for (qint64 given = 0; m_sent < m_reply.size();) {
        if (given >= TurnBytes) {
            m_watch.Again(m_socket->Descriptor());
            return;
        }
        qint64 count = 0;
        if (!HasMoved(m_socket->Write(QByteArrayView(m_reply).sliced(m_sent), &count), false))
            return;
        m_patience.stop(); // the peer takes what it gets
        m_sent += count;
        given += count;
    }
    // One request is answered before the next is looked at: a reply that the peer does not take holds up its
    // own requests only.
    m_reply = QByteArray();
    m_sent = 0;
    m_state = State::Receiving;
    m_patience.stop();
}

void PeerConnection::WatchTime() {
    if (!m_socket->IsEncrypted())
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
    if (m_socket)
        m_watch.Remove(m_socket->Descriptor());
    m_socket.reset();
    emit Finished();
}

} // namespace sysadmin::server

#include "moc_PeerConnection.cpp"
