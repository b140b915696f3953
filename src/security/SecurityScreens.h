#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the security group.
void AddSecurityScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
