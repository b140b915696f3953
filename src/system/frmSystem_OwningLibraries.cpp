#include "system/frmSystem_OwningLibraries.h"

#include "core/Application.h"

namespace sysadmin {

frmSystem_OwningLibraries::frmSystem_OwningLibraries(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_OwningLibraries", tr("System Owning Libraries"), Area::System,
                        parent) {
    const PickedLists& moved = m_form.locations.Lists();
    AddTable({.subject = tr("Owning Library"),
              .notice = "Lib",
              .columns = {{tr("Library Names")}},
              .cellTags = {"LN"},
              .recordTag = "ID",
              .listRequest = "LstLib",
              .getRequest = "GetLib",
              .addRequest = "AddLib",
              .updateRequest = "UpdLib",
              .deleteRequest = "DelLib",
              .availableRequest = "AvlLib",
              .loadCaption = "Load System Owning Libraries",
              .editCaption = "Edit System Owning Libraries",
              .saveCaption = "Save System Owning Libraries",
              .deleteCaption = "Delete",
              .matchTag = "LN",
              .pickLists = {"cboOwningLib", "cboOwningLibrary"},
              .pickTag = "LN"},
             m_form,
             Tabs("tabOwningLibrary",
                  {Page(tr("Li&brary"), {m_form.txtName, m_form.txtDisplayName, m_form.txtCode}),
                   Page(tr("&Locations"), {m_form.locations})}),
             {PutValue(m_form.txtName), PutValue(m_form.txtDisplayName), PutValue(m_form.txtCode),
              PutRemovals(moved, "SI", "LS"), PutAdditions(moved, "SI", "LS"), OnUpdate(PutOriginalKey("ID")),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
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
