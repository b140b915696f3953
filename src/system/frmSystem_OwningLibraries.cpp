#include "system/frmSystem_OwningLibraries.h"

#include "core/Application.h"

namespace sysadmin {

frmSystem_OwningLibraries::frmSystem_OwningLibraries(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_OwningLibraries", tr("System Owning Libraries"), Area::System,
                        parent) {
    const PickedLists& moved = m_form.locations.Lists();
    AddTable({.subject = tr("Owning Library"),
              .word = "Lib",
              .plural = "System Owning Libraries",
              .asksAvailable = true,
              .deleteCaption = "Delete",
              .matchTag = "LN",
              .pickLists = {"cboOwningLib", "cboOwningLibrary"},
              .pickTag = "LN",
              .morePuts = {PutRemovals(moved, "SI", "LS"), PutAdditions(moved, "SI", "LS")},
              .putOrder = {"LN", "DN", "NC", "SI"}},
             m_form,
             Tabs("tabOwningLibrary",
                  {Page(tr("Li&brary"), {m_form.txtName, m_form.txtDisplayName, m_form.txtCode}),
                   Page(tr("&Locations"), {m_form.locations})}));
    Finish();
}

void frmSystem_OwningLibraries::ReadRecord(Table& table) {
    MaintenanceScreen::ReadRecord(table);
    m_form.locations.LoadPairs(App().channel, "AI", "AN", "SI", "SN");
}

void frmSystem_OwningLibraries::ReadAvailable(Table&) {
    m_form.locations.LoadPairs(App().channel, "AI", "AN", "SI", "SN");
}

} // namespace sysadmin
