#include "search/frmSearch_MaterialType.h"

namespace sysadmin {

frmSearch_MaterialType::frmSearch_MaterialType(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_MaterialType", tr("Title List Material Type Display"),
                        Area::System, parent) {
    AddTable({.subject = tr("Material Type"),
              .notice = "BF",
              .columns = {{tr("Codes"), 120}, {tr("Names")}},
              .cellTags = {"Cd", "Nm"},
              .recordTag = "Cd",
              .listRequest = "LstBF",
              .getRequest = "GetBF",
              .addRequest = "AddBF",
              .updateRequest = "UpdBF",
              .deleteRequest = "DelBF",
              .loadCaption = "Load Material Types",
              .editCaption = "Edit Search Material Type",
              .saveCaption = "Save Search Material Type",
              .deleteCaption = "Delete Search Material Type"},
             m_form, Column({m_form.txtCode, m_form.txtName}),
             {PutValue(m_form.txtCode), PutValue(m_form.txtName), OnUpdate(PutOriginalKey("OC")),
              OnUpdate(PutChanged("NCd", m_form.txtCode)), OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin
