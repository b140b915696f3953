#include "security/SecurityScreens.h"

#include "core/ScreenCatalogue.h"
#include "security/ProfileScreen.h"
#include "security/frmSecurity_OperatorProfiles.h"
#include "security/frmSecurity_SecurityOptions.h"

namespace sysadmin {

namespace {

void ContributeProfile(ScreenCatalogue& catalogue, const QString& key, int helpContext,
                       ProfileSpec (*spec)()) {
    catalogue.Contribute(
        key, ScreenMaker{helpContext, false, [spec](Application& application, QWidget* parent) -> Screen* {
                             return new ProfileScreen(application, spec(), parent);
                         }});
}

} // namespace

void AddSecurityScreens(ScreenCatalogue& catalogue) {
    ContributeProfile(catalogue, "Security_AcqSerialsProfile", 50700, AcqSerialsProfileSpec);
    ContributeProfile(catalogue, "Security_CatalogingProfile", 50710, CatalogingProfileSpec);
    ContributeProfile(catalogue, "Security_CirculationProfile", 50720, CirculationProfileSpec);
    ContributeProfile(catalogue, "Security_MasterProfile", 50730, MasterProfileSpec);
    ContributeProfile(catalogue, "Security_ReportingProfiles", 50740, ReportingProfileSpec);
    ContributeProfile(catalogue, "Security_GlobalDataChangeProfiles", 50750, GlobalDataChangeProfileSpec);
    catalogue.Contribute<frmSecurity_OperatorProfiles>("Security_OperatorProfile", 50760);
    catalogue.Contribute<frmSecurity_SecurityOptions>("Security_Options", 50770);
}

} // namespace sysadmin
