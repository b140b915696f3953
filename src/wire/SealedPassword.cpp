#include "wire/SealedPassword.h"

namespace sysadmin::wire {

QByteArray PasswordPrefix(PasswordPurpose purpose, const QString& nonce) {
    const char* name = purpose == PasswordPurpose::SignOn ? "sign-on"
                       : purpose == PasswordPurpose::Set  ? "set"
                                                          : "confirm";
    return QByteArray(name) + '\n' + nonce.toUtf8() + '\n';
}

} // namespace sysadmin::wire
