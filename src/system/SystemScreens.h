#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the system group.
void AddSystemScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
