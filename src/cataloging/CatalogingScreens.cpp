#include "cataloging/CatalogingScreens.h"

#include "cataloging/DuplicateScreen.h"
#include "cataloging/frmCataloging_BulkImportRules.h"
#include "cataloging/frmCataloging_MARCFieldOrderingRules.h"
#include "cataloging/frmCataloging_Miscellaneous.h"
#include "core/ScreenCatalogue.h"

namespace sysadmin {

namespace {

void ContributeDuplicates(ScreenCatalogue& catalogue, const QString& key, int helpContext,
                          DuplicateSpec (*spec)()) {
    catalogue.Contribute(
        key, ScreenMaker{helpContext, false, [spec](Application& application, QWidget* parent) -> Screen* {
                             return new DuplicateScreen(application, spec(), parent);
                         }});
}

} // namespace

void AddCatalogingScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmCataloging_BulkImportRules>("Catalog_BulkImportRules", 50430);
    ContributeDuplicates(catalogue, "Catalog_AuthorityDuplicateDetection", 50442, AuthorityDuplicates);
    ContributeDuplicates(catalogue, "Catalog_BibDuplicateDetection", 50441, BibDuplicates);
    catalogue.Contribute<frmCataloging_MARCFieldOrderingRules>("Catalog_MARCFieldOrderingRules", 50450);
    catalogue.Contribute<frmCataloging_Miscellaneous>("Catalog_Miscellaneous", 50454);
}

} // namespace sysadmin
