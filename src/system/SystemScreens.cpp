#include "system/SystemScreens.h"

#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddSystemScreens([[maybe_unused]] ScreenCatalogue& catalogue) {}

} // namespace sysadmin
