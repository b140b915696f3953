#pragma once

#include "server/Context.h"

#include <optional>

namespace sysadmin::server {

/// A session as it is stored.
struct StoredSession {
    qint64 row = 0;
    quint64 number = 0;     ///< of the last request whose reply is kept
    qint64 epoch = 0;       ///< grows with each connection that takes the session over
    qint64 startChange = 0; ///< number of the last change before it began
    bool mustChangePassword = false;
    QDateTime usedAt;
    ListCursor cursor;
    Requester requester; ///< the operator; its peer is the one that signed on
    Rights rights;       ///< of the operator
    bool isExpired = false;
    qint64 lastChange = 0; ///< number of the last change in the library that this was read after
};

/// The sessions of signed-on operators. They outlive connections and the server itself; of a token only a
/// hash is kept. Everything throws `StoreError`.
class Sessions {
public:
    static constexpr qint64 IdleSeconds = 12 * 3600;

    explicit Sessions(Database& database)
        : m_database(database) {}

    static Table Declare();

    /// Starts a session and answers its row. Its passwords are sealed under `nonce`, which it keeps for life:
    /// a request that is sent again over another connection is still the same one. When there are `most`
    /// sessions already, the idlest one of the operator who has the most of them ends: nobody signs on so
    /// often that others are signed off.
    qint64 Start(const QString& token, const QString& nonce, qint64 operatorRow, const QString& peer,
                 bool mustChange, const QDateTime& now, int most);
    /// Gives a session to a new connection: the one that had it before is refused from now on.
    std::optional<StoredSession> Resume(const QString& token, const QDateTime& now);
    /// The session of a row, unless it is over. Who the operator is and what he may do is taken from what was
    /// `known` of it if nothing in the library has changed since, by whatever program.
    std::optional<StoredSession> Load(qint64 row, const QDateTime& now,
                                      const std::optional<StoredSession>& known = {}) const;
    /// The kept reply.
    QByteArray ReplyOf(qint64 row) const;
    /// Keeps the reply of a request that changed something.
    void Keep(qint64 row, quint64 number, const QByteArray& reply, const ListCursor& cursor,
              const QDateTime& now);
    void Touch(qint64 row, const QDateTime& now);
    void PasswordChanged(qint64 row);
    void End(qint64 row);
    void EndAllOf(qint64 operatorRow);
    /// Ends all sessions of an operator but one.
    void EndOthersOf(qint64 operatorRow, qint64 row);

private:
    /// Reads who the session's operator is; false when there is none any more.
    bool LoadOperator(StoredSession& session) const;

    Database& m_database;
};

} // namespace sysadmin::server
