#include "acquisitions/AcquisitionsScreens.h"

#include "acquisitions/frmAcquisitions_AdjustReasons.h"
#include "acquisitions/frmAcquisitions_ClaimTypes.h"
#include "acquisitions/frmAcquisitions_FiscalTypes.h"
#include "acquisitions/frmAcquisitions_FundTypes.h"
#include "acquisitions/frmAcquisitions_MarkReasons.h"
#include "acquisitions/frmAcquisitions_POTypes.h"
#include "acquisitions/frmAcquisitions_VendorReports.h"
#include "acquisitions/frmAcquisitions_VendorTypes.h"
#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddAcquisitionsScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmAcquisitions_AdjustReasons>("Acquisitions_AdjustReasons", 50301);
    catalogue.Contribute<frmAcquisitions_ClaimTypes>("Acquisitions_ClaimTypes", 50302);
    catalogue.Contribute<frmAcquisitions_FiscalTypes>("Acquisitions_FiscalTypes", 50303);
    catalogue.Contribute<frmAcquisitions_FundTypes>("Acquisitions_FundTypes", 50304);
    catalogue.Contribute<frmAcquisitions_MarkReasons>("Acquisitions_MarkReasons", 50305);
    catalogue.Contribute<frmAcquisitions_POTypes>("Acquisitions_POTypes", 50306);
    catalogue.Contribute<frmAcquisitions_VendorReports>("Acquisitions_VendorReports", 50308);
    catalogue.Contribute<frmAcquisitions_VendorTypes>("Acquisitions_VendorTypes", 50300);
}

} // namespace sysadmin
