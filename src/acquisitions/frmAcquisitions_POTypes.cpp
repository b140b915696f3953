#include "acquisitions/frmAcquisitions_POTypes.h"

namespace sysadmin {

frmAcquisitions_POTypes::frmAcquisitions_POTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_POTypes", tr("Acquisitions Po Types"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("PO Type"),
              .notice = "POTp",
              .columns = {{tr("Names")}},
              .cellTags = {"D"},
              .recordTag = "T",
              .listRequest = "LstPOTp",
              .getRequest = "GetPOTp",
              .addRequest = "AddPOTp",
              .updateRequest = "UpdPOTp",
              .deleteRequest = "DelPOTp",
              .loadCaption = "Load Acquisitions PO Types",
              .editCaption = "Edit Acquisitions PO Types",
              .saveCaption = "Save Acquisitions PO Types",
              .deleteCaption = "Delete Acquisitions PO Types"},
             m_form, Column({m_form.txtName}),
             {OnUpdate(PutOriginalKey("T")), PutValue(m_form.txtName),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin
