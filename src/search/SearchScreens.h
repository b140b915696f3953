#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the search group.
void AddSearchScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
