#pragma once

#include "wire/PasswordRules.h"

class QWidget;

namespace sysadmin {

class Application;

/// The longest password that the program takes, in characters.
constexpr int LongestPassword = 128;

/// Asks the server for the password rules in force and tells the operator what is wrong with the password by
/// them; true when nothing is. False, too, when the rules cannot be had, which is reported under
/// `screenName`.
bool CheckPassword(Application& application, QWidget* parent, const QString& screenName,
                   const QString& password, const wire::PasswordOwner& owner);

/// The message for a password that the server refused by its rules; empty for any other status.
QString PasswordRefusal(qint16 status);

} // namespace sysadmin
