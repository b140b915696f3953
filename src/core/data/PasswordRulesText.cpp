#include "core/data/PasswordRulesText.h"

#include "wire/PasswordRules.h"

#include <QCoreApplication>

namespace sysadmin {

QString PasswordRulesText(const QString& text) {
    if (!text.trimmed().isEmpty())
        return QString(text).replace("\r\n", "\n");
    return QCoreApplication::translate(
               "PasswordRulesText",
               "Your new password must\n"
               "- be a minimum of 8 and a maximum of 25 characters long\n"
               "- contain at least 2 alphabetical characters (upper or lower case, no special\n"
               "characters)\n"
               "- contain at least 1 numeric character:  0123456789\n"
               "- contain at least 1 special character:  %1\n"
               "- be different from the previous 3 passwords")
        .arg(wire::PasswordRules().specialCharacters);
}

} // namespace sysadmin
