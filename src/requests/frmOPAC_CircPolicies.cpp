#include "requests/frmOPAC_CircPolicies.h"

#include "core/Application.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

frmOPAC_CircPolicies::frmOPAC_CircPolicies(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmOPAC_CircPolicies", tr("OPAC Circulation Policies"), Area::System,
                         parent) {
    Build({.subject = tr("OPAC Circulation Policy"),
           .word = "OReg",
           .frameNoun = tr("OPAC Circulation Policy"),
           .saveCaption = "Save OPAC Circulation Policy",
           .loadFailure = tr("Unable to load available Circ Desk."),
           .putOrder = {"P", "G"}},
          m_form);
}

void frmOPAC_CircPolicies::ReadRecord() {
    QList<PickItem> groups;
    for (const GridRow& row : ReadPairs(App().channel, "AI", "AN"))
        groups.append({row.key, row.cells.value(0)});
    m_form.cboDefaultGroup.SetItems(groups);
    SingleRecordScreen::ReadRecord();
}

bool frmOPAC_CircPolicies::CheckBeforeSave() {
    if (m_form.cboDefaultGroup.IsBlank()) {
        Tell(tr("Please select a Default Patron Group"));
        View().FocusField(m_form.cboDefaultGroup);
        return false;
    }
    return SingleRecordScreen::CheckBeforeSave();
}

} // namespace sysadmin

#include "moc_frmOPAC_CircPolicies.cpp"
