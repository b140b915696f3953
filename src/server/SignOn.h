#pragma once

#include "server/Context.h"

namespace sysadmin::server {

/// What a sign-on answers, and the session that it started.
struct SignOnResult {
    Answer answer;
    qint64 sessionRow = 0;
    QString operatorId = {}; ///< as the library writes it
};

/// Signs an operator on. A wrong id, a wrong password and an operator who may not sign on get the same answer
/// after the same work. While the address has to wait after wrong tries nothing is looked at, and the answer
/// says in `WAIT` for how many seconds. `nonce` is the one of the connection's greeting. Throws `StoreError`.
SignOnResult SignOn(Database& database, const Library& library, const wire::Fields& request,
                    const QString& peer, const QString& nonce);

/// Gives the signed-on operator another password and ends the operator's other sessions. Throws `StoreError`.
qint16 ChangeOwnPassword(Database& database, const Library& library, const Requester& requester,
                         const wire::Fields& request);

/// Whether an operator is locked at this time, by the operator's row and the rules in force.
struct SecurityRules;
bool IsLocked(const Row& operatorRow, const SecurityRules& rules, const QDateTime& now);

/// Whether the password has expired, by an administrator's word or by its age.
bool IsExpired(const Row& operatorRow, const SecurityRules& rules, const QDateTime& now);

/// Whether the operator is let in with the right password: not locked until somebody unlocks, not disabled.
bool CanSignOn(const Row& operatorRow, const SecurityRules& rules, const QDateTime& now);

/// Counts a wrong password; locks the operator when there were too many. Sessions go on: a lock refuses new
/// sign-ons only, or else whoever can reach the server could throw people out of their work.
void CountWrongPassword(Database& database, qint64 operatorRow, const SecurityRules& rules,
                        const QDateTime& now);

} // namespace sysadmin::server
