#include "acquisitions/frmAcquisitions_AdjustReasons.h"

#include "core/Application.h"

namespace sysadmin {

frmAcquisitions_AdjustReasons::frmAcquisitions_AdjustReasons(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_AdjustReasons", tr("Adjust Reasons"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Adjust Reason"),
              .notice = "Adj",
              .columns = {{tr("Names")}},
              .cellTags = {"T"},
              .recordTag = "ID",
              .listRequest = "LstAdj",
              .getRequest = "GetAdj",
              .addRequest = "AddAdj",
              .updateRequest = "UpdAdj",
              .deleteRequest = "DelAdj",
              .loadCaption = "Load Acquisitions Adjust Reason",
              .editCaption = "Edit Acquisitions Adjust Reason",
              .saveCaption = "Save Acquisitions Adjust Reason",
              .deleteCaption = "Delete Acquisitions Adjust Reason"},
             m_form, Column({m_form.txtName, m_form.txtEDICode, m_form.optKind, m_form.cboVendor}),
             {OnUpdate(PutOriginalKey("ID")), PutValue(m_form.txtName), PutValue(m_form.txtEDICode),
              PutValue(m_form.optKind), PutValue(m_form.cboVendor),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

void frmAcquisitions_AdjustReasons::BeforeLoad() {
    QList<PickItem> vendors = ReadPickItems("LstVen", "ID", "Nm", [this](qint16 status) {
        App().ReportRequestFailure(status, "Get Vendors", Current().spec.subject);
    });
    vendors.prepend({{}, tr("(all vendors)")});
    m_form.cboVendor.SetItems(vendors);
}

} // namespace sysadmin
