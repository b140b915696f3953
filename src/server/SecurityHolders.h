#pragma once

#include <QDateTime>

#include <optional>

namespace sysadmin::server {

class Database;
struct SecurityRules;

/// Whether some operator holds the right to change security settings through a master profile.
/// `withoutProfile` and `withoutOperator` are rows that are about to be removed: they do not count.
bool SecurityHolderRemains(Database& database, std::optional<qint64> withoutProfile = {},
                           std::optional<qint64> withoutOperator = {});

/// When a holder has to be able to sign on.
enum class HolderMay {
    InTime, ///< a lock that runs out by itself does not count
    Now,
};

/// Whether some operator who holds the right can sign on to use it, apart from `withoutOperator`.
bool SecurityHolderCanSignOn(Database& database, const SecurityRules& rules, const QDateTime& now,
                             qint64 withoutOperator = 0, HolderMay when = HolderMay::InTime);

} // namespace sysadmin::server
