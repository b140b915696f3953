#pragma once

#include <QString>

namespace sysadmin {

/// What an operator who chooses a password is told of the rules: the library's own text as it came from the
/// server, or, when that is blank, a built-in one.
QString PasswordRulesText(const QString& text);

} // namespace sysadmin
