#pragma once

#include "server/Passwords.h"
#include "server/SecurityOptions.h"
#include "server/store/Records.h"

namespace sysadmin::server {

class Library;

/// Whether the operator may have this password now: 107 for one of the passwords before, 108 while the
/// present one is too young to be changed, 109 for one that does not follow the password rules, 110 for a
/// published one on a server for others, 3 for an empty one, else 0. `skipRules` leaves 107 to 109 out.
qint16 CheckNewPassword(const Records& records, const Library& library, qint64 operatorRow,
                        const Secret& password, const SecurityRules& rules, bool skipRules = false);

/// Gives the operator the password and keeps the hash of the one before. Lifts an expiry.
void SetPassword(Records& records, const Library& library, qint64 operatorRow, const Secret& password);

/// Whether it is one of the sample library's passwords, which everybody knows.
bool IsPublished(const Secret& password);

/// A published operator and password of the sample library.
struct SampleOperator {
    QString id;
    QString password;
};
const QList<SampleOperator>& SampleOperators();

} // namespace sysadmin::server
