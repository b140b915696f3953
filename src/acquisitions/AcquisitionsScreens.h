#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the acquisitions group.
void AddAcquisitionsScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
