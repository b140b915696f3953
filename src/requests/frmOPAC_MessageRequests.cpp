#include "requests/frmOPAC_MessageRequests.h"

namespace sysadmin {

frmOPAC_MessageRequests::frmOPAC_MessageRequests(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmOPAC_MessageRequests", tr("OPAC Call Slip Request Messages"),
                        Area::System, parent) {
    AddTable({.subject = tr("Call Slip Request Message"),
              .word = "CSMsg",
              .plural = "Call Slip No-Fill Reasons",
              .editCaption = "Edit Call Slip No-Fill Reason",
              .saveCaption = "Save Call Slip No-Fill Reason",
              .deleteCaption = "Delete Call Slip No-Fill Reason"},
             m_form, Below({}),
             {PutValue(m_form.txtName), PutValue(m_form.txtCode), PutValue(m_form.chkSuspension),
              OnUpdate(PutOriginalKey("ID")), OnUpdate(PutDraft("NCd", m_form.txtCode)),
              OnUpdate(PutDraft("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin

#include "moc_frmOPAC_MessageRequests.cpp"
