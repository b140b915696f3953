#include "server/Listener.h"

#include "server/PeerConnection.h"
#include "server/SystemLimits.h"
#include "wire/Tls.h"

namespace sysadmin::server {

namespace {

/// A reply of so many bytes takes a while and much memory to build.
constexpr qint64 LongReplyBytes = 1024 * 1024;

} // namespace

Listener::Listener(const ServerIdentity& identity, wire::EndpointFactory factory, const PeerLimits& limits,
                   QObject* parent)
    : QTcpServer(parent)
    , m_factory(std::move(factory))
    , m_limits(limits)
    , m_workers(std::make_unique<WorkerPool>(limits.workers))
    , m_writers(std::make_unique<WorkerPool>(limits.writers)) {
    m_configuration = wire::TlsConfiguration();
    m_configuration.setPeerVerifyMode(
        QSslSocket::VerifyNone); // operators prove themselves by their passwords
    m_configuration.setLocalCertificateChain(identity.chain);
    m_configuration.setPrivateKey(identity.key);
    m_shares.OnGranted([this](quint64 number) {
        QMetaObject::invokeMethod(
            this, [this, number] { Guard(number, [&] { Granted(number); }); }, Qt::QueuedConnection);
    });
}

Listener::~Listener() {
    close();
    m_workers.reset();
    m_writers.reset();
    for (auto& [number, peer] : m_peers)
        delete peer.connection;
}

void Listener::incomingConnection(qintptr handle) {
    MakeRoomForStranger();
    const quint64 number = ++m_lastNumber;
    auto* connection = new PeerConnection(number, m_limits, m_shares, this);
    m_peers[number].connection = connection;
    connect(connection, &PeerConnection::Received, this,
            [this, number](const QByteArray& message, const QByteArray& request) {
                Handle(number, message, request);
            });
    connect(connection, &PeerConnection::Finished, this, [this, number] { Remove(number); });
    connection->Begin(handle, m_configuration);
}

void Listener::Guard(quint64 number, const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        qWarning("A connection ends: %s", error.what());
        if (const auto peer = m_peers.find(number); peer != m_peers.end())
            peer->second.connection->Leave();
    }
}

void Listener::Handle(quint64 number, const QByteArray& message, const QByteArray& request) {
    Peer& peer = m_peers.at(number);
    if (m_longReplies.contains(request) && !m_waiting.contains(number)) {
        m_waiting[number] = {message, request};
        if (m_shares.Ask(number, peer.connection->Account(), MemoryShares::Share::Reply))
            Granted(number);
        return;
    }
    if (!peer.endpoint)
        peer.endpoint = m_factory(peer.connection->Address());
    const bool stranger = !peer.connection->IsSignedOn();
    const WorkerPool::Account account{stranger,
                                      stranger ? peer.connection->Address() : peer.connection->Account()};
    WorkerPool& pool = peer.endpoint->Writes(request) ? *m_writers : *m_workers;
    pool.Submit(account, [this, number, endpoint = peer.endpoint, alive = peer.alive,
                          message = QByteArray(message), request]() mutable {
        const bool isLong = message.size() > MemoryShares::LargeBytes;
        auto outcome = std::make_shared<Outcome>();
        if (*alive)
            *outcome = Run(*endpoint, std::exchange(message, {}));
        if (isLong || (outcome->reply && outcome->reply->size() > LongReplyBytes))
            ReturnFreedMemory();
        QMetaObject::invokeMethod(
            this,
            [this, number, request, outcome] { Guard(number, [&] { Done(number, request, *outcome); }); },
            Qt::QueuedConnection);
    });
    m_handled.insert(number); // what comes of it arrives in this thread, later
}

Listener::Outcome Listener::Run(wire::Endpoint& endpoint, QByteArray message) {
    Outcome outcome;
    try {
        outcome.reply = endpoint.Handle(message);
        outcome.account = endpoint.Account();
        outcome.messageLimit = endpoint.MessageLimit();
    } catch (const std::exception& error) {
        qWarning("A connection ends: %s", error.what());
        outcome.reply.reset();
    }
    return outcome;
}

void Listener::Done(quint64 number, const QByteArray& request, const Outcome& outcome) {
    m_handled.erase(number);
    const auto peer = m_peers.find(number);
    if (peer == m_peers.end()) {
        m_shares.Release(number); // the connection has gone meanwhile
        return;
    }
    PeerConnection& connection = *peer->second.connection;
    if (!outcome.reply) {
        connection.Leave();
        return;
    }
    if (outcome.reply->size() > LongReplyBytes)
        m_longReplies.insert(request);
    const bool signsOn = !connection.IsSignedOn() && !outcome.account.isEmpty();
    if (signsOn)
        MakeRoomForSession();
    connection.SetAccount(outcome.account, outcome.messageLimit);
    connection.Reply(*outcome.reply);
    if (connection.Unsent() > 0)
        LimitUnsent(number);
}

void Listener::Granted(quint64 number) {
    if (const auto peer = m_peers.find(number); peer != m_peers.end()) {
        if (const auto waiting = m_waiting.find(number); waiting != m_waiting.end()) {
            const auto [message, request] = waiting->second;
            Handle(number, message, request);
            m_waiting.erase(number);
        } else {
            peer->second.connection->Granted();
        }
    }
}

void Listener::Remove(quint64 number) {
    const auto peer = m_peers.find(number);
    if (peer == m_peers.end())
        return;
    *peer->second.alive = false;
    peer->second.connection->deleteLater();
    m_peers.erase(peer);
    m_waiting.erase(number);
    if (!m_handled.contains(number)) // else its memory is still in use
        m_shares.Release(number);
}

void Listener::MakeRoomForStranger() {
    QHash<QString, int> counts;
    int strangers = 0;
    for (const auto& [number, peer] : m_peers)
        if (!peer.connection->IsSignedOn()) {
            ++strangers;
            ++counts[peer.connection->Address()];
        }
    if (strangers < m_limits.strangers)
        return;
    PeerConnection* idlest = nullptr;
    const auto rank = [&](const PeerConnection* connection) {
        return std::pair(counts.value(connection->Address()), connection->IdleTime());
    };
    for (const auto& [number, peer] : m_peers)
        if (!peer.connection->IsSignedOn() && (!idlest || rank(peer.connection) > rank(idlest)))
            idlest = peer.connection;
    if (idlest)
        idlest->Leave();
}

void Listener::MakeRoomForSession() {
    int sessions = 0;
    PeerConnection* idlest = nullptr;
    for (const auto& [number, peer] : m_peers) {
        if (!peer.connection->IsSignedOn())
            continue;
        ++sessions;
        if (!peer.connection->IsBusy() && (!idlest || peer.connection->IdleTime() > idlest->IdleTime()))
            idlest = peer.connection;
    }
    if (sessions >= m_limits.sessions && idlest)
        idlest->Leave();
}

void Listener::LimitUnsent(quint64 newest) {
    qint64 unsent = 0;
    for (const auto& [number, peer] : m_peers)
        unsent += peer.connection->Unsent();
    while (unsent > m_limits.unsentBytes) {
        PeerConnection* slowest = nullptr;
        for (const auto& [number, peer] : m_peers)
            if (number != newest && peer.connection->Unsent() > 0 &&
                (!slowest || peer.connection->IdleTime() > slowest->IdleTime()))
                slowest = peer.connection;
        if (!slowest)
            return;
        unsent -= slowest->Unsent();
        slowest->Leave();
    }
}

} // namespace sysadmin::server
