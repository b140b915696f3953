#include "acquisitions/frmAcquisitions_ClaimTypes.h"

namespace sysadmin {

frmAcquisitions_ClaimTypes::frmAcquisitions_ClaimTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_ClaimTypes", tr("Acquisitions Claim Types"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Claim Type"),
              .notice = "Clm",
              .columns = {{tr("Names")}},
              .cellTags = {"D"},
              .recordTag = "ID",
              .listRequest = "LstClm",
              .getRequest = "GetClm",
              .addRequest = "AddClm",
              .updateRequest = "UpdClm",
              .deleteRequest = "DelClm",
              .loadCaption = "Load Acquisitions Claim Types",
              .editCaption = "Edit Acquisitions Claim Types",
              .saveCaption = "Save Acquisitions Claim Type",
              .deleteCaption = "Delete Acquisitions Claim Type",
              .pickLists = {"cboClaimType"},
              .pickTag = "D"},
             m_form, Column({m_form.txtName, m_form.txtEDICode}),
             {OnUpdate(PutOriginalKey("ID")), PutValue(m_form.txtName), PutValue(m_form.txtEDICode),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin
