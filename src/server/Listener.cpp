#include "server/Listener.h"

#include "server/PeerConnection.h"
#include "server/SystemLimits.h"

namespace sysadmin::server {

namespace {

/// A reply of so many bytes takes a while and much memory to build.
constexpr qint64 LongReplyBytes = 1024 * 1024;

} // namespace

Listener::Listener(const ServerIdentity& identity, wire::EndpointFactory factory, const PeerLimits& limits,
                   QObject* parent)
    : QTcpServer(parent)
    , m_context(identity)
    , m_factory(std::move(factory))
    , m_limits(limits)
    , m_workers(std::make_unique<WorkerPool>(limits.workers))
    , m_writers(std::make_unique<WorkerPool>(limits.writers)) {
    m_inbox->listener = this;
    m_shares.OnGranted([this](quint64 number) {
        QMetaObject::invokeMethod(
            this, [this, number] { Guard(number, [&] { Granted(number); }); }, Qt::QueuedConnection);
    });
}

Listener::~Listener() {
    close();
    m_workers.reset();
    m_writers.reset();
    {
        const std::scoped_lock lock(m_inbox->mutex);
        m_inbox->listener = nullptr; // what still waits for the disk is told to whoever resumes the session
    }
    for (auto& [number, peer] : m_peers)
        delete peer.connection;
}

void Listener::incomingConnection(qintptr handle) {
    MakeRoomForStranger();
    const quint64 number = ++m_lastNumber;
    auto* connection = new PeerConnection(number, m_limits, m_shares, m_watch, this);
    m_peers[number].connection = connection;
    connect(connection, &PeerConnection::Received, this,
            [this, number](const QByteArray& message, const QByteArray& request) {
                Handle(number, message, request);
            });
    connect(connection, &PeerConnection::Finished, this, [this, number] { Remove(number); });
    Guard(number, [&] { connection->Begin(handle, m_context); });
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
    pool.Submit(account, [inbox = m_inbox, number, endpoint = peer.endpoint, alive = peer.alive,
                          message = QByteArray(message), request]() mutable {
        const auto done = [inbox, number, request,
                           isLong = message.size() > MemoryShares::LargeBytes](const Outcome& outcome) {
            if (isLong || (outcome.reply && outcome.reply->size() > LongReplyBytes))
                ReturnFreedMemory();
            inbox->Put({number, request, outcome});
        };
        if (*alive)
            Run(endpoint, std::exchange(message, {}), done);
        else
            done({});
    });
    m_handled.insert(number); // what comes of it arrives in this thread, later
}

void Listener::Run(const std::shared_ptr<wire::Endpoint>& endpoint, QByteArray message,
                   const std::function<void(Outcome)>& done) {
    try {
        endpoint->HandleThen(message, [endpoint, done](std::optional<QByteArray> reply) {
            done({std::move(reply), endpoint->Account(), endpoint->MessageLimit()});
        });
    } catch (const std::exception& error) {
        qWarning("A connection ends: %s", error.what());
        done({});
    }
}

void Listener::Inbox::Put(Letter letter) {
    const std::scoped_lock lock(mutex);
    if (!listener)
        return;
    letters.push_back(std::move(letter));
    if (letters.size() == 1) // once for all that arrive until then
        QMetaObject::invokeMethod(
            listener, [to = listener] { to->TakeLetters(); }, Qt::QueuedConnection);
}

void Listener::TakeLetters() {
    std::vector<Inbox::Letter> letters;
    {
        const std::scoped_lock lock(m_inbox->mutex);
        letters = std::exchange(m_inbox->letters, {});
    }
    for (const Inbox::Letter& letter : letters)
        Guard(letter.number, [&] { Done(letter.number, letter.request, letter.outcome); });
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
    m_signedOn += int(!outcome.account.isEmpty()) - int(connection.IsSignedOn());
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
    m_signedOn -= int(peer->second.connection->IsSignedOn());
    peer->second.connection->deleteLater();
    m_peers.erase(peer);
    m_waiting.erase(number);
    if (!m_handled.contains(number)) // else its memory is still in use
        m_shares.Release(number);
}

void Listener::MakeRoomForStranger() {
    if (CountConnections() - m_signedOn < m_limits.strangers)
        return;
    QHash<QString, int> counts;
    for (const auto& [number, peer] : m_peers)
        if (!peer.connection->IsSignedOn())
            ++counts[peer.connection->Address()];
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
    if (m_signedOn < m_limits.sessions)
        return;
    PeerConnection* idlest = nullptr;
    for (const auto& [number, peer] : m_peers)
        if (peer.connection->IsSignedOn() && !peer.connection->IsBusy() &&
            (!idlest || peer.connection->IdleTime() > idlest->IdleTime()))
            idlest = peer.connection;
    if (idlest)
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

#include "moc_Listener.cpp"
