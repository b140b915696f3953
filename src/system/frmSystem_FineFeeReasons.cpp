#include "system/frmSystem_FineFeeReasons.h"

#include "core/Application.h"
#include "framework/Utility.h"
#include "wire/Status.h"

namespace sysadmin {

namespace status = wire::status;

namespace {

constexpr char SaveCaption[] = "Save System Fine Fee Reasons";
constexpr char DeleteCaption[] = "Edit Print Locations";

} // namespace

frmSystem_FineFeeReasons::frmSystem_FineFeeReasons(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_FineFeeReasons", tr("System Fine Fee Reasons"), Area::System,
                        parent) {
    AddTable({.subject = tr("Fine Fee Reason"),
              .notice = "Fee",
              .gridName = "vsfFineFeeReasons",
              .tabCaption = tr("Fine/Fee &Reasons"),
              .columns = {{tr("Codes"), 120}, {tr("Names")}},
              .cellTags = {"Cd", "Nm"},
              .recordTag = "ID",
              .listRequest = "LstFee",
              .addRequest = "AddFee",
              .updateRequest = "UpdFee",
              .deleteRequest = "DelFee",
              .saveCaption = SaveCaption,
              .deleteCaption = DeleteCaption,
              .matchTag = "Cd"},
             m_reason, Column({m_reason.txtCode, m_reason.txtName}),
             {OnUpdate(PutOriginalKey("ID")), PutValue(m_reason.txtCode), PutValue(m_reason.txtName),
              OnUpdate(PutChanged("NCd", m_reason.txtCode)), OnUpdate(PutChanged("NNm", m_reason.txtName))});
    AddTable({.subject = tr("Payment Type"),
              .notice = "Pmt",
              .gridName = "vsfPaymentTypes",
              .tabCaption = tr("&Payment Types"),
              .columns = {{tr("Names")}},
              .cellTags = {"PNm"},
              .recordTag = "PId",
              .listRequest = "LstFee",
              .addRequest = "AddPmt",
              .updateRequest = "UpdPmt",
              .deleteRequest = "DelPmt",
              .saveCaption = SaveCaption,
              .deleteCaption = DeleteCaption,
              .matchTag = "PNm"},
             m_payment, Column({m_payment.txtPaymentName}),
             {OnUpdate(PutOriginalKey("PId")), PutValue(m_payment.txtPaymentName)});
    AddTable({.subject = tr("Posting Type"),
              .notice = "PstTp",
              .gridName = "vsfPostingTypes",
              .tabCaption = tr("P&osting Types"),
              .columns = {{tr("Names")},
                          {.caption = tr("Fines"), .hidden = true, .yesNo = true},
                          {.caption = tr("Demerits"), .hidden = true, .yesNo = true}},
              .cellTags = {"PstNm", "TF", "TD"},
              .recordTag = "PstId",
              .listRequest = "LstFee",
              .addRequest = "AddPstTp",
              .updateRequest = "UpdPstTp",
              .deleteRequest = "DelPstTp",
              .saveCaption = SaveCaption,
              .deleteCaption = DeleteCaption,
              .matchTag = "PstNm"},
             m_posting,
             Column({m_posting.txtPostingName, Frame("fraUse", tr("Use Posting Type For:"),
                                                     {m_posting.chkFines, m_posting.chkDemerits})}),
             // A posting type has no code that could be another one.
             {OnUpdate(PutOriginalKey("PstId")), PutValue(m_posting.txtPostingName),
              PutValue(m_posting.chkFines), PutValue(m_posting.chkDemerits),
              OnUpdate(PutConstant("NCd", "N")), OnUpdate(PutChanged("NNm", m_posting.txtPostingName))});
    Finish();
}

void frmSystem_FineFeeReasons::LoadScreen() {
    m_isOpening = true;
    MaintenanceScreen::LoadScreen();
    m_isOpening = false;
}

void frmSystem_FineFeeReasons::LoadList(Table& table) {
    // One reply holds all three lists; while the screen opens the first table's turn fills them all.
    if (m_isOpening && &table != &Tables().front())
        return;
    RequestChannel& channel = App().channel;
    std::vector<QList<GridRow>> lists(Tables().size());
    qint16 result = status::Ok;
    do {
        if (result == status::Continues)
            channel.PutField("55", "Y");
        result = channel.SendRequest("LstFee");
        if (result != status::Ok) {
            ReportUnableToLoad(App(), this, windowTitle());
            continue;
        }
        for (size_t i = 0; i < lists.size(); ++i)
            while (channel.NextRecord(Tables()[i].spec.recordTag))
                lists[i].append(ReadRow(Tables()[i]));
    } while (result == status::Continues);
    for (size_t i = 0; i < lists.size(); ++i)
        Tables()[i].grid->SetRows(lists[i]);
}

void frmSystem_FineFeeReasons::ReportSaveFailure(Table& table, qint16 result) {
    MaintenanceScreen::ReportSaveFailure(table, result);
    if (result != status::DuplicateName)
        return;
    for (const QString& name : {m_payment.txtPaymentName.Name(), m_posting.txtPostingName.Name()})
        if (const Field* field = table.form->Find(name))
            table.view->FocusField(*field);
}

QString frmSystem_FineFeeReasons::EditCaption(const Table& table, State state) const {
    // While nothing is open the frame is the same for all tabs.
    if (state == State::List)
        return IsReadOnly() ? tr("View Fine Fee Reasons") : tr("Edit Fine Fee Reasons");
    return MaintenanceScreen::EditCaption(table, state);
}

} // namespace sysadmin
