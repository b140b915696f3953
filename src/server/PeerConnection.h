#pragma once

#include "server/Listener.h"
#include "server/MemoryShares.h"
#include "server/TlsSocket.h"
#include "wire/Codec.h"

#include <QElapsedTimer>
#include <QTimer>

namespace sysadmin::server {

class SocketWatch;

/// One client's socket: takes messages one at a time, has them handled, and sends the replies. Lives in the
/// listener's thread and belongs to the listener; a message that is being handled knows nothing of it.
class PeerConnection : public QObject {
    Q_OBJECT

public:
    PeerConnection(quint64 number, const PeerLimits& limits, MemoryShares& shares, SocketWatch& watch,
                   QObject* parent);
    ~PeerConnection() override;

    /// Begins with the handshake.
    void Begin(qintptr handle, const TlsContext& context);
    /// Whom the server has signed on here, and how long the next message may be.
    void SetAccount(const QString& account, qint64 messageLimit);
    /// The memory that a message waited for is there.
    void Granted();
    /// Sends the reply to the message that was handed out.
    void Reply(const QByteArray& reply);
    /// Cuts the peer off. `Finished` tells the listener.
    void Leave();

    quint64 Number() const { return m_number; }
    QString Address() const { return m_address; }
    QString Account() const { return m_account; }
    bool IsSignedOn() const { return !m_account.isEmpty(); }
    /// Whether something of it is in work.
    bool IsBusy() const { return m_state != State::Receiving || !m_received.isEmpty(); }
    /// Milliseconds since anything was last finished here.
    qint64 IdleTime() const { return m_idle.elapsed(); }
    /// Bytes of a reply that the peer has not taken.
    qint64 Unsent() const { return m_reply.size() - m_sent; }

signals:
    /// A whole message: to be handled, and answered by `Reply` or `Leave`.
    void Received(QByteArray message, QByteArray request);
    void Finished();

private:
    enum class State { Receiving, WaitingForMemory, Handled, Sending };

    /// Does what can be done now. Whatever goes wrong costs this connection alone.
    void Advance();
    void Shake();
    void Receive();
    void Send();
    /// Whether bytes moved; waits for the peer, or ends the connection, when not.
    bool HasMoved(TlsSocket::Result result, bool toRead);
    void WatchTime();

    quint64 m_number;
    PeerLimits m_limits;
    MemoryShares& m_shares;
    SocketWatch& m_watch;
    QString m_address;
    QString m_account;
    std::unique_ptr<TlsSocket> m_socket; ///< until the end
    bool m_mayRead = true;               ///< the socket was not found empty since there was news of it
    wire::FrameScanner m_scanner{wire::Limits::BeforeSignOn()};
    MemoryShares::Share m_share = MemoryShares::Share::Own; ///< asked for or lent
    State m_state = State::Receiving;
    QByteArray m_received;
    QByteArray m_reply;
    qint64 m_sent = 0; ///< bytes of the reply handed to the system
    QTimer m_patience; ///< for the handshake, then for what has begun to arrive or to be sent
    QTimer m_signOnTime;
    QElapsedTimer m_idle;
    bool m_finished = false;
};

} // namespace sysadmin::server
