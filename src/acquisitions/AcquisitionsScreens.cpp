#include "acquisitions/AcquisitionsScreens.h"

#include "acquisitions/frmAcquisitions_VendorTypes.h"
#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddAcquisitionsScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmAcquisitions_VendorTypes>("Acquisitions_VendorTypes", 50300);
}

} // namespace sysadmin
