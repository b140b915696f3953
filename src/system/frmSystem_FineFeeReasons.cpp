#include "system/frmSystem_FineFeeReasons.h"

#include "core/Application.h"

namespace sysadmin {

namespace {

constexpr char SaveCaption[] = "Save System Fine Fee Reasons";
constexpr char DeleteCaption[] = "Edit Print Locations";

} // namespace

frmSystem_FineFeeReasons::frmSystem_FineFeeReasons(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_FineFeeReasons", tr("System Fine Fee Reasons"), Area::System,
                        parent) {
    AddTable({.subject = tr("Fine Fee Reason"),
              .word = "Fee",
              .gridName = "vsfFineFeeReasons",
              .tabCaption = tr("Fine/Fee &Reasons"),
              .boxOnLoadFailure = true,
              .wholeRows = true,
              .saveCaption = SaveCaption,
              .deleteCaption = DeleteCaption,
              .matchTag = "Cd"},
             m_reason);
    AddTable({.subject = tr("Payment Type"),
              .word = "Pmt",
              .gridName = "vsfPaymentTypes",
              .tabCaption = tr("&Payment Types"),
              .recordTag = "PId",
              .boxOnLoadFailure = true,
              .wholeRows = true,
              .listRequest = "LstFee",
              .saveCaption = SaveCaption,
              .deleteCaption = DeleteCaption,
              .matchTag = "PNm"},
             m_payment);
    AddTable({.subject = tr("Posting Type"),
              .word = "PstTp",
              .gridName = "vsfPostingTypes",
              .tabCaption = tr("P&osting Types"),
              .recordTag = "PstId",
              .boxOnLoadFailure = true,
              .wholeRows = true,
              .listRequest = "LstFee",
              .saveCaption = SaveCaption,
              .deleteCaption = DeleteCaption,
              .matchTag = "PstNm",
              // A posting type has no code that could be another one.
              .morePuts = {OnUpdate(PutConstant("NCd", "N"))}},
             m_posting,
             Below({m_posting.txtPostingName, Frame("fraUse", tr("Use Posting Type For:"),
                                                    {m_posting.chkFines, m_posting.chkDemerits})}));
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
    std::vector<QList<GridRow>> lists(Tables().size());
    QList<ListStep> steps;
    for (size_t i = 0; i < lists.size(); ++i)
        steps.append({Tables()[i].spec.recordTag,
                      [this, i, &lists](RequestChannel&) { lists[i].append(ReadRow(Tables()[i])); }});
    ReadList(App().channel,
             {.request = table.spec.listRequest,
              .form = table.spec.continuing ? ListForm::Continuing : ListForm::Strict,
              .report = [this, &table](qint16 result) { ReportLoadFailure(table, result); }},
             steps);
    for (size_t i = 0; i < lists.size(); ++i)
        Tables()[i].grid->SetRows(lists[i]);
}

QString frmSystem_FineFeeReasons::EditCaption(const Table& table, State state) const {
    // While nothing is open the frame is the same for all tabs.
    if (state == State::List)
        return IsReadOnly() ? tr("View Fine Fee Reasons") : tr("Edit Fine Fee Reasons");
    return MaintenanceScreen::EditCaption(table, state);
}

} // namespace sysadmin

#include "moc_frmSystem_FineFeeReasons.cpp"
