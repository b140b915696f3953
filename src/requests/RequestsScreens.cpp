#include "requests/RequestsScreens.h"

#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddRequestsScreens([[maybe_unused]] ScreenCatalogue& catalogue) {}

} // namespace sysadmin
