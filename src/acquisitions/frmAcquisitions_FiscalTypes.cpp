#include "acquisitions/frmAcquisitions_FiscalTypes.h"

namespace sysadmin {

frmAcquisitions_FiscalTypes::frmAcquisitions_FiscalTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_FiscalTypes", tr("Acquisitions Fiscal Period"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Fiscal Period"),
              .word = "FscPr",
              .plural = "Acquisitions Fiscal Type",
              .loadCaption = "Load Acquisitions Fiscal Types",
              .matchTag = "Nm",
              .putOrder = {"Nm", "StDt", "EDt"}},
             m_form);
    Finish();
}

bool frmAcquisitions_FiscalTypes::CheckBeforeSave(Table& table) {
    if (!MaintenanceScreen::CheckBeforeSave(table))
        return false;
    if (m_form.fpEndDate.Date() >= m_form.fpStartDate.Date())
        return true;
    Tell(tr("The end date must not be before the start date."));
    table.view->FocusField(m_form.fpEndDate);
    return false;
}

} // namespace sysadmin
