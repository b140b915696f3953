#include "cataloging/CatalogingScreens.h"

#include "cataloging/DuplicateScreen.h"
#include "cataloging/frmCataloging_BulkImportRules.h"
#include "cataloging/frmCataloging_CallNumberHierarchy.h"
#include "cataloging/frmCataloging_MARCFieldOrderingRules.h"
#include "cataloging/frmCataloging_Miscellaneous.h"
#include "cataloging/frmCataloging_PolicyDefinitions.h"
#include "cataloging/frmCataloging_RDAToolkit.h"
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
    catalogue.Contribute<frmCataloging_CallNumberHierarchy>("Catalog_CallNumberHierarchy", 50455);
    catalogue.Contribute<frmCataloging_MARCFieldOrderingRules>("Catalog_MARCFieldOrderingRules", 50450);
    catalogue.Contribute<frmCataloging_Miscellaneous>("Catalog_Miscellaneous", 50454);
    catalogue.Contribute<frmCataloging_PolicyDefinitions>("Catalog_PolicyDefinitions", 50458);
    catalogue.Contribute<frmCataloging_RDAToolkit>("Catalog_RDAToolkit", 50459);
}

} // namespace sysadmin
