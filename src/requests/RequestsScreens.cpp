#include "requests/RequestsScreens.h"

#include "core/ScreenCatalogue.h"
#include "requests/frmWS_Configuration.h"
#include "requests/frmWS_LoginSummary.h"
#include "requests/frmWS_SelfRegistration.h"

namespace sysadmin {

void AddRequestsScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmWS_LoginSummary>("WS_LoginSummary", 50900);
    catalogue.Contribute<frmWS_SelfRegistration>("WS_SelfRegistration", 50901, true);
    catalogue.Contribute<frmWS_Configuration>("WS_Configuration", 50902);
}

} // namespace sysadmin
