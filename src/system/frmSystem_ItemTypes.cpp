#include "system/frmSystem_ItemTypes.h"

namespace sysadmin {

frmSystem_ItemTypes::frmSystem_ItemTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_ItemTypes", tr("System Item Types"), Area::System, parent) {
    AddTable({.subject = tr("Item Type"),
              .frameNoun = tr("Item Types"),
              .notice = "ItmTp",
              .columns = {{tr("Codes"), 180}, {tr("Names")}},
              .cellTags = {"Cd", "Nm"},
              .recordTag = "ID",
              .listRequest = "LstItmTp",
              .getRequest = "GetItmTp",
              .addRequest = "AddItmTp",
              .updateRequest = "UpdItmTp",
              .deleteRequest = "DelItmTp",
              .loadCaption = "Load System Item Types",
              .editCaption = "Save System Item Types",
              .saveCaption = "Save System Item Types",
              .deleteCaption = "Edit Print Locations",
              .matchTag = "Cd",
              .pickLists = {"cboItemType", "cboTempItemType", "cboPrintGroups"},
              .pickTag = "Nm"},
             m_form, Column({m_form.txtCode, m_form.txtName, m_form.txtDisplayName}),
             {PutValue(m_form.txtName), PutValue(m_form.txtCode), PutValue(m_form.txtDisplayName),
              OnUpdate(PutOriginalKey("ID")), OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin
