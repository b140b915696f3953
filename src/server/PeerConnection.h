#pragma once

#include "server/Listener.h"
#include "wire/Codec.h"

#include <QSslSocket>
#include <QTimer>

namespace sysadmin::server {

/// One client's socket: takes messages one at a time, hands them to the endpoint, and sends its replies.
/// Lives in a thread of its own, in which the endpoint works too.
class PeerConnection : public QObject {
    Q_OBJECT

public:
    PeerConnection(qintptr handle, const QSslConfiguration& configuration, wire::EndpointFactory factory,
                   const PeerLimits& limits);
    ~PeerConnection() override;

    /// Begins with the handshake. Runs in the connection's thread, as all that follows.
    void Begin();
    /// Cuts the peer off.
    void Leave();

signals:
    void SignedOn();
    void Finished();

private:
    void TakeMessages();
    void ApplyLimits();

    qintptr m_handle;
    QSslConfiguration m_configuration;
    wire::EndpointFactory m_factory;
    PeerLimits m_limits;
    QSslSocket* m_socket = nullptr;
    std::unique_ptr<wire::Endpoint> m_endpoint;
    wire::FrameScanner m_scanner{wire::Limits::BeforeSignOn()};
    QByteArray m_received;
    QTimer* m_patience = nullptr; ///< for the handshake, then for what has begun to arrive or to be sent
    QTimer* m_signOnTime = nullptr;
    bool m_signedOn = false;
    bool m_finished = false;
};

} // namespace sysadmin::server
