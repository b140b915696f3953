#include "acquisitions/AcquisitionsScreens.h"

#include "acquisitions/CodeTables.h"
#include "acquisitions/frmAcquisitions_FiscalTypes.h"
#include "acquisitions/frmAcquisitions_FundTypes.h"
#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddAcquisitionsScreens(ScreenCatalogue& catalogue) {
    AddAcquisitionsCodeTables(catalogue);
    catalogue.Contribute<frmAcquisitions_FiscalTypes>("Acquisitions_FiscalTypes", 50303);
    catalogue.Contribute<frmAcquisitions_FundTypes>("Acquisitions_FundTypes", 50304);
}

} // namespace sysadmin
