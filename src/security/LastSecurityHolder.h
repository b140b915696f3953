#pragma once

#include <QString>

namespace sysadmin {

/// What the operator is told when the server refuses a change after which nobody could change security
/// settings.
QString LastSecurityHolderText();

} // namespace sysadmin
