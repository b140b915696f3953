#include "circulation/CirculationScreens.h"

#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddCirculationScreens([[maybe_unused]] ScreenCatalogue& catalogue) {}

} // namespace sysadmin
