#include "cataloging/CatalogingScreens.h"

#include "cataloging/frmCataloging_BulkImportRules.h"
#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddCatalogingScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmCataloging_BulkImportRules>("Catalog_BulkImportRules", 50430);
}

} // namespace sysadmin
