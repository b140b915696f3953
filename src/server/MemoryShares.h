#pragma once

#include <QString>

#include <functional>
#include <map>
#include <vector>

namespace sysadmin::server {

/// The memory in which messages are received and handled, over all connections. Every connection has a small
/// share of its own; more is lent: a few larger shares, of which an operator gets some at a time, and one for
/// a huge message. Who finds all of them lent waits, operators in turn. Shares are asked for in rising order
/// and given back together, so nobody waits in a circle. Belongs to one thread.
class MemoryShares {
public:
    enum class Share {
        Own,   ///< what every connection may use without asking
        Large, ///< up to `LargeBytes`
        Huge,  ///< up to `HugeBytes`
        Reply, ///< for a request that is known to give a long reply
    };

    static constexpr qint64 OwnReceivedBytes = 64 * 1024; ///< of that the received part
    static constexpr qint64 OwnBytes = 256 * 1024;
    static constexpr qint64 LargeBytes = 2 * 1024 * 1024;
    static constexpr qint64 HugeBytes = 192 * 1024 * 1024;

    /// The smallest share that holds a message of so many bytes as received and as decoded; Reply when it is
    /// too much for any.
    static Share ShareFor(qint64 received, qint64 decoded);

    /// Lends a connection a share. False when it must wait: `granted` is called when it gets it.
    bool Ask(quint64 connection, const QString& account, Share share);
    /// Takes back all that a connection has, and its place in the queue.
    void Release(quint64 connection);
    /// Is told which connection got what it waited for.
    void OnGranted(std::function<void(quint64 connection)> granted) { m_granted = std::move(granted); }

private:
    struct Loan {
        quint64 connection = 0;
        QString account;
        Share share = Share::Own;
    };

    bool IsFree(const Loan& wanted) const;
    /// Lends to one that waits; its connection, or 0 when nobody can have what he waits for.
    quint64 LendNext();

    std::vector<Loan> m_lent;
    std::vector<Loan> m_waiting; // in the order in which they came
    std::map<QString, quint64> m_turns;
    quint64 m_turn = 0;
    std::function<void(quint64)> m_granted;
};

} // namespace sysadmin::server
