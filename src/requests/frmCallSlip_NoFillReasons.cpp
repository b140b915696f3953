#include "requests/frmCallSlip_NoFillReasons.h"

#include "requests/CallSlipScreens.h"

namespace sysadmin {

frmCallSlip_NoFillReasons::frmCallSlip_NoFillReasons(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCallSlip_NoFillReasons", tr("Call Slip No Fill Reason"),
                        Area::System, parent) {
    AddTable({.subject = tr("No-Fill Reason"),
              .word = "NFR",
              .plural = "Call Slip No-Fill Reasons",
              .recordTag = "I",
              .editCaption = "Edit Call Slip No-Fill Reason",
              .saveCaption = "Save Call Slip No-Fill Reason",
              .nameTag = "D",
              .morePuts = {OnUpdate(PutDraft("NCd", m_form.txtCode)),
                           OnUpdate(PutDraft("NNm", m_form.txtDescription))},
              .putOrder = {"D", "C", "S", "I", "NCd", "NNm"}},
             m_form);
    Finish();
}

} // namespace sysadmin

#include "moc_frmCallSlip_NoFillReasons.cpp"
