#include "circulation/CirculationScreens.h"

#include "circulation/frmCirculation_PatronDefaultDates.h"
#include "circulation/frmCirculation_PatronNoteTypes.h"
#include "circulation/frmClusterMaintenance.h"
#include "core/ScreenCatalogue.h"

namespace sysadmin {

void AddCirculationScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmClusterMaintenance>("Circ_Clusters", 50500);
    catalogue.Contribute<frmCirculation_PatronDefaultDates>("Circulation_PatronDefaultDates", 50506);
    catalogue.Contribute<frmCirculation_PatronNoteTypes>("Circulation_PatronNoteTypes", 50505);
}

} // namespace sysadmin
