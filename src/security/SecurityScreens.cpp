#include "security/SecurityScreens.h"

#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddSecurityScreens([[maybe_unused]] ScreenCatalogue& catalogue) {}

} // namespace sysadmin
