#include "search/SearchScreens.h"

#include "core/ScreenCatalogue.h"
#include "search/frmSearch_MaterialType.h"

namespace sysadmin {

void AddSearchScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmSearch_MaterialType>("Search_MaterialType", 50611);
}

} // namespace sysadmin
