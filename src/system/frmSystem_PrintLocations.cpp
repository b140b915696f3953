#include "system/frmSystem_PrintLocations.h"

namespace sysadmin {

frmSystem_PrintLocations::frmSystem_PrintLocations(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_PrintLocations", tr("System Print Locations"), Area::System,
                        parent) {
    AddTable({.subject = tr("Print Location"),
              .word = "PL",
              .plural = "Print Locations",
              .columns = {{.caption = tr("Default"), .width = 70, .yesNo = true, .tag = "DP"},
                          {.caption = tr("Codes"), .width = 120, .tag = "Cd"},
                          {.caption = tr("Names"), .tag = "Nm"}},
              .sortColumn = 1,
              .deleteCaption = "Edit Print Locations",
              .pickLists = {"cboPrintLocation"},
              .pickTag = "Nm",
              .defaultFlag = &m_form.chkDefault},
             m_form,
             Below({m_form.txtCode, m_form.txtName, m_form.chkDefault,
                    Frame("fraGroups", tr("Policy Groups That May Choose It"),
                          {m_form.chkCircGroups, m_form.chkAcqGroups, m_form.chkMediaGroups,
                           m_form.chkCatGroups})}));
    Finish();
}

bool frmSystem_PrintLocations::PrepareNew(Table& table) {
    for (FlagField* group :
         {&m_form.chkCircGroups, &m_form.chkAcqGroups, &m_form.chkMediaGroups, &m_form.chkCatGroups})
        group->SetStored("Y");
    return MaintenanceScreen::PrepareNew(table);
}

} // namespace sysadmin

#include "moc_frmSystem_PrintLocations.cpp"
