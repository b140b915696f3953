#include "acquisitions/frmAcquisitions_VendorTypes.h"

#include "wire/Status.h"

namespace sysadmin {

frmAcquisitions_VendorTypes::frmAcquisitions_VendorTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_VendorTypes", tr("Acquisitions Vendor Type"),
                        Area::Acquisitions, parent) {
    AddTable(
        {.subject = tr("Vendor Type"),
         .notice = "VenTp",
         .columns = {{tr("Codes"), 120}, {tr("Names")}},
         .cellTags = {"Cd", "Nm"},
         .recordTag = "Cd",
         .listRequest = "LstVenTp",
         .addRequest = "AddVenTp",
         .updateRequest = "UpdVenTp",
         .deleteRequest = "DelVenTp",
         .loadCaption = "Load Acquisitions Vendor Types",
         .saveCaption = "Save Acquisitions Vendor Types",
         .deleteCaption = "Delete Acquisitions Vendor Types",
         .deleteWords =
             {{wire::status::InUse,
               {tr("This vendor type cannot be deleted while\r\nthere are vendor records assigned to it."),
                tr("Cannot Delete Vendor Type")}}}},
        m_form, Column({m_form.txtCode, m_form.txtName}),
        {PutValue(m_form.txtCode), PutValue(m_form.txtName), OnUpdate(PutConstant("NCd", "N")),
         OnUpdate(PutChanged("NNm", m_form.txtName)), OnUpdate(PutOriginalKey("OCd"))});
    Finish();
}

} // namespace sysadmin
