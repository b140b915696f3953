#include "server/SignOnThrottle.h"

#include "server/store/Table.h"

#include <QHostAddress>

#include <algorithm>

namespace sysadmin::server {

namespace {

/// The same text for all addresses that one peer can take up at will.
QString AddressKey(const QString& peer) {
    if (IsLocalPeer(peer))
        return "local";
    QHostAddress address(peer);
    if (address.protocol() != QAbstractSocket::IPv6Protocol)
        return peer;
    address.setScopeId({});
    constexpr int NetworkBytes = 8;
    Q_IPV6ADDR bytes = address.toIPv6Address();
    std::fill(bytes.c + NetworkBytes, bytes.c + sizeof bytes.c, quint8(0));
    return QHostAddress(bytes).toString();
}

QString OperatorKey(const QString& operatorId) {
    constexpr int LongestId = 64;
    return Fold(operatorId.left(LongestId));
}

} // namespace

bool IsLocalPeer(const QString& peer) {
    return peer == "local" || QHostAddress(peer).isLoopback();
}

const SignOnThrottle::Tries* SignOnThrottle::Remembered(const Table& table, const QString& key,
                                                        const QDateTime& now) {
    const auto found = table.constFind(key);
    return found != table.constEnd() && found->last.secsTo(now) < RememberedFor ? &*found : nullptr;
}

SignOnThrottle::Tries& SignOnThrottle::Count(Table& table, const QString& key, const QDateTime& now) {
    constexpr qsizetype MostKept = 10'000;
    if (!Remembered(table, key, now)) {
        table.remove(key);
        if (table.size() >= MostKept)
            table.removeIf([&](const auto& entry) { return entry->last.secsTo(now) >= RememberedFor; });
        if (table.size() >= MostKept)
            table.erase(std::min_element(table.cbegin(), table.cend(),
                                         [](const Tries& a, const Tries& b) { return a.last < b.last; }));
    }
    Tries& tries = table[key];
    ++tries.total;
    tries.last = now;
    return tries;
}

qint64 SignOnThrottle::WaitFor(const QString& peer, const QString& operatorId, const QDateTime& now) const {
    const QMutexLocker locker(&m_mutex);
    const Tries* address = Remembered(m_addresses, AddressKey(peer), now);
    if (!address || address->total < FreeTries)
        return 0;
    const Tries* guessed = Remembered(m_operators, OperatorKey(operatorId), now);
    const int tries = std::max(address->total, guessed ? guessed->total : 0);
    constexpr int MostDoublings = 10;
    const qint64 wait = std::min(qint64(1) << std::min(tries - FreeTries, MostDoublings),
                                 IsLocalPeer(peer) ? LongestLocalWait : LongestWait);
    const qint64 waited = address->last.msecsTo(now);
    return std::clamp((wait * 1000 - waited + 999) / 1000, qint64(0), wait);
}

void SignOnThrottle::Failed(const QString& peer, const QString& operatorId, const QDateTime& now) {
    const QMutexLocker locker(&m_mutex);
    ++Count(m_addresses, AddressKey(peer), now).byOperator[OperatorKey(operatorId)];
    Count(m_operators, OperatorKey(operatorId), now);
}

void SignOnThrottle::Succeeded(const QString& peer, const QString& operatorId) {
    const QMutexLocker locker(&m_mutex);
    const auto address = m_addresses.find(AddressKey(peer));
    if (address == m_addresses.end())
        return;
    const int forgiven = address->byOperator.take(OperatorKey(operatorId));
    const auto take = [forgiven](Table& table, Table::iterator tries) {
        if (tries != table.end() && (tries->total -= forgiven) <= 0)
            table.erase(tries);
    };
    take(m_addresses, address);
    take(m_operators, m_operators.find(OperatorKey(operatorId)));
}

} // namespace sysadmin::server
