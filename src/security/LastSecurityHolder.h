#pragma once

#include <QString>

namespace sysadmin {

/// The status with which the server refuses a change after which nobody could change security settings any
/// more.
inline constexpr qint16 LastSecurityHolderStatus = 53;
/// What the operator is told then.
QString LastSecurityHolderText();

} // namespace sysadmin
