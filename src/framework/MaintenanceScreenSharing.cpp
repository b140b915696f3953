#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/ConflictCheck.h"
#include "framework/MaintenanceScreen.h"
#include "framework/Utility.h"
#include "wire/Status.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>

#include <utility>

// How a maintenance screen lives with what others change at the same time.
namespace sysadmin {

void MaintenanceScreen::OnChangedByOthers(const QString& subject) {
    for (const Table& table : m_tables)
        if (table.spec.notice == subject || SubjectOf(table.spec.listRequest) == subject)
            m_changedByOthers = true;
    if (m_changedByOthers && m_state == State::List)
        ReloadLists();
    else
        m_lblChanged->setVisible(m_changedByOthers);
}

void MaintenanceScreen::ReloadOn(const QStringList& subjects, const std::function<void()>& reload) {
    m_reloads.push_back({subjects, reload});
}

void MaintenanceScreen::MarkOld(const QString& subject) {
    for (Reload& reload : m_reloads)
        reload.isDue = reload.isDue || reload.subjects.contains(subject);
    ReloadOld();
}

// Under an open edit nothing changes: what it was begun with is what it ends with.
void MaintenanceScreen::ReloadOld() {
    if (m_state != State::List)
        return;
    for (Reload& reload : m_reloads)
        if (std::exchange(reload.isDue, false))
            reload.read();
}

void MaintenanceScreen::ShowCluster() {
    const clsCluster* cluster = App().clusters.Current();
    m_lblCluster->setText(tr("Circ Cluster:  ") + (cluster ? cluster->sClusterName : QString()));
}

// The operator was asked before about an open edit.
void MaintenanceScreen::OnClusterChanged() {
    if (!m_lblCluster)
        return;
    ShowCluster();
    EndEdit();
    for (Table& table : m_tables)
        LoadList(table);
}

void MaintenanceScreen::ReloadLists() {
    if (m_state != State::List || m_tables.empty())
        return;
    m_changedByOthers = false;
    m_lblChanged->hide();
    for (Table& table : m_tables)
        ReloadRows(table);
    RefreshButtons();
}

void MaintenanceScreen::ReloadRows(Table& table) {
    const QStringList keys = table.grid->SelectedKeys();
    const QString filter = table.grid->FilterBox()->text();
    const int scrolled = table.grid->verticalScrollBar()->value();
    LoadList(table);
    table.grid->FilterBox()->setText(filter);
    if (!keys.isEmpty()) {
        table.grid->SelectKeys(keys);
        if (table.grid->SelectedCount() == 0 && table.grid->Model().rowCount() > 0)
            table.grid->SelectKey(table.grid->Model().RowAt(0).key);
    }
    table.grid->verticalScrollBar()->setValue(scrolled);
}

bool MaintenanceScreen::ReadTheirs(Table& table) {
    if (!table.spec.getRequest.isEmpty()) {
        const GridRow* row = table.grid->SelectedRow();
        return FillForm(table, {m_context.originalKey, row ? row->cells : QStringList(), {}});
    }
    // The row is the record: the list has it as it is now.
    ReloadRows(table);
    const GridRow* row = table.grid->SelectKey(m_context.originalKey) ? table.grid->SelectedRow() : nullptr;
    if (row)
        return FillForm(table, GridRow(*row));
    App().ReportRequestFailure(wire::status::NotFound, table.spec.saveCaption, table.spec.subject);
    return false;
}

// True: the operator's version is to be sent again.
bool MaintenanceScreen::SettleSaveConflict(Table& table, const Conflict& conflict) {
    const bool canSave = !conflict.removed || (m_mayCreate && !table.spec.addRequest.isEmpty());
    switch (SettleSave(App(), this, conflict, *table.form, canSave, [&] { return ReadTheirs(table); })) {
    case ConflictAnswer::SaveMine:
        if (conflict.removed) {
            table.grid->RemoveRow(m_context.originalKey);
            table.form->BecomeNew();
            m_context = {.isNew = true, .originalKey = {}};
            m_isStored = false;
            SetState(State::EditingNew);
        }
        return true;
    case ConflictAnswer::KeepTheirs:
        m_changedByOthers = true;
        EndEdit();
        break;
    case ConflictAnswer::BackToEditing:
        RefreshOwnControls();
        break;
    }
    return false;
}

void MaintenanceScreen::SettleDeleteConflict(Table& table, const Conflict& conflict, const GridRow& row) {
    ReloadRows(table);
    RefreshButtons();
    if (conflict.removed) {
        App().prompter.ShowBox(this, {.text = tr("%1 has deleted this record already.").arg(conflict.by),
                                      .icon = Box::Icon::Information});
        return;
    }
    const GridRow* now = table.grid->SelectKey(row.key) ? table.grid->SelectedRow() : nullptr;
    if (!now)
        return;
    const GridRow current = *now;
    if (SettleDelete(App(), this, conflict, table.spec.columns, row, current) == ConflictAnswer::SaveMine)
        SendDelete(current);
}

} // namespace sysadmin
