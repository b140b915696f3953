#include "server/Listener.h"

#include "server/PeerConnection.h"
#include "wire/Tls.h"

#include <QThread>

namespace sysadmin::server {

Listener::Listener(const ServerIdentity& identity, wire::EndpointFactory factory, const PeerLimits& limits,
                   QObject* parent)
    : QTcpServer(parent)
    , m_factory(std::move(factory))
    , m_limits(limits) {
    m_configuration = wire::TlsConfiguration();
    m_configuration.setPeerVerifyMode(
        QSslSocket::VerifyNone); // operators prove themselves by their passwords
    m_configuration.setLocalCertificateChain(identity.chain);
    m_configuration.setPrivateKey(identity.key);
}

Listener::~Listener() {
    close();
    for (auto& [number, peer] : m_peers)
        QMetaObject::invokeMethod(peer.connection, &PeerConnection::Leave, Qt::QueuedConnection);
    for (auto& [number, peer] : m_peers)
        Delete(peer);
}

void Listener::incomingConnection(qintptr handle) {
    if (CountConnections() >= m_limits.connections)
        MakeRoom();
    const quint64 number = ++m_lastNumber;
    auto* thread = new QThread;
    auto* connection = new PeerConnection(handle, m_configuration, m_factory, m_limits);
    connection->moveToThread(thread);
    m_peers.insert({number, Peer{.thread = thread, .connection = connection}});
    connect(thread, &QThread::started, connection, &PeerConnection::Begin);
    connect(connection, &PeerConnection::SignedOn, this, [this, number] {
        if (const auto peer = m_peers.find(number); peer != m_peers.end())
            peer->second.signedOn = true;
    });
    connect(connection, &PeerConnection::Finished, thread, &QThread::quit, Qt::DirectConnection);
    connect(thread, &QThread::finished, this, [this, number] { Remove(number); });
    thread->start();
}

void Listener::Remove(quint64 number) {
    const auto peer = m_peers.find(number);
    if (peer == m_peers.end())
        return;
    Delete(peer->second);
    m_peers.erase(peer);
}

void Listener::Delete(const Peer& peer) {
    peer.thread->wait();
    delete peer.connection;
    delete peer.thread;
}

void Listener::MakeRoom() {
    for (const bool alsoSignedOn : {false, true}) {
        for (auto& [number, peer] : m_peers) {
            if (peer.leaving || (peer.signedOn && !alsoSignedOn))
                continue;
            peer.leaving = true;
            QMetaObject::invokeMethod(peer.connection, &PeerConnection::Leave, Qt::QueuedConnection);
            return;
        }
    }
}

} // namespace sysadmin::server
