#include "search/SearchScreens.h"

#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddSearchScreens([[maybe_unused]] ScreenCatalogue& catalogue) {}

} // namespace sysadmin
