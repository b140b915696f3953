#pragma once

#include "server/Passwords.h"
#include "server/Prepared.h"
#include "server/SecurityOptions.h"
#include "server/store/Records.h"

namespace sysadmin::server {

class Library;

/// A password that an operator is to get. The slow part of checking and keeping it is done once: what was
/// prepared before a transaction costs nothing in it, where it would hold up everybody's changes.
class NewPassword : public Prepared {
public:
    /// The library must outlive it.
    NewPassword(Secret password, const Library& library);

    const Secret& Plain() const { return m_plain; }
    /// Whether it is the password of this hash.
    bool Fits(const QString& hash);
    /// The hash to be kept of it.
    const QString& Hash();

private:
    Secret m_plain;
    const Library& m_library;
    QHash<QString, bool> m_fits;
    QString m_hash;
};

/// Works out, outside a transaction, what checking the password for this operator will ask for. Throws
/// `StoreError`.
void PrepareCheck(NewPassword& password, Database& database, qint64 operatorRow);

/// Whether the operator may have this password now: 107 for one of the passwords before, 108 while the
/// present one is too young to be changed, 109 for one that does not follow the password rules, 110 for a
/// published one on a server for others, 3 for an empty one, else 0. `skipRules` leaves 107 to 109 out.
qint16 CheckNewPassword(const Records& records, const Library& library, qint64 operatorRow,
                        NewPassword& password, const SecurityRules& rules, bool skipRules = false);

/// Gives the operator the password and keeps the hash of the one before. Lifts an expiry.
void SetPassword(Records& records, const Library& library, qint64 operatorRow, NewPassword& password);

/// Whether it is one of the sample library's passwords, which everybody knows.
bool IsPublished(const Secret& password);

/// A published operator and password of the sample library.
struct SampleOperator {
    QString id;
    QString password;
};
const QList<SampleOperator>& SampleOperators();

} // namespace sysadmin::server
