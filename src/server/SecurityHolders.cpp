#include "server/SecurityHolders.h"

#include "server/SignOn.h"
#include "server/store/Database.h"

namespace sysadmin::server {

bool SecurityHolderRemains(Database& database, std::optional<qint64> withoutProfile,
                           std::optional<qint64> withoutOperator) {
    return database
        .FirstRow("SELECT 1 FROM master_profile_operators m JOIN master_profiles p ON p.id=m.profile_id "
                  "WHERE p.security_edit='Y' AND p.id<>? AND m.operator_row<>?",
                  {withoutProfile.value_or(0), withoutOperator.value_or(0)})
        .has_value();
}

bool SecurityHolderCanSignOn(Database& database, const SecurityRules& rules, const QDateTime& now,
                             qint64 withoutOperator, HolderMay when) {
    static const QStringList columns{"password_hash", "password_changed_at", "reset_at",
                                     "never_expires", "restrict_change",     "expired",
                                     "locked_at"};
    bool anybody = false;
    database.Each("SELECT " + columns.join(", ") +
                      " FROM operators WHERE id<>? AND id IN (SELECT m.operator_row FROM "
                      "master_profile_operators m JOIN master_profiles p ON p.id=m.profile_id WHERE "
                      "p.security_edit='Y')",
                  {withoutOperator}, [&](const ResultRow& values) {
                      Row row;
                      for (int i = 0; i < int(columns.size()); ++i)
                          row.insert(columns[i], values.value(i));
                      anybody = anybody || (CanSignOn(row, rules, now) &&
                                            (when == HolderMay::InTime || !IsLocked(row, rules, now)));
                  });
    return anybody;
}

} // namespace sysadmin::server
