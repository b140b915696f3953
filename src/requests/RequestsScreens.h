#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the public catalogue, call slip and web service groups.
void AddRequestsScreens(ScreenCatalogue& catalogue);

} // namespace sysadmin
