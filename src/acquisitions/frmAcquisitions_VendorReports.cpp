#include "acquisitions/frmAcquisitions_VendorReports.h"

namespace sysadmin {

frmAcquisitions_VendorReports::frmAcquisitions_VendorReports(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_VendorReports", tr("Acquisitions Vendor Reports"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Vendor Report"),
              .notice = "VRpt",
              .columns = {{tr("Names")}},
              .cellTags = {"Nm"},
              .recordTag = "ID",
              .listRequest = "LstVRpt",
              .getRequest = "GetVRpt",
              .addRequest = "AddVRpt",
              .updateRequest = "UpdVRpt",
              .deleteRequest = "DelVRpt",
              .loadCaption = "Load Acquisitions Vendor Reports",
              .editCaption = "Edit Acquisitions Vendor Reports",
              .saveCaption = "Save Acquisitions Vendor Reports",
              .deleteCaption = "Delete Acquisitions Vendor Reports"},
             m_form, Column({m_form.txtName, m_form.txtEDICode}),
             {OnUpdate(PutOriginalKey("ID")), PutValue(m_form.txtName), PutValue(m_form.txtEDICode),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin
