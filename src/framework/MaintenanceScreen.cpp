#include "framework/MaintenanceScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/ConflictCheck.h"
#include "framework/RowSummary.h"
#include "framework/Utility.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/RowsField.h"
#include "wire/Status.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedLayout>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>

namespace sysadmin {

namespace status = wire::status;

void MaintenanceScreen::SetRights(bool mayCreate, bool mayEdit, bool mayDelete, bool mayView) {
    m_mayView = mayView;
    m_mayCreate = mayCreate;
    m_mayEdit = mayEdit;
    m_mayDelete = mayDelete;
}

void MaintenanceScreen::LoadScreen() {
    BeforeLoad();
    m_readOnly = !m_mayCreate && !m_mayEdit && !m_mayDelete;
    if (m_readOnly) {
        m_cmdNew->hide();
        m_cmdDelete->hide();
        m_cmdSave->hide();
    }
    if (!m_mayEdit && m_mayView) {
        m_cmdEdit->setText(tr("Vi&ew"));
        SetDeclaredCaption(*m_cmdEdit, tr("Vi&ew"));
    }
    for (const Table& table : m_tables)
        LoadChoices(*table.form, table.spec.loadCaption, table.spec.subject);
    for (Table& table : m_tables)
        table.form->Clear();
    for (Table& table : m_tables)
        LoadList(table);
    SetState(State::List);
    Current().grid->setFocus();
}

void MaintenanceScreen::LoadList(Table& table) {
    const TableSpec& spec = table.spec;
    QList<GridRow> rows;
    ReadList(App().channel,
             {.request = spec.listRequest,
              .form = spec.continuing ? ListForm::Continuing : ListForm::Strict,
              .putKey = [&](RequestChannel&) { PutListKey(table); },
              .report = [&](qint16 result) { ReportLoadFailure(table, result); }},
             {{spec.recordTag, [&](RequestChannel&) { rows.append(ReadRow(table)); }}});
    table.grid->SetRows(rows);
}

void MaintenanceScreen::ReportLoadFailure(Table& table, qint16 result) {
    if (table.spec.boxOnLoadFailure)
        ReportUnableToLoad(App(), this, windowTitle());
    else
        App().ReportRequestFailure(result, table.spec.loadCaption, table.spec.subject);
}

void MaintenanceScreen::PutListKey(const Table& table) {
    PutCluster(table);
}

void MaintenanceScreen::PutCluster(const Table& table) {
    const clsCluster* cluster = App().clusters.Current();
    if (!table.spec.clusterTag.isEmpty())
        App().channel.PutField(table.spec.clusterTag, cluster ? cluster->sClusterID : QString());
}

GridRow MaintenanceScreen::ReadRow(const Table& table) {
    return {App().channel.GetField(table.spec.recordTag), App().channel.GetRecord(table.cellTags), {}};
}

bool MaintenanceScreen::FillForm(Table& table, const GridRow& row) {
    const TableSpec& spec = table.spec;
    if (spec.getRequest.isEmpty()) {
        for (qsizetype i = 0; i < spec.columns.size(); ++i)
            if (auto* field = dynamic_cast<ValueField*>(table.form->FindByTag(spec.columns[i].tag)))
                field->SetStored(row.cells.value(i));
        return true;
    }
    if (!AskForRecord(table, row.key, spec.editCaption))
        return false;
    ReadRecord(table);
    return true;
}

bool MaintenanceScreen::AskForRecord(const Table& table, const QString& key, const QString& caption) {
    const TableSpec& spec = table.spec;
    return ReadList(
               App().channel,
               {.request = spec.getRequest,
                .putKey =
                    [&](RequestChannel& channel) {
                        channel.PutField(spec.getKeyTag, key);
                        PutCluster(table);
                    },
                .report = [&](qint16 result) { App().ReportRequestFailure(result, caption, spec.subject); }},
               {}) == status::Ok;
}

void MaintenanceScreen::ReadRecord(Table& table) {
    table.form->Load(App().channel);
}

QString MaintenanceScreen::RecordText(const Table& table, const GridRow& row) const {
    for (qsizetype i = 0; i < table.spec.columns.size(); ++i)
        if (table.spec.columns[i].tag == table.spec.nameTag && !row.cells.value(i).isEmpty())
            return ShownText(table.spec.columns[i], row.cells[i]);
    return DeleteItemText(table, row);
}

QString MaintenanceScreen::DeleteItemText(const Table& table, const GridRow& row) const {
    QString kind; // what a record was chosen to be names it only where it has no text of its own
    for (qsizetype i = 0; i < table.spec.columns.size(); ++i) {
        const GridColumn& column = table.spec.columns[i];
        if (column.hidden || column.yesNo || row.cells.value(i).isEmpty())
            continue;
        if (column.items.isEmpty())
            return ShownText(column, row.cells[i]);
        if (kind.isEmpty())
            kind = ShownText(column, row.cells[i]);
    }
    return kind.isEmpty() ? row.key : kind;
}

bool MaintenanceScreen::ConfirmRowDelete(Table& table, const GridRow& row) {
    return ConfirmDelete(App(), this, table.spec.subject, DeleteItemText(table, row));
}

QString MaintenanceScreen::EditCaption(const Table& table, State state) const {
    if (state == State::EditingSeveral)
        return table.spec.several.caption;
    if (state == State::List && !table.spec.frameIdle.isEmpty())
        return table.spec.frameIdle;
    const QString verb = m_mayEdit || state == State::EditingNew
                             ? (state == State::EditingNew ? tr("New ") : tr("Edit "))
                             : tr("View ");
    const auto* name = dynamic_cast<ValueField*>(table.form->FindByTag(table.spec.nameTag));
    const bool names = table.spec.namesRecord && state != State::List && name && !name->IsBlank();
    return verb + (names ? name->Stored().trimmed() : table.spec.frameNoun) + ":";
}

void MaintenanceScreen::StartNew() {
    Table& table = Current();
    table.form->Clear();
    m_context = {.isNew = true, .originalKey = {}};
    m_isStored = false;
    if (!PrepareNew(table))
        return;
    SetState(State::EditingNew);
    table.view->FocusFirst();
}

bool MaintenanceScreen::PrepareNew(Table& table) {
    if (table.spec.defaultFlag && table.grid->Model().Rows().isEmpty())
        table.spec.defaultFlag->SetStored("Y");
    if (table.spec.availableRequest.isEmpty())
        return true;
    if (const qint16 result = App().channel.SendRequest(table.spec.availableRequest); result != status::Ok)
        return GoOnWithoutAvailable(table, result);
    ReadAvailable(table);
    return true;
}

bool MaintenanceScreen::GoOnWithoutAvailable(Table&, qint16) {
    ReportUnableToLoad(App(), this, windowTitle());
    return false;
}

void MaintenanceScreen::ReadAvailable(Table& table) {
    for (Field* field : table.form->Fields())
        if (auto* picked = dynamic_cast<PickedField*>(field))
            picked->Load(App().channel);
}

void MaintenanceScreen::StartCopy() {
    Table& table = Current();
    const GridRow* row = table.grid->SelectedRow();
    if (!row)
        return;
    table.form->Clear();
    if (!FillForm(table, GridRow(*row)))
        return;
    table.form->BecomeNew();
    m_context = {.isNew = true, .originalKey = {}};
    m_isStored = false;
    SetState(State::EditingNew);
    table.view->FocusFirst();
}

void MaintenanceScreen::StartEdit() {
    Table& table = Current();
    const GridRow* row = table.grid->SelectedRow();
    if (!row)
        return;
    table.form->Clear();
    m_context = {.isNew = false, .originalKey = row->key};
    m_isStored = false;
    if (!FillForm(table, GridRow(*row))) {
        table.form->Clear();
        return;
    }
    SetState(m_mayEdit ? State::Editing : State::Viewing);
    if (m_mayEdit)
        table.view->FocusFirst();
    else
        m_cmdCancel->setFocus();
}

void MaintenanceScreen::StartSeveral() {
    Table& table = Current();
    if (table.grid->SelectedKeys().isEmpty())
        return;
    Form& form = *table.spec.several.form;
    form.Clear();
    form.SetSeveral(!table.spec.several.records); // nothing is chosen yet
    BeforeSeveral(table);
    SetState(State::EditingSeveral);
    table.severalView->FocusFirst();
}

void MaintenanceScreen::EndEdit() {
    if (m_state == State::List)
        return;
    Current().form->Clear();
    SetState(State::List);
    Current().grid->setFocus();
}

void MaintenanceScreen::DeleteSelected() {
    Table& table = Current();
    const GridRow* selected = table.grid->SelectedRow();
    const QStringList keys = table.grid->SelectedKeys();
    if (keys.size() > 1 && !table.spec.deleteSeveralRequest.isEmpty())
        return DeleteSeveral(table, keys);
    if (!selected)
        return;
    const GridRow row = *selected;
    if (ConfirmRowDelete(table, row))
        SendDelete(row);
}

// What could be deleted is gone even where some could not.
void MaintenanceScreen::DeleteSeveral(Table& table, const QStringList& keys) {
    QStringList names;
    for (const GridRow& row : table.grid->Model().Rows())
        if (keys.contains(row.key))
            names.append(DeleteItemText(table, row));
    if (!ConfirmDelete(App(), this, table.spec.subject, names.join("\r\n")))
        return;
    for (const QString& key : keys)
        App().channel.PutField(table.spec.getKeyTag, key);
    const qint16 result = App().channel.SendRequest(table.spec.deleteSeveralRequest);
    if (TellSeveralChanged(table, result, table.spec.getKeyTag, tr("Nothing was deleted."),
                           tr("Delete again to delete them all the same.")))
        return;
    const bool anyFailed = TellFailures(table.spec.several.failedTag, table.spec.several.problemTag);
    if (!anyFailed && result != status::Ok)
        return App().ReportRequestFailure(result, table.spec.deleteCaption, table.spec.subject);
    Announce(table.spec.notice);
    LoadList(table);
    RefreshButtons();
    if (!anyFailed)
        emit App().notices.Done(tr("Deleted %1 records").arg(keys.size()));
}

void MaintenanceScreen::SendDelete(const GridRow& row) {
    Table& table = Current();
    if (table.spec.clusterOnDelete)
        PutCluster(table);
    App().channel.PutField(table.spec.getKeyTag, row.key);
    const qint16 result = App().channel.SendRequest(table.spec.deleteRequest);
    const bool isThere = result != status::NotFound;
    const Box::More uses{isThere ? tr("&Where Used...") : QString(), [&] { return ShowUses(table, row); }};
    if (const auto words = table.spec.deleteWords.find(result); words != table.spec.deleteWords.end()) {
        App().prompter.ShowBox(
            this, {.text = words->text, .icon = Box::Icon::None, .title = words->title, .more = uses});
        return;
    }
    if (const auto conflict = ConflictOf(App().channel, result, table.spec.subject)) {
        SettleDeleteConflict(table, *conflict, row);
        return;
    }
    if (result != status::Ok) {
        App().ReportRequestFailure(result, table.spec.deleteCaption, table.spec.subject, {}, uses);
        return;
    }
    table.grid->RemoveRow(row.key);
    if (table.spec.listAfterChange) {
        const QString neighbour = table.grid->SelectedKey();
        LoadList(table);
        table.grid->SelectKey(neighbour);
    }
    AfterDelete(table, row);
    App().pickLists.Remove(table.spec.pickLists, row.key);
    Announce(table.spec.notice);
    RefreshButtons();
    emit App().notices.Done(tr("Deleted %1").arg(RecordText(table, row)));
}

void MaintenanceScreen::SetState(State state) {
    m_state = state;
    const bool editing = state != State::List;
    Table& table = Current();
    QList<QWidget*> listSide{m_cmdNew, m_cmdEdit, m_cmdDelete, table.grid, table.grid->FilterBox()};
    if (editing)
        m_views->setCurrentIndex(table.viewPage + (state == State::EditingSeveral ? 1 : 0));
    else
        m_views->setCurrentWidget(m_summary);
    if (m_tabs)
        listSide.append(m_tabs->tabBar());
    for (Table& each : m_tables)
        for (FormView* view : {each.view, each.severalView})
            if (view)
                view->SetReadOnly(state == State::Viewing || m_readOnly);
    m_fraEdit->setTitle(EditCaption(table, state));
    SetEditMode(editing, listSide, {m_fraEdit});
    m_cmdSave->setDefault(editing);
    RefreshButtons();
    // Later: whoever ends an edit goes on with the list as it is.
    if (!editing && m_changedByOthers)
        QTimer::singleShot(0, this, &MaintenanceScreen::ReloadLists);
}

void MaintenanceScreen::RefreshButtons() {
    if (!m_summary || m_readsMany)
        return; // not built yet
    Table& table = Current();
    const bool inList = m_state == State::List;
    const GridRow* row = table.grid->SelectedRow();
    m_cmdNew->setEnabled(inList && m_mayCreate);
    m_cmdEdit->setEnabled(inList && row && (m_mayEdit || m_mayView));
    m_cmdDelete->setEnabled(inList && row && m_mayDelete && !table.spec.deleteRequest.isEmpty() &&
                            MayDeleteRow(*row));
    RefreshListButtons();
    if (inList)
        ShowSummary();
    const Form* several = m_state == State::EditingSeveral ? table.spec.several.form : nullptr;
    const bool anyChosen = several && (table.spec.several.records ? !RecordsOfSeveral(table).isEmpty()
                                                                  : !several->Chosen().isEmpty());
    m_cmdSave->setEnabled(several ? several->IsComplete() && anyChosen
                                  : IsEditing() && table.form->IsComplete());
    m_cmdHistory->setVisible((m_state == State::Editing || m_state == State::Viewing) && RecordNow());
    ShowMissing(several ? several : IsEditing() ? table.form : nullptr);
    emit UnsavedChanged();
    RefreshOwnControls();
    ReloadOld();
}

bool MaintenanceScreen::HasUnsaved() const {
    const Table& table = Current();
    if (m_state != State::EditingSeveral)
        return IsEditing() && table.form->IsChanged();
    const SeveralSpec& several = table.spec.several;
    return several.records ? several.form->IsChanged() : !several.form->Chosen().isEmpty();
}

void MaintenanceScreen::ShowTable(int index) {
    m_current = index;
    SetState(State::List);
}

bool MaintenanceScreen::MayClose() {
    if (!IsEditing())
        return true;
    WarnEditInProgress(App(), this);
    return false;
}

} // namespace sysadmin

#include "moc_MaintenanceScreen.cpp"
