#include "requests/frmCallSlip_Definitions.h"

#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"
#include "requests/CallSlipScreens.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

constexpr int DefaultColumn = 2;
const QString DefaultMark = "*";

QString MarkOf(const QString& flag) {
    return flag == u"Y" ? DefaultMark : QString();
}

} // namespace

CallSlipQueueForm::CallSlipQueueForm() {
    When([this] { return chkDefault.Stored() == u"Y"; }).Disable(chkDefault);
}

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
         .morePuts = {PutNewText("NCd", m_form.txtCode), PutNewText("NNm", m_form.txtName)},
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

GridRow frmCallSlip_Definitions::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    row.cells[DefaultColumn] = MarkOf(row.cells[DefaultColumn]);
    return row;
}

GridRow frmCallSlip_Definitions::RowFromForm(const Table& table, const QString& key) const {
    GridRow row = MaintenanceScreen::RowFromForm(table, key);
    row.cells[DefaultColumn] = MarkOf(m_form.chkDefault.Draft());
    return row;
}

// The first queue is the default one.
bool frmCallSlip_Definitions::PrepareNew(Table& table) {
    if (table.grid->Model().Rows().isEmpty())
        m_form.chkDefault.SetStored("Y");
    return MaintenanceScreen::PrepareNew(table);
}

void frmCallSlip_Definitions::AfterSave(Table& table, const GridRow& saved, bool) {
    if (saved.cells.value(DefaultColumn) != DefaultMark)
        return;
    QList<GridRow> unmarked;
    for (GridRow row : table.grid->Model().Rows())
        if (row.key != saved.key && row.cells[DefaultColumn] == DefaultMark) {
            row.cells[DefaultColumn].clear();
            unmarked.append(row);
        }
    table.grid->PutRows(unmarked);
}

} // namespace sysadmin
