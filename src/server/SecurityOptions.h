#pragma once

#include "wire/PasswordRules.h"

namespace sysadmin::server {

class Database;

/// The sign-on and password rules in force. Times are in seconds, 0 where a rule is off.
struct SecurityRules {
    int previousPasswords = 3;    ///< a new password may not be one of so many before
    qint64 leastAge = 0;          ///< before a password may be changed again
    int mostAgeDays = 0;          ///< after which a password expires
    int reminderDays = 0;         ///< before the expiry
    int firstUseDays = 0;         ///< within which a password that was reset must be used
    int attempts = 5;             ///< wrong passwords until the operator is locked
    qint64 lockedFor = 0;         ///< 0: until somebody unlocks
    qint64 attemptsForgotten = 0; ///< after the last wrong password; 0: only by a right one
    bool logAttempts = true;
    QString warningText; ///< shown at sign-on
    QString rulesText;   ///< shown to who chooses a password
};

SecurityRules ReadSecurityRules(Database& database);
/// The rules for the length and the characters of passwords.
wire::PasswordRules ReadPasswordRules(Database& database);

/// A time as it travels and is stored ("H24": a unit letter M, H or D and a number) in seconds; 0 when it is
/// none.
qint64 SecondsOf(const QString& time);

} // namespace sysadmin::server
