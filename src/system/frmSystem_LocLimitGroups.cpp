#include "system/frmSystem_LocLimitGroups.h"

#include "core/Application.h"

namespace sysadmin {

frmSystem_LocLimitGroups::frmSystem_LocLimitGroups(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_LocLimitGroups", tr("System Location Limit Groups"),
                        Area::System, parent) {
    const PickedLists& moved = m_form.locations.Lists();
    AddTable(
        {.subject = tr("Location Limit Group"),
         .word = "Lmt",
         .plural = "System Location Limit Groups",
         .asksAvailable = true,
         .deleteCaption = "Edit Print Locations",
         .matchTag = "C",
         .morePuts = {PutRemovals(moved, "SI", "LS"), PutAdditions(moved, "SI", "LS")},
         .putOrder = {"C", "N", "O", "SI"}},
        m_form,
        Tabs("tabLocationLimitGroup", {Page(tr("N&ame"), {m_form.txtCode, m_form.txtName, m_form.chkCheck}),
                                       Page(tr("&Locations"), {m_form.locations})}));
    Finish();
}

void frmSystem_LocLimitGroups::ReadRecord(Table& table) {
    MaintenanceScreen::ReadRecord(table);
    m_form.locations.LoadPairs(App().channel, "AI", "AN", "SI", "SN");
}

void frmSystem_LocLimitGroups::ReadAvailable(Table&) {
    m_form.locations.LoadPairs(App().channel, "AI", "AN", "SI", "SN");
}

QString frmSystem_LocLimitGroups::EditCaption(const Table& table, State state) const {
    return state == State::List ? tr("Location Limit Group") : MaintenanceScreen::EditCaption(table, state);
}

} // namespace sysadmin
