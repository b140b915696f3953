#include "requests/frmOPAC_MessageRequests.h"

#include "core/data/RequestChannel.h"

namespace sysadmin {

namespace {

/// The tag by which updates carry a field's new value once more.
PutStep PutAlso(const QString& tag, const ValueField& field) {
    return OnUpdate(
        {[tag, &field](RequestChannel& channel, const SaveContext&) { channel.PutField(tag, field.Draft()); },
         tag});
}

} // namespace

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
              OnUpdate(PutOriginalKey("ID")), PutAlso("NCd", m_form.txtCode),
              PutAlso("NNm", m_form.txtName)});
    Finish();
}

} // namespace sysadmin
