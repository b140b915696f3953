#include "system/SystemScreens.h"

#include "core/ScreenCatalogue.h"
#include "system/CodeTables.h"
#include "system/frmSystem_AccessControlGroups.h"
#include "system/frmSystem_BaseCurrency.h"
#include "system/frmSystem_DefaultAdd.h"
#include "system/frmSystem_FineFeeReasons.h"
#include "system/frmSystem_LocLimitGroups.h"
#include "system/frmSystem_Locations.h"
#include "system/frmSystem_OwningLibraries.h"
#include "system/frmSystem_PrintLocations.h"

namespace sysadmin {

void AddSystemScreens(ScreenCatalogue& catalogue) {
    AddSystemCodeTables(catalogue);
    catalogue.Contribute<frmSystem_AccessControlGroups>("System_AccessControlGroups", 50800);
    catalogue.Contribute<frmSystem_BaseCurrency>("System_BaseCurrency", 50801);
    catalogue.Contribute<frmSystem_DefaultAdd>("System_DefaultAddress", 50802);
    catalogue.Contribute<frmSystem_FineFeeReasons>("System_FineFeeReasons", 50804);
    catalogue.Contribute<frmSystem_LocLimitGroups>("System_LocLimitGroups", 50807);
    catalogue.Contribute<frmSystem_Locations>("System_Locations", 50806);
    catalogue.Contribute<frmSystem_OwningLibraries>("System_OwningLibraries", 50809);
    catalogue.Contribute<frmSystem_PrintLocations>("System_PrintLocations", 50810);
}

} // namespace sysadmin
