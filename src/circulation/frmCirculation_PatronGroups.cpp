#include "circulation/frmCirculation_PatronGroups.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Utility.h"
#include "wire/Status.h"

namespace sysadmin {

PatronGroupForm::PatronGroupForm()
    : vsfItemTypes(*this, {.name = "vsfItemTypes", .accessible = tr("Limits for item types")},
                   {{.caption = tr("Item Type")},
                    {.caption = tr("Current Limit"), .width = 110},
                    {.caption = tr("New Limit"), .width = 110}},
                   {.edits = {{NewLimit, {.kind = CellEdit::Kind::Number, .most = wire::MostCount}}}}) {}

frmCirculation_PatronGroups::frmCirculation_PatronGroups(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_PatronGroups", tr("Circulation Patron Groups"),
                        Area::PatronGroups, parent) {
    AddTable(
        {.subject = tr("Patron Group"),
         .word = "PatGp",
         .clusterTag = "CID",
         .loadCaption = "Load Circulation Patron Groups",
         .editCaption = "Edit Print Locations",
         .saveCaption = "Save ",
         .deleteCaption = "Save ",
         .morePuts = {OnUpdate(PutDraft("NCd", m_form.txtCode)), OnUpdate(PutDraft("NNm", m_form.txtName)),
                      OnUpdate(PutDraft("NuD", m_form.txtDisplayName))},
         .putOrder = {"Nm", "Cd", "Dsp", "MaxDem", "SusDays", "DemAply", "ChrgdStatDsply", "PatChrgLmt",
                      "PatChrgLmtAply", "CID", "ID"}},
        m_form,
        Tabs("tabPatronGroup",
             {Page(tr("&Patron Group"),
                   {m_form.txtCode, m_form.txtName, m_form.txtDisplayName,
                    Frame("fraDemerits", tr("Demerits"),
                          {m_form.chkDemeritsApply, m_form.txtMaxDemerits, m_form.txtSuspensionDays}),
                    m_form.chkOPACMessages, Beside({m_form.chkChargeLimit, m_form.txtChargeLimit})}),
              Page(tr("&Item Types"),
                   {Frame("fraItemTypes", tr("Global Charged items limit for these item types"),
                          {m_form.vsfItemTypes})})}));
    Finish();
    const auto follow = [this](const QString& subject) {
        if (subject == u"CrMsc")
            AskDemerits();
    };
    connect(&application.notices, &Notices::SubjectChanged, this, follow);
    connect(&application.notices, &Notices::ChangedByOthers, this, follow);
}

void frmCirculation_PatronGroups::BeforeLoad() {
    AskDemerits();
}

// A failure is not told: the fields stay locked.
void frmCirculation_PatronGroups::AskDemerits() {
    const bool areUsed =
        App().channel.SendRequest("GetDemerits") == wire::status::Ok && App().channel.GetFlag("DemAply");
    for (Field* field :
         QList<Field*>{&m_form.chkDemeritsApply, &m_form.txtMaxDemerits, &m_form.txtSuspensionDays})
        field->SetUsable(areUsed);
}

bool frmCirculation_PatronGroups::FillForm(Table& table, const GridRow& row) {
    return MaintenanceScreen::FillForm(table, row) && ReadLimits(row.key);
}

bool frmCirculation_PatronGroups::PrepareNew(Table&) {
    return ReadLimits({});
}

bool frmCirculation_PatronGroups::ReadLimits(const QString& key) {
    QList<GridRow> rows;
    m_limits.clear();
    const auto read = [&](RequestChannel& channel) {
        const QString limit = channel.GetField("PatChrgLmt");
        const QString type = channel.GetField("ITMTYPID");
        m_limits.insert(type, limit);
        rows.append({type, {channel.GetField("Nm"), limit, limit}, {}});
    };
    const qint16 result =
        ReadList(App().channel,
                 {.request = "LstPatItmGpTp",
                  .putKey = [&](RequestChannel& channel) { channel.PutField("ID", key); },
                  .report = [this](qint16) { ReportUnableToLoad(App(), this, windowTitle()); }},
                 {{"PATITMID", read}});
    m_form.vsfItemTypes.SetStoredRows(rows);
    return result == wire::status::Ok;
}

std::optional<Box> frmCirculation_PatronGroups::QuestionBeforeSave(Table&) {
    if (!m_form.chkOPACMessages.IsOn())
        return std::nullopt;
    return Box{.text = tr("Displaying the OPAC Message for items charged to patrons in this group makes\r\n"
                          "it possible to display the patron first name and last name in the public "
                          "catalog. \r\n\r\n"
                          "You should only do this if all patrons in this group are adminstrative "
                          "patrons,\r\n"
                          "rather than borrowing patrons. \r\n\r\n"
                          "Are you sure you want to do this?"),
               .icon = Box::Icon::Question,
               .buttons = Box::Buttons::YesNo,
               .title = tr("Displaying OPAC Message"),
               .careful = true};
}

// What was stored counts as stored at once, so that a save after a failure goes on with the rest.
bool frmCirculation_PatronGroups::SendSteps(Table& table) {
    if (!MaintenanceScreen::SendSteps(table))
        return false;
    const QList<GridRow> rows = m_form.vsfItemTypes.Rows();
    for (GridRow row : rows) {
        const QString& limit = row.cells[PatronGroupForm::NewLimit];
        QString& stored = m_limits[row.key];
        if (limit == stored)
            continue;
        const bool isNew = stored.isEmpty();
        App().channel.PutField("ID", Saving().originalKey);
        App().channel.PutField("ITMTYPID", row.key);
        App().channel.PutField("PatChrgLmt", limit);
        if (const qint16 result = App().channel.SendRequest(isNew ? "AddPatItmGpTp" : "UpdPatItmGpTp");
            result != wire::status::Ok) {
            SetState(State::Editing);
            App().ReportRequestFailure(result, table.spec.saveCaption, table.spec.subject,
                                       tr("The record itself is stored, but not all limits for item types.") +
                                           "\r\n\r\n");
            return false;
        }
        stored = limit;
        row.cells[PatronGroupForm::CurrentLimit] = limit;
        m_form.vsfItemTypes.PutRow(row);
    }
    return true;
}

} // namespace sysadmin

#include "moc_frmCirculation_PatronGroups.cpp"
