#include "requests/CallSlipScreens.h"

#include "core/ScreenCatalogue.h"
#include "requests/frmCallSlip_Definitions.h"
#include "requests/frmCallSlip_NoFillReasons.h"
#include "requests/frmCallSlip_Rules.h"

namespace sysadmin {

void AddCallSlipScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmCallSlip_Definitions>("CallSlip_Definitions", 50400);
    catalogue.Contribute<frmCallSlip_Rules>("CallSlip_Rules", 50402);
    catalogue.Contribute<frmCallSlip_NoFillReasons>("CallSlip_NoFillReasons", 50401);
}

} // namespace sysadmin
