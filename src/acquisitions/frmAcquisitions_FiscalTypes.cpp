#include "acquisitions/frmAcquisitions_FiscalTypes.h"

namespace sysadmin {

frmAcquisitions_FiscalTypes::frmAcquisitions_FiscalTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_FiscalTypes", tr("Acquisitions Fiscal Period"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Fiscal Period"),
              .notice = "FscPr",
              .columns = {{tr("Names")}},
              .cellTags = {"Nm"},
              .recordTag = "ID",
              .listRequest = "LstFscPr",
              .getRequest = "GetFscPr",
              .addRequest = "AddFscPr",
              .updateRequest = "UpdFscPr",
              .deleteRequest = "DelFscPr",
              .loadCaption = "Load Acquisitions Fiscal Types",
              .editCaption = "Edit Acquisitions Fiscal Type",
              .saveCaption = "Save Acquisitions Fiscal Type",
              .deleteCaption = "Delete Acquisitions Fiscal Type",
              .matchTag = "Nm"},
             m_form, Column({m_form.txtName, m_form.fpStartDate, m_form.fpEndDate}),
             {PutValue(m_form.txtName), PutValue(m_form.fpStartDate), PutValue(m_form.fpEndDate),
              OnUpdate(PutOriginalKey("ID")), OnUpdate(PutChanged("NNm", m_form.txtName))});
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
