#include "acquisitions/frmAcquisitions_FundTypes.h"

namespace sysadmin {

frmAcquisitions_FundTypes::frmAcquisitions_FundTypes(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmAcquisitions_FundTypes", tr("Acquisitions Fund Type"),
                        Area::Acquisitions, parent) {
    AddTable({.subject = tr("Fund Type"),
              .notice = "FndTp",
              .columns = {{.caption = tr("Names"), .tag = "Nm"}},
              .recordTag = "ID",
              .listRequest = "LstFndTp",
              .getRequest = "GetFndTp",
              .addRequest = "AddFndTp",
              .updateRequest = "UpdFndTp",
              .deleteRequest = "DelFndTp",
              .loadCaption = "Load Acquisitions Fund Types",
              .editCaption = "Edit Acquisitions Fund Type",
              .saveCaption = "Save Acquisitions Fund Type",
              .deleteCaption = "Delete Acquisitions Fund Type",
              .matchTag = "Nm"},
             m_form,
             Below({m_form.txtName, Beside({m_form.chkOverCommitWarning, m_form.txtOvercommitWarningPercent}),
                    Beside({m_form.chkOverexpendWarning, m_form.txtOverexpendWarningPercent}),
                    Beside({m_form.chkOverCommitLimit, m_form.txtOvercommitLimitPercent}),
                    Beside({m_form.chkOverexpendLimit, m_form.txtOverexpendLimitPercent}),
                    Beside({m_form.chkUndercommit, m_form.txtUnderCommitPercent}),
                    Beside({m_form.chkUnderexpend, m_form.txtUnderexpendPercent})}),
             {OnUpdate(PutOriginalKey("ID")), PutValue(m_form.txtName),
              PutWhenOn(m_form.chkOverCommitWarning, m_form.txtOvercommitWarningPercent),
              PutWhenOn(m_form.chkOverexpendWarning, m_form.txtOverexpendWarningPercent),
              PutWhenOn(m_form.chkOverCommitLimit, m_form.txtOvercommitLimitPercent),
              PutWhenOn(m_form.chkOverexpendLimit, m_form.txtOverexpendLimitPercent),
              PutWhenOn(m_form.chkUndercommit, m_form.txtUnderCommitPercent),
              PutWhenOn(m_form.chkUnderexpend, m_form.txtUnderexpendPercent),
              OnUpdate(PutChanged("NNm", m_form.txtName))});
    Finish();
}

} // namespace sysadmin

#include "moc_frmAcquisitions_FundTypes.cpp"
