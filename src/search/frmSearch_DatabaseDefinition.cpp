#include "search/frmSearch_DatabaseDefinition.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/WaitDialog.h"
#include "search/frmSearch_DatabaseTest.h"
#include "search/frmSearch_DatabaseTestAll.h"
#include "wire/SearchDatabases.h"
#include "wire/Status.h"

#include <QPushButton>
#include <QTabWidget>

namespace sysadmin {

namespace {

constexpr int DatabaseTypeColumn = 2;
constexpr int CachePage = 4;
const QString RefreshCaption = "Refresh Cluster Cache";

Layout Services(const DatabaseForm& form) {
    QList<Layout> frames;
    for (const auto& service : form.services)
        frames.append(
            Frame("fra" + service->role, service->caption, {Beside({service->address, service->port})}));
    return Flow(2, frames);
}

} // namespace

frmSearch_DatabaseDefinition::frmSearch_DatabaseDefinition(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSearch_DatabaseDefinition", tr("Search Database Definition"),
                        Area::System, parent) {
    const auto isStoredLibrary = [this] {
        return !IsReadOnly() && !m_databaseId.isEmpty() && !m_form.IsTarget();
    };
    AddTable({.subject = tr("Search Database Definition"),
              .word = "DB",
              .plural = "Search Database Definitions",
              .recordTag = "C",
              .availableRequest = "AvlDB",
              .loadCaption = "Load Database Definitions",
              .editCaption = "Load Database Definitions",
              .saveCaption = "Search Database Definitions",
              .namesRecord = true,
              .nameTag = "C"},
             m_form,
             Tabs("tabDatabase",
                  {Page(tr("Data&base"),
                        {m_form.txtCode, m_form.txtName, m_form.cboType,
                         Beside({m_form.chkPublicUse, m_form.chkUB}), m_form.txtKey, Services(m_form)}),
                   Page(tr("Defini&tions"), {m_form.txtDatabaseName, m_form.txtUserID, m_form.txtPassword,
                                             m_form.txtWeight, m_form.txtMaxHit, m_form.txtTimeout,
                                             Beside({m_form.chkOPACSuppress, m_form.chkStaffSuppress}),
                                             m_form.cboHoldingsHook, m_form.cboCharSet}),
                   Page(tr("A&ttributes"), {m_form.vsfAttributes}),
                   Page(tr("Access Co&ntrol"), {m_form.accessGroups}),
                   Page(tr("Remote Cl&uster Cache"),
                        {m_form.vsfRemoteClusters, Button(
                                                       "cmdRefresh", tr("&Refresh Cache"),
                                                       [this] { RefreshCache(); }, isStoredLibrary)})}),
             m_form.Puts());
    m_cmdTest = MakeButton("cmdTestConnection", tr("Test Connection..."));
    connect(m_cmdTest, &QPushButton::clicked, this, &frmSearch_DatabaseDefinition::TestConnection);
    AddListButton(m_cmdTest);
    m_cmdTestAll = MakeButton("cmdTestAll", tr("Test All..."));
    connect(m_cmdTestAll, &QPushButton::clicked, this, &frmSearch_DatabaseDefinition::TestAll);
    AddListButton(m_cmdTestAll);
    Finish();
    ReloadOn({"Hook"}, [this] { LoadChoices(m_form, Current().spec.loadCaption, Current().spec.subject); });
    m_tabs = findChild<QTabWidget*>("tabDatabase");
    connect(m_tabs, &QTabWidget::currentChanged, this, &frmSearch_DatabaseDefinition::ReadCache);
}

GridRow frmSearch_DatabaseDefinition::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    row.cells[DatabaseTypeColumn] = DatabaseTypeText(row.cells[DatabaseTypeColumn]);
    return row;
}

GridRow frmSearch_DatabaseDefinition::RowFromForm(const Table& table, const QString& key) const {
    GridRow row = MaintenanceScreen::RowFromForm(table, key);
    row.cells[DatabaseTypeColumn] = DatabaseTypeText(m_form.cboType.Draft());
    return row;
}

void frmSearch_DatabaseDefinition::ReadRecord(Table& table) {
    m_databaseId = App().channel.GetField("DBI");
    m_cacheRead = false;
    MaintenanceScreen::ReadRecord(table);
}

bool frmSearch_DatabaseDefinition::PrepareNew(Table& table) {
    m_databaseId.clear();
    m_cacheRead = false;
    return MaintenanceScreen::PrepareNew(table);
}

bool frmSearch_DatabaseDefinition::MayDeleteRow(const GridRow& row) const {
    return row.key != wire::databases::LocalCode;
}

void frmSearch_DatabaseDefinition::RefreshOwnControls() {
    const bool isList = GetState() == State::List;
    const ListGrid& grid = *Current().grid;
    m_cmdTest->setEnabled(isList && !IsReadOnly() && grid.SelectedRow() && MayDeleteRow(*grid.SelectedRow()));
    m_cmdTestAll->setEnabled(isList && !IsReadOnly() && grid.Model().Rows().size() > 1);
}

/// Reads what is stored of the other library's clusters once the page is looked at.
void frmSearch_DatabaseDefinition::ReadCache() {
    if (m_tabs->currentIndex() != CachePage || m_cacheRead || m_databaseId.isEmpty() ||
        GetState() == State::List)
        return;
    if (m_form.IsTarget())
        return;
    RequestChannel& channel = App().channel;
    channel.PutField("DBI", m_databaseId);
    channel.PutField("CRFSH", "N");
    if (const qint16 result = channel.SendRequest("RefreshClusterCache"); result != wire::status::Ok) {
        App().ReportRequestFailure(result, RefreshCaption, Current().spec.subject);
        return;
    }
    m_cacheRead = true;
    ShowClusters();
}

void frmSearch_DatabaseDefinition::RefreshCache() {
    RequestChannel& channel = App().channel;
    const auto send = [&](const QString& goesOn) {
        channel.PutField("DBI", m_databaseId);
        channel.PutField("CRFSH", "Y");
        if (!goesOn.isEmpty())
            channel.PutField("55", goesOn);
        return channel.SendRequest("RefreshClusterCache");
    };
    const auto result = SendAndWait(App().prompter, this, tr("Remote Cluster Cache"),
                                    tr("The other library is being asked..."), send);
    if (!result)
        return;
    if (*result != wire::status::Ok) {
        App().ReportRequestFailure(*result, RefreshCaption, Current().spec.subject);
        return;
    }
    const ConnectionResult answer = ConnectionResult::Read(channel);
    m_cacheRead = true;
    ShowClusters();
    if (answer.IsConnected()) {
        Announce("RemoteClusters");
        return;
    }
    if (!answer.AsksForTrust()) {
        Tell(answer.Sentence() + ' ' + tr("What was stored before stays."));
        return;
    }
    if (!App().prompter.ShowBox(this, {.text = answer.TrustQuestion(),
                                       .icon = Box::Icon::Question,
                                       .buttons = Box::Buttons::YesNo,
                                       .careful = true}))
        return;
    if (const qint16 failure = SendTrust(channel, m_form.txtCode.Stored(), answer.fingerprint); failure != 0)
        App().ReportRequestFailure(failure, RefreshCaption, Current().spec.subject);
    else
        RefreshCache();
}

/// Shows the clusters of the reply.
void frmSearch_DatabaseDefinition::ShowClusters() {
    RequestChannel& channel = App().channel;
    QList<GridRow> rows;
    while (channel.NextRecord("CID"))
        rows.append({channel.GetField("CID"), {channel.GetField("CNM")}, {}});
    if (rows.isEmpty())
        rows.append({"0", {tr("No clusters found in cache.")}, {}});
    m_form.vsfRemoteClusters.SetStoredRows(rows);
}

void frmSearch_DatabaseDefinition::TestConnection() {
    const GridRow* selected = Current().grid->SelectedRow();
    if (!selected)
        return;
    const GridRow row = *selected;
    if (!AskForRecord(Current(), row.key, Current().spec.loadCaption))
        return;
    RequestChannel& channel = App().channel;
    const bool isTarget = channel.GetField("Pr") == wire::databases::TargetType;
    QList<PickItem> searchCodes;
    while (channel.NextRecord("ASC")) {
        const QString code = channel.GetField("ASC");
        const QString description = channel.GetField("AD");
        searchCodes.append({code, description.isEmpty() ? code : code + " - " + description});
    }
    frmSearch_DatabaseTest dialog(App(), row.key, row.cells.value(1), searchCodes, isTarget, this);
    App().prompter.RunDialog(dialog);
}

void frmSearch_DatabaseDefinition::TestAll() {
    QList<GridRow> rows;
    for (const GridRow& row : Current().grid->Model().Rows())
        if (MayDeleteRow(row))
            rows.append(row);
    frmSearch_DatabaseTestAll dialog(App(), rows, this);
    App().prompter.RunDialog(dialog);
}

} // namespace sysadmin

#include "moc_frmSearch_DatabaseDefinition.cpp"
