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

/// Whether some operator who holds the right can sign on to use it, apart from `withoutOperator`. Locks that
/// run out by themselves do not count against anybody.
bool SecurityHolderCanSignOn(Database& database, const SecurityRules& rules, const QDateTime& now,
                             qint64 withoutOperator = 0);

} // namespace sysadmin::server
