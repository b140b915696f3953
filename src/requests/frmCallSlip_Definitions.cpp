#include "requests/frmCallSlip_Definitions.h"

#include "requests/CallSlipScreens.h"
#include "wire/Status.h"

namespace sysadmin {

FieldSpec CallSlipQueueForm::UnitSpec(const QString& name, const QString& tag, const QString& accessible) {
    return {.name = name,
            .tag = tag,
            .initial = "D",
            .accessible = accessible,
            .options = {{"D", tr("Days")}, {"H", tr("Hours")}, {"M", tr("Minutes")}}};
}

frmCallSlip_Definitions::frmCallSlip_Definitions(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCallSlip_Definitions", tr("Call Slip Queues"), Area::System,
                        parent) {
    const QString cannot = tr("Cannot Delete Call Slip Queue");
    AddTable(
        {.subject = tr("Call Slip Queue"),
         .word = "CSl",
         .plural = "Call Slip Definitions",
         .deleteWords = {{wire::status::InUse,
                          {tr("This queue cannot be deleted because a call slip rule uses it."), cannot}},
                         {wire::status::DefaultRecord,
                          {tr("This queue cannot be deleted because it is the default.\r\n"
                              "Make another queue the default first."),
                           cannot}}},
         .pickLists = {QueueList},
         .pickTag = "N",
         .defaultFlag = &m_form.chkDefault,
         .morePuts = {OnUpdate(PutDraft("NCd", m_form.txtCode)), OnUpdate(PutDraft("NNm", m_form.txtName))},
         .putOrder = {"N", "C", "D", "PI", "CR", "RR", "P", "EP", "AP", "AI", "EI", "L", "I", "ID", "NCd",
                      "NNm"}},
        m_form,
        Below({m_form.txtCode, m_form.txtName, m_form.chkDefault, m_form.chkPatronInfo,
               m_form.chkCatalogReview, m_form.chkCircReview,
               Frame("fraProcessing", tr("Processing Code"), {m_form.optProcessing}),
               Beside({m_form.txtExpire, m_form.cboExpireUnit}),
               Beside({m_form.txtArchive, m_form.cboArchiveUnit}), m_form.cboLocation, m_form.cboItemType}));
    Finish();
}

} // namespace sysadmin

#include "moc_frmCallSlip_Definitions.cpp"
