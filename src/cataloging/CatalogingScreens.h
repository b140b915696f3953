#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the cataloging group.
void AddCatalogingScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
