#pragma once

#include <QDateTime>
#include <QHash>
#include <QMutex>

namespace sysadmin::server {

/// Whether the address is this machine's own.
bool IsLocalPeer(const QString& peer);

/// Slows down those who guess passwords. Wrong tries are counted by the address from which they come, and the
/// more there are, of the address or against the operator, the longer the address waits for its next one. An
/// address without wrong tries never waits, whoever is being guessed at elsewhere. May be used from several
/// threads.
class SignOnThrottle {
public:
    /// Wrong tries that cost nothing: people mistype.
    static constexpr int FreeTries = 3;
    static constexpr qint64 LongestWait = 15 * 60; ///< seconds
    /// At the server's own machine, so that guessing there keeps nobody out.
    static constexpr qint64 LongestLocalWait = 2;
    /// Seconds after the last wrong try in which an address is remembered.
    static constexpr qint64 RememberedFor = 3600;

    /// Seconds until a try is looked at; 0 for at once.
    qint64 WaitFor(const QString& peer, const QString& operatorId, const QDateTime& now) const;
    void Failed(const QString& peer, const QString& operatorId, const QDateTime& now);
    /// Forgets the wrong tries of the operator at this address, and only those: a guesser with an account of
    /// his own gains nothing by signing on in between.
    void Succeeded(const QString& peer, const QString& operatorId);

private:
    struct Tries {
        int total = 0;
        QDateTime last;
        QHash<QString, int> byOperator; ///< of an address
    };
    using Table = QHash<QString, Tries>;

    static const Tries* Remembered(const Table& table, const QString& key, const QDateTime& now);
    static Tries& Count(Table& table, const QString& key, const QDateTime& now);

    mutable QMutex m_mutex;
    Table m_addresses;
    Table m_operators;
};

} // namespace sysadmin::server
