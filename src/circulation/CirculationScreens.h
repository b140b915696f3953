#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the circulation group.
void AddCirculationScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
