#include "circulation/frmClusterMaintenance.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "core/data/YesNo.h"
#include "framework/ClusterSelection.h"
#include "framework/forms/Rules.h"
#include "wire/Status.h"

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

namespace {

/// The cells behind code and name: whether policies, patrons and calendars exist for the cluster.
constexpr int FirstInUseCell = 2;

PutStep PutDesks(const CheckedField& desks) {
    return [&desks](RequestChannel& channel, const SaveContext&) {
        for (const CheckedItem& desk : desks.Items()) {
            channel.PutField("CPGID", desk.data);
            channel.PutField("CLOCID", desk.id);
            channel.PutField("COPCDF", BoolToYN(desk.checked));
        }
    };
}

} // namespace

ClusterForm::ClusterForm() {
    // A new cluster has neither until circulation policy groups belong to it.
    When([this] { return !lstOpacCircDesk.Items().isEmpty(); }).Enable(lstOpacCircDesk);
    When([this] { return !lstDefPULoc.Items().isEmpty(); }).Enable(lstDefPULoc);
}

frmClusterMaintenance::frmClusterMaintenance(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmClusterMaintenance", tr("Cluster Maintenance"), Area::Circulation,
                        parent) {
    AddTable({.subject = tr("Circ Cluster"),
              .notice = "Cluster",
              .columns = {{.caption = tr("Codes"), .width = 120, .tag = "CCD"},
                          {.caption = tr("Name"), .tag = "CNM"},
                          {.caption = tr("Policies"), .width = 64, .hidden = true, .tag = "PolExstClu"},
                          {.caption = tr("Patrons"), .width = 64, .hidden = true, .tag = "PatExstClu"},
                          {.caption = tr("Calendars"), .width = 39, .hidden = true, .tag = "CalExstClu"}},
              .recordTag = "CID",
              .listRequest = "GetClusterList",
              .getRequest = "GetCluster",
              .addRequest = "AddCluster",
              .updateRequest = "UpdCluster",
              .deleteRequest = "DelCluster",
              .loadCaption = "Load Circ Clusters",
              .editCaption = "Edit Circ Cluster",
              .saveCaption = "Save Circ Cluster",
              .deleteCaption = "Delete Circ Cluster",
              .matchTag = "CCD",
              // The whole program follows the save of a cluster.
              .takesMany = false},
             m_form,
             Below({m_form.txtCode, m_form.txtName, m_form.lstOpacCircDesk, m_form.lstDefPULoc,
                    m_form.chkBlockLocalTrans}),
             {OnUpdate(PutOriginalKey("CID")), PutValue(m_form.txtCode), PutValue(m_form.txtName),
              PutDesks(m_form.lstOpacCircDesk), PutValue(m_form.lstDefPULoc),
              PutValue(m_form.chkBlockLocalTrans)});
    Finish();
}

void frmClusterMaintenance::BeforeLoad() {
    RequestChannel& channel = App().channel;
    channel.PutField("SOI", App().OperatorId());
    const qint16 result = channel.SendRequest("GetClusterSecurity");
    if (result != status::Ok) {
        App().ReportRequestFailure(result, "Retrieving Cluster Security", Tables().front().spec.subject);
        SetRights(false, false, false);
        return;
    }
    const bool viewOnly = channel.GetFlag("CluViewOnly");
    m_mayEdit = !viewOnly && channel.GetFlag("CluEdit");
    const bool mayCreate = !viewOnly && channel.GetFlag("CluCreate");
    const bool mayDelete = !viewOnly && channel.GetFlag("CluDelete");
    // Whoever may make or delete clusters only is not offered to edit them; whoever may do neither views
    // them.
    SetRights(mayCreate, m_mayEdit, mayDelete, !mayCreate && !mayDelete);
}

void frmClusterMaintenance::PutListKey(const Table&) {
    App().channel.PutField("OI", App().OperatorId());
}

void frmClusterMaintenance::ReportLoadFailure(Table& table, qint16 result) {
    if (result == status::NoClusterLocation)
        ReportNoCluster(App(), this);
    else
        MaintenanceScreen::ReportLoadFailure(table, result);
}

void frmClusterMaintenance::ReadRecord(Table& table) {
    MaintenanceScreen::ReadRecord(table);
    RequestChannel& channel = App().channel;
    const QString defaultLocation = channel.GetField("CPL");
    QList<CheckedItem> desks;
    while (channel.NextRecord("CPGID"))
        desks.append({channel.GetField("CLOCID"), channel.GetField("CLOCNM"), channel.GetFlag("COPCDF"),
                      channel.GetField("CPGID")});
    m_form.lstOpacCircDesk.SetStoredItems(desks);
    QList<PickItem> locations;
    while (channel.NextRecord("CPLID"))
        locations.append({channel.GetField("CPLID"), channel.GetField("CPLNm")});
    if (!locations.isEmpty() || !defaultLocation.isEmpty())
        locations.prepend({"", tr("(none)")});
    m_form.lstDefPULoc.SetItems(locations);
    m_form.lstDefPULoc.SetStored(defaultLocation);
}

bool frmClusterMaintenance::CheckBeforeSave(Table& table) {
    if (!MaintenanceScreen::CheckBeforeSave(table))
        return false;
    const QList<CheckedItem>& desks = m_form.lstOpacCircDesk.Items();
    if (std::count_if(desks.begin(), desks.end(), [](const CheckedItem& desk) { return desk.checked; }) <= 1)
        return true;
    Tell(tr("A cluster has one OPAC circ desk. Please uncheck the others."));
    table.view->FocusField(m_form.lstOpacCircDesk);
    return false;
}

void frmClusterMaintenance::AfterSave(Table& table, const GridRow& row, bool) {
    const GridRow* kept = table.grid->Model().FindRow(row.key);
    for (const GridRow& other : table.grid->Model().Rows()) // the list was read anew: found by its code
        if (!kept && other.cells.value(0) == row.cells[0])
            kept = &other;
    if (!kept)
        return;
    table.grid->SelectKey(kept->key);
    clsCluster cluster;
    cluster.sClusterID = kept->key;
    cluster.sClusterCD = row.cells[0];
    cluster.sClusterName = row.cells[1];
    cluster.sInUsePULoc = m_form.lstDefPULoc.Draft();
    if (App().clusters.Count() > 0) // else nobody has asked for the operator's clusters yet
        App().clusters.Put(cluster);
    emit App().notices.CurrentClusterChanged();
}

bool frmClusterMaintenance::ConfirmRowDelete(Table& table, const GridRow& row) {
    if (!row.cells.Texts().mid(FirstInUseCell).contains("Y"))
        return MaintenanceScreen::ConfirmRowDelete(table, row);
    App().prompter.ShowBox(this, {.text = tr("Circ Cluster in use.  "), .title = tr("Cannot delete.")});
    return false;
}

void frmClusterMaintenance::AfterDelete(Table&, const GridRow& row) {
    App().clusters.Remove(row.key);
    emit App().notices.CurrentClusterChanged();
}

QString frmClusterMaintenance::EditCaption(const Table& table, State state) const {
    return m_mayEdit || state == State::EditingNew ? MaintenanceScreen::EditCaption(table, state)
                                                   : tr("View Cluster Information:");
}

} // namespace sysadmin

#include "moc_frmClusterMaintenance.cpp"
