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

std::optional<Form::Finding> FiscalPeriodForm::FormProblem() {
    if (fpEndDate.Date() >= fpStartDate.Date())
        return {};
    return Finding{&fpEndDate, tr("The end date must not be before the start date.")};
}

} // namespace sysadmin

#include "moc_frmAcquisitions_FiscalTypes.cpp"
