#pragma once

namespace sysadmin {

/// Makes the pictures (`:/icons`) and help topics (`:/help`) that are compiled into the program reachable. A
/// library's resources are not registered on their own; calling it again does nothing.
void LoadResources();

} // namespace sysadmin
