#include "circulation/frmCirculation_PatronNoteTypes.h"

#include "wire/Status.h"

namespace sysadmin {

frmCirculation_PatronNoteTypes::frmCirculation_PatronNoteTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_PatronNoteTypes", tr("Circulation Patron Note Types"),
                        Area::Circulation, parent) {
    AddTable(
        {.subject = tr("Patron Note Type"),
         .notice = "PatNoteTp",
         .columns = {{tr("Names")}},
         .cellTags = {"D"},
         .recordTag = "ID",
         .listRequest = "LstPatNoteTp",
         .addRequest = "AddPatNoteTp",
         .updateRequest = "UpdPatNoteTp",
         .deleteRequest = "DelPatNoteTp",
         .loadCaption = "Load Patron Note Types",
         .saveCaption = "Save ",
         .deleteCaption = "Delete Patron Note Types",
         .deleteWords =
             {{wire::status::InUse,
               {tr("This patron note type cannot be deleted while\r\nthere are patron notes assigned to it."),
                tr("Cannot Delete Patron Note Type")}}}},
        m_form, Column({m_form.txtName}),
        {PutValue(m_form.txtName), OnUpdate(PutOriginalKey("ID")),
         OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin
