#include "circulation/frmCirculation_RequestGroups.h"

#include "core/Application.h"
#include "framework/Utility.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

/// The locations that left the list or came into it, each with its state behind its id.
PutStep PutMoved(const PickedField& locations, bool toSelected) {
    return {[&locations, toSelected](RequestChannel& channel, const SaveContext&) {
                const PickedTags& tags = locations.Behaviour().tags;
                for (const GridRow& row :
                     toSelected ? locations.Lists().Added() : locations.Lists().Removed()) {
                    channel.PutField(tags.selectedId, row.key);
                    channel.PutField(tags.state, toSelected ? tags.added : tags.removed);
                }
            },
            "SI"};
}

} // namespace

frmCirculation_RequestGroups::frmCirculation_RequestGroups(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_RequestGroups", tr("Circulation Request Groups"),
                        Area::Circulation, parent) {
    AddTable({.subject = tr("Request Group"),
              .word = "Req",
              .asksAvailable = true,
              .loadCaption = "Load Circulation Policy Defintions",
              .saveCaption = "Save Request Groups",
              .deleteCaption = "Delete Request Groups",
              .matchTag = "C",
              .nameTag = "N"},
             m_form, Below({m_form.txtCode, m_form.txtName, m_form.locations}),
             {PutValue(m_form.txtName), PutValue(m_form.txtCode), OnUpdate(PutOriginalKey("ID")),
              OnUpdate(PutDraft("NNm", m_form.txtName)), OnUpdate(PutDraft("NCd", m_form.txtCode)),
              PutConstant("A", {}), PutMoved(m_form.locations, false), PutConstant("S", {}),
              PutMoved(m_form.locations, true)});
    Finish();
}

bool frmCirculation_RequestGroups::FillForm(Table& table, const GridRow& row) {
    App().channel.PutField(table.spec.getKeyTag, row.key);
    if (App().channel.SendRequest(table.spec.getRequest) != wire::status::Ok) {
        ReportUnableToLoad(App(), this, windowTitle());
        return false;
    }
    ReadRecord(table);
    return true;
}

} // namespace sysadmin

#include "moc_frmCirculation_RequestGroups.cpp"
