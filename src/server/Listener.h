#pragma once

#include "server/Certificate.h"
#include "wire/Endpoint.h"

#include <QSslConfiguration>
#include <QTcpServer>

#include <map>

class QThread;

namespace sysadmin::server {

class PeerConnection;

/// What a peer may take of the server.
struct PeerLimits {
    int connections = 200;
    int handshakeMilliseconds = 10'000;
    /// How long a message may take to arrive once it has begun, and a reply to be taken.
    int messageMilliseconds = 60'000;
    /// How long a peer may stay without signing on.
    int signOnMilliseconds = 10 * 60'000;
};

/// Accepts TLS connections and serves each in a thread of its own. A peer that breaks the protocol is cut
/// off; when there are too many, those that wait longest without having signed on make room.
class Listener : public QTcpServer {
    Q_OBJECT

public:
    Listener(const ServerIdentity& identity, wire::EndpointFactory factory, const PeerLimits& limits = {},
             QObject* parent = nullptr);
    /// Ends all connections and waits for their threads.
    ~Listener() override;

    int CountConnections() const { return int(m_peers.size()); }

protected:
    void incomingConnection(qintptr handle) override;

private:
    struct Peer {
        QThread* thread = nullptr;
        PeerConnection* connection = nullptr;
        bool signedOn = false;
        bool leaving = false;
    };

    void Remove(quint64 number);
    void MakeRoom();
    /// Waits for the peer's thread; what it left may be deleted here then.
    static void Delete(const Peer& peer);

    QSslConfiguration m_configuration;
    wire::EndpointFactory m_factory;
    PeerLimits m_limits;
    std::map<quint64, Peer> m_peers; // by number, so the oldest first
    quint64 m_lastNumber = 0;
};

} // namespace sysadmin::server
