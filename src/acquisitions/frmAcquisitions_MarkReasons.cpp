#include "acquisitions/frmAcquisitions_MarkReasons.h"

#include "core/Application.h"
#include "framework/Utility.h"

namespace sysadmin {

frmAcquisitions_MarkReasons::frmAcquisitions_MarkReasons(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_MarkReasons", tr("Acquisitions Mark Reason"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Mark Reason"),
              .notice = "Mark",
              .columns = {{tr("Names")}},
              .cellTags = {"Nm"},
              .recordTag = "ID",
              .listRequest = "LstMark",
              .getRequest = "GetMark",
              .addRequest = "AddMark",
              .updateRequest = "UpdMark",
              .deleteRequest = "DelMark",
              .loadCaption = "Load Acquisitions Mark Reasons",
              .editCaption = "Edit Acquisitions Mark Reason",
              .saveCaption = "Save Acquisitions Mark Reason",
              .deleteCaption = "Delete Acquisitions Mark Reason"},
             m_form, Column({m_form.txtName, m_form.cboClaimType}),
             {OnUpdate(PutOriginalKey("ID")), PutValue(m_form.txtName), PutValue(m_form.cboClaimType),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

void frmAcquisitions_MarkReasons::BeforeLoad() {
    bool failed = false;
    const QList<PickItem> claimTypes = ReadPickItems("LstClm", "ID", "D", [&](qint16) { failed = true; });
    if (failed)
        ReportUnableToLoad(App(), this, tr("Available Mark Reasons"));
    else
        App().pickLists.Set("cboClaimType", claimTypes);
    Follow(m_form.cboClaimType, "cboClaimType", tr("(none)"));
}

} // namespace sysadmin
