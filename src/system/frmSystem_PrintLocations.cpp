#include "system/frmSystem_PrintLocations.h"

#include "framework/forms/Rules.h"

namespace sysadmin {

PrintLocationForm::PrintLocationForm() {
    When([this] { return chkDefault.Stored() == u"Y"; }).Disable(chkDefault);
}

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
              .pickTag = "Nm"},
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

void frmSystem_PrintLocations::AfterSave(Table& table, const GridRow& saved, bool) {
    if (saved.cells.first() != "Y")
        return;
    // There is one default: the server took the mark from whichever location had it before.
    QList<GridRow> rows = table.grid->Model().Rows();
    for (GridRow& row : rows)
        if (row.key != saved.key)
            row.cells.first() = "N";
    table.grid->ReplaceRows(rows);
}

} // namespace sysadmin
