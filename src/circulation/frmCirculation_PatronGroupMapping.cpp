#include "circulation/frmCirculation_PatronGroupMapping.h"

#include "core/Application.h"
#include "framework/Captions.h"
#include "wire/Status.h"

#include <QPushButton>

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

const QString PatronGroupMappingForm::Blank = "-1";
const QString PatronGroupMappingForm::Manual = "manual";

namespace {

enum RemoteCell { RemoteShown, RemoteName, RemoteCluster };
enum DatabaseCell { DatabaseCode, DatabaseName, DatabaseId, DatabaseType, DatabaseUb };

/// Names are the same in spite of letter case and of what is added behind a comma or in brackets.
QString Stem(const QString& name) {
    const auto end = std::find_if(name.begin(), name.end(), [](QChar c) { return c == ',' || c == '('; });
    return name.left(end - name.begin()).trimmed().toCaseFolded();
}

} // namespace

PatronGroupMappingForm::PatronGroupMappingForm()
    : vsfLocalGroups(*this, {.name = "vsfLocalGroups", .accessible = tr("Local patron groups")},
                     {{.caption = tr("Local Patron Groups")}, {.caption = tr("Suggestion"), .width = 180}},
                     {.several = true})
    , vsfRemoteGroups(*this, {.name = "vsfRemoteGroups", .accessible = tr("Remote patron groups")},
                      {{.caption = tr("Remote Patron Groups")}}) {
    vsfLocalGroups.Behaviour().shown = {
        {LocalName,
         [this](const GridRow& row) {
             return QString(row.cells[LocalName] + " - " + RemoteText(row.cells[Target]));
         }},
        {Suggestion,
         [this](const GridRow& row) { // there is one group of that name: its cluster needs no room
             const GridRow* remote =
                 row.cells[Target] == Blank ? vsfRemoteGroups.FindRow(row.cells[Suggestion]) : nullptr;
             return remote ? remote->cells[RemoteName] : QString();
         }}};
}

QString PatronGroupMappingForm::RemoteText(const QString& key) const {
    const GridRow* remote = vsfRemoteGroups.FindRow(key);
    return remote ? remote->cells[RemoteShown] : key;
}

// Only what nobody can doubt is suggested: one group of that name, or else of the name without additions.
QString PatronGroupMappingForm::SuggestionFor(const QString& name) const {
    const auto only = [&](const auto& isSame) {
        QStringList keys;
        for (const GridRow& remote : vsfRemoteGroups.Rows())
            if (remote.key != Blank && remote.key != Manual && isSame(remote.cells[RemoteName]))
                keys << remote.key;
        return keys.size() == 1 ? keys.first() : QString();
    };
    const QString whole = name.trimmed().toCaseFolded();
    const QString same = only([&](const QString& other) { return other.trimmed().toCaseFolded() == whole; });
    return same.isEmpty() ? only([&](const QString& other) { return Stem(other) == Stem(name); }) : same;
}

void PatronGroupMappingForm::Take(QList<GridRow> local, const QList<GridRow>& remote) {
    vsfRemoteGroups.SetStoredRows(
        QList<GridRow>{{Blank, {tr("Blank"), {}, {}}, {}}, {Manual, {tr("<Manual Map>"), {}, {}}, {}}} +
        remote);
    for (GridRow& row : local)
        row.cells[Suggestion] = SuggestionFor(row.cells[LocalName]);
    std::stable_sort(local.begin(), local.end(), [](const GridRow& a, const GridRow& b) {
        return a.cells[Target] == Blank && b.cells[Target] != Blank;
    });
    vsfLocalGroups.SetStoredRows(local);
}

void PatronGroupMappingForm::Map(const QStringList& localKeys, const QString& remoteKey) {
    const GridRow* remote = vsfRemoteGroups.FindRow(remoteKey);
    QList<GridRow> rows;
    for (const QString& key : localKeys)
        if (const GridRow* row = vsfLocalGroups.FindRow(key); row && remote) {
            rows.append(*row);
            rows.last().cells[Target] = remoteKey;
            rows.last().cells[TargetCluster] = remote->cells[RemoteCluster];
        }
    if (!rows.isEmpty())
        vsfLocalGroups.PutRows(rows);
}

void PatronGroupMappingForm::MapSuggested() {
    for (const GridRow& row : QList<GridRow>(vsfLocalGroups.Rows()))
        if (row.cells[Target] == Blank && !row.cells[Suggestion].isEmpty())
            Map({row.key}, row.cells[Suggestion]);
}

frmCirculation_PatronGroupMapping::frmCirculation_PatronGroupMapping(Application& application,
                                                                     QWidget* parent)
    : MaintenanceScreen(application, "frmCirculation_PatronGroupMapping", tr("Patron Group Mapping"),
                        Area::Circulation, parent) {
    AddTable(
        {.subject = tr("Patron Group Mapping"),
         .notice = "Map",
         .columns = {{.caption = tr("Codes"), .width = 110, .tag = "C"},
                     {.caption = tr("Database Names"), .tag = "Nm"},
                     {.caption = tr("Id"), .width = 50, .tag = "DBI"},
                     {.caption = tr("Type"), .width = 80, .tag = "Pr"},
                     {.caption = tr("UB"), .hidden = true, .tag = "DBU"}},
         .recordTag = "DBI",
         .listRequest = "LstDBMap",
         .getRequest = "LstRPatGp",
         .updateRequest = "UpdMap",
         .getKeyTag = "SI",
         .loadCaption = "Load Patron Group Mapping Database List",
         .editCaption = "Get Remote Patron Group List",
         .saveCaption = "Save Patron Group Mapping",
         .takesMany = false}, // a record is a set of lists
        m_form,
        // Below each other: both names of a mapping are long.
        Below({m_form.vsfLocalGroups,
               Beside(
                   {Button("cmdAssign", tr("A&ssign"), [this] { Assign(SelectedRemote()); }),
                    Button("cmdUnassign", tr("&Unassign"), [this] { Assign(PatronGroupMappingForm::Blank); }),
                    Button("cmdSuggestions", tr("Assign Su&ggestions"), [this] { m_form.MapSuggested(); })}),
               m_form.vsfRemoteGroups}));
    Finish();
    SetRights(false, application.profile.MayEdit(Area::Circulation), false);
    findChild<QPushButton*>("cmdNew")->hide(); // the list is of the search databases
    m_save = findChild<QPushButton*>("cmdSave");
    m_cancel = findChild<QPushButton*>("cmdCancel");
    RefreshOwnControls();
}

void frmCirculation_PatronGroupMapping::PutCurrentCluster() {
    const clsCluster* cluster = App().clusters.Current();
    App().channel.PutField("CID", cluster ? cluster->sClusterID : QString());
}

void frmCirculation_PatronGroupMapping::PutListKey(const Table&) {
    App().channel.PutField("C", "Y");
}

// The operator was asked before about an open edit.
void frmCirculation_PatronGroupMapping::OnClusterChanged() {
    EndEdit();
    LoadList(Current());
}

bool frmCirculation_PatronGroupMapping::MayClose() {
    return !HasUnsaved() || MaintenanceScreen::MayClose();
}

GridRow frmCirculation_PatronGroupMapping::ReadRow(const Table& table) {
    GridRow row = MaintenanceScreen::ReadRow(table);
    row.cells[DatabaseType] = row.cells[DatabaseCode] == u"LOCAL" ? QString("LOCAL")
                              : row.cells[DatabaseType] == u"V"   ? QString("Tessary")
                                                                  : QString("Z39.50");
    return row;
}

bool frmCirculation_PatronGroupMapping::FillForm(Table& table, const GridRow& database) {
    RequestChannel& channel = App().channel;
    m_isSaved = false;
    const auto report = [this, &table](const QString& caption) {
        return [this, &table, caption](qint16 result) {
            App().ReportRequestFailure(result, caption, table.spec.subject);
        };
    };
    QList<GridRow> local;
    QList<GridRow> remote;
    const auto readLocal = [&](RequestChannel&) {
        local.append({channel.GetField("ID"),
                      {channel.GetField("Nm"), QString(), PatronGroupMappingForm::Blank, QString()},
                      {}});
    };
    const auto readMapping = [&](RequestChannel&) {
        for (GridRow& row : local)
            if (row.key == channel.GetField("UBLPGI")) {
                row.cells[PatronGroupMappingForm::Target] =
                    channel.GetFlag("UbMm") ? PatronGroupMappingForm::Manual : channel.GetField("UBMGI");
                row.cells[PatronGroupMappingForm::TargetCluster] = channel.GetField("CID");
            }
    };
    const auto readRemote = [&](RequestChannel&) {
        const QString name = channel.GetField("UBRPGN");
        remote.append({channel.GetField("UBRPGI"),
                       {channel.GetField("CNM") + " - " + name, name, channel.GetField("CID")},
                       {}});
    };
    const bool isRead = ReadList(channel,
                                 {.request = "LstPatGp",
                                  .putKey =
                                      [this](RequestChannel& c) {
                                          PutCurrentCluster();
                                          c.PutField("DBU", "N");
                                      },
                                  .report = report("Get Patron Group List")},
                                 {{"ID", readLocal}}) == status::Ok &&
                        ReadList(channel,
                                 {.request = table.spec.getRequest,
                                  .putKey =
                                      [&](RequestChannel& c) {
                                          PutCurrentCluster();
                                          c.PutField("C", "Y");
                                          c.PutField("DBU", database.cells.value(DatabaseUb));
                                          c.PutField(table.spec.getKeyTag, database.key);
                                      },
                                  .report = report(table.spec.editCaption)},
                                 {{"UBLPGI", readMapping}, {"UBRPGI", readRemote}}) == status::Ok;
    m_form.Take(local, remote);
    return isRead;
}

// A request names one cluster of the other library; what is stored of a save counts as stored at once.
bool frmCirculation_PatronGroupMapping::SendRecord(Table& table) {
    RequestChannel& channel = App().channel;
    QStringList clusters;
    QList<GridRow> changed;
    for (const auto& [row, state] : m_form.vsfLocalGroups.Changes())
        if (state == RowState::Changed) {
            changed.append(row);
            if (const QString& cluster = row.cells[PatronGroupMappingForm::TargetCluster];
                !clusters.contains(cluster))
                clusters << cluster;
        }
    clusters.removeAll(QString());
    if (clusters.isEmpty())
        clusters << QString();
    for (const QString& cluster : clusters) {
        bool isAny = false;
        for (const GridRow& row : changed) {
            const QString& own = row.cells[PatronGroupMappingForm::TargetCluster];
            if (own != cluster && !(own.isEmpty() && cluster == clusters.first()))
                continue;
            const QString& target = row.cells[PatronGroupMappingForm::Target];
            const bool isManual = target == PatronGroupMappingForm::Manual;
            channel.PutField("UBLPGI", row.key);
            channel.PutField("UbMm", isManual ? "Y" : "N");
            channel.PutField("UBMGI", isManual ? PatronGroupMappingForm::Blank : target);
            isAny = true;
        }
        if (!isAny)
            continue;
        channel.PutField("RCID", cluster);
        PutCurrentCluster();
        channel.PutField("DBI", Saving().originalKey);
        const qint16 result = channel.SendRequest(table.spec.updateRequest);
        if (result == status::RecordChanged) {
            TellChangedByOthers(table, changed);
            return false;
        }
        if (result != status::Ok) {
            ReportSaveFailure(table, result);
            return false;
        }
    }
    return true;
}

// What was assigned stays, on top of what is stored now.
void frmCirculation_PatronGroupMapping::TellChangedByOthers(Table& table, const QList<GridRow>& changed) {
    QStringList names;
    while (App().channel.NextRecord("UBLPGI"))
        if (const GridRow* row = m_form.vsfLocalGroups.FindRow(App().channel.GetField("UBLPGI")))
            names << row->cells[PatronGroupMappingForm::LocalName] + " (" + App().channel.GetField("ChBy") +
                         ")";
    Tell(tr("Nothing was saved, since others have changed these patron groups or their mappings meanwhile:") +
         "\r\n\r\n" + names.join("\r\n") + "\r\n\r\n" +
         tr("Your mappings are still here; save them again if they are to hold."));
    const GridRow* database = table.grid->SelectedRow();
    if (!database || !FillForm(table, GridRow(*database)))
        return;
    for (const GridRow& row : changed)
        m_form.Map({row.key}, row.cells[PatronGroupMappingForm::Target]);
}

void frmCirculation_PatronGroupMapping::AfterSave(Table&, const GridRow&, bool) {
    m_isSaved = true;
}

void frmCirculation_PatronGroupMapping::RefreshOwnControls() {
    if (!m_save)
        return;
    const QString caption = m_isSaved && !m_form.IsChanged() ? tr("&Close") : tr("&Cancel");
    m_cancel->setText(caption);
    SetDeclaredCaption(*m_cancel, caption);
    m_save->setEnabled(m_save->isEnabled() && m_form.IsChanged());
}

void frmCirculation_PatronGroupMapping::Assign(const QString& remoteKey) {
    m_form.Map(findChild<ListGrid*>("vsfLocalGroups")->SelectedKeys(), remoteKey);
}

QString frmCirculation_PatronGroupMapping::SelectedRemote() const {
    return findChild<ListGrid*>("vsfRemoteGroups")->SelectedKey();
}

} // namespace sysadmin

#include "moc_frmCirculation_PatronGroupMapping.cpp"
