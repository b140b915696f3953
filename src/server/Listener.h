#pragma once

#include "server/Certificate.h"
#include "server/MemoryShares.h"
#include "server/SocketWatch.h"
#include "server/TlsSocket.h"
#include "server/WorkerPool.h"
#include "wire/Endpoint.h"

#include <QHash>
#include <QTcpServer>

#include <atomic>
#include <map>
#include <mutex>
#include <set>

namespace sysadmin::server {

class PeerConnection;

/// What peers may take of the server.
struct PeerLimits {
    /// Connections with somebody signed on; past it the idlest goes, unless it works. Its client takes the
    /// session up again with its next request.
    int sessions = 10'000;
    /// Connections with nobody signed on; past it one goes of the address that has most of them.
    int strangers = 200;
    int handshakeMilliseconds = 10'000;
    /// How long a message may take to arrive once it has begun, and a reply to be taken.
    int messageMilliseconds = 60'000;
    /// How long a message may take once it has memory that others may wait for.
    int lentMilliseconds = 20'000;
    /// How long a peer may stay without signing on.
    int signOnMilliseconds = 10 * 60'000;
    /// Replies that wait for their peers to take them; past it the one that waits longest goes.
    qint64 unsentBytes = 64 * 1024 * 1024;
    /// Threads that handle requests that only read.
    int workers = 20;
    /// Threads that handle the others: while these wait for each other, who reads goes on.
    int writers = 12;
};

/// Accepts TLS connections and serves all of them in its own thread; messages are handled by a few workers.
/// A peer that breaks the protocol is cut off.
class Listener : public QTcpServer {
    Q_OBJECT

public:
    /// Throws `std::runtime_error` when the identity cannot be used.
    Listener(const ServerIdentity& identity, wire::EndpointFactory factory, const PeerLimits& limits = {},
             QObject* parent = nullptr);
    /// Waits for the requests that are being handled, and ends all connections.
    ~Listener() override;

    int CountConnections() const { return int(m_peers.size()); }

protected:
    void incomingConnection(qintptr handle) override;

private:
    struct Peer {
        PeerConnection* connection = nullptr;
        std::shared_ptr<wire::Endpoint> endpoint;
        /// False once the connection has gone: what still waits to be handled is dropped.
        std::shared_ptr<std::atomic<bool>> alive = std::make_shared<std::atomic<bool>>(true);
    };
    /// What came of a message.
    struct Outcome {
        std::optional<QByteArray> reply;
        QString account;
        qint64 messageLimit = 0;
    };

    /// Runs what may cost the connection, and it alone, when it throws.
    void Guard(quint64 number, const std::function<void()>& work);
    void Handle(quint64 number, const QByteArray& message, const QByteArray& request);
    /// Where what comes of messages arrives, from whatever thread, as long as the listener is there.
    struct Inbox {
        struct Letter {
            quint64 number = 0; ///< of the peer
            QByteArray request;
            Outcome outcome;
        };
        std::mutex mutex;
        Listener* listener = nullptr;
        std::vector<Letter> letters; ///< the listener has been woken for them
        void Put(Letter letter);
    };
    void TakeLetters();
    static void Run(const std::shared_ptr<wire::Endpoint>& endpoint, QByteArray message,
                    const std::function<void(Outcome)>& done);
    void Done(quint64 number, const QByteArray& request, const Outcome& outcome);
    void Granted(quint64 number);
    void Remove(quint64 number);
    void MakeRoomForStranger();
    void MakeRoomForSession();
    void LimitUnsent(quint64 newest);

    TlsContext m_context;
    wire::EndpointFactory m_factory;
    PeerLimits m_limits;
    MemoryShares m_shares;
    SocketWatch m_watch;
    std::map<quint64, Peer> m_peers;
    quint64 m_lastNumber = 0;
    int m_signedOn = 0; ///< how many of them are
    std::shared_ptr<Inbox> m_inbox = std::make_shared<Inbox>();
    /// Messages that wait until a long reply has memory.
    std::map<quint64, std::pair<QByteArray, QByteArray>> m_waiting;
    std::set<quint64> m_handled; ///< being handled; their connections may be gone
    /// Requests that gave a long reply: they are carried out a few at a time.
    std::set<QByteArray> m_longReplies;
    std::unique_ptr<WorkerPool> m_workers; // goes before all that its work uses
    std::unique_ptr<WorkerPool> m_writers; // likewise
};

} // namespace sysadmin::server
