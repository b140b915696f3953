#pragma once

#include <QByteArray>
#include <QString>

namespace sysadmin::wire {

/// What a sealed password is good for; it is refused for anything else.
enum class PasswordPurpose {
    SignOn,
    Set,     ///< a new password, of oneself or of another operator
    Confirm, ///< the present password, typed again before it is replaced
};

/// What stands before the password inside a sealed box: the purpose, and the nonce of the greeting under
/// which the operator signs on. The box so fits one session and one use only.
QByteArray PasswordPrefix(PasswordPurpose purpose, const QString& nonce);

} // namespace sysadmin::wire
