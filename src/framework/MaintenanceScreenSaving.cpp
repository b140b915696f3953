#include "framework/MaintenanceScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/ConflictCheck.h"
#include "framework/WaitDialog.h"
#include "framework/forms/RowsField.h"
#include "wire/Status.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

// How a maintenance screen saves; the rest of what it does is in MaintenanceScreen.cpp.
namespace sysadmin {

namespace status = wire::status;

namespace {

/// What a save that failed on its way has not stored, in front of the reason.
QString NotStored(const QList<SaveStep>& steps) {
    QStringList captions;
    for (const SaveStep& step : steps)
        for (const Field* field : step.fields)
            if (field->IsChanged())
                captions.append(field->PlainCaption());
    return MaintenanceScreen::tr("The record itself is stored, but not: %1.").arg(captions.join(", ")) +
           "\r\n\r\n";
}

} // namespace

bool MaintenanceScreen::CheckBeforeSave(Table& table) {
    if (!CheckForm(*table.form, *table.view))
        return false;
    if (const QStringList problems = ProblemsBeforeSave(table); !problems.isEmpty()) {
        Tell(problems.first());
        return false;
    }
    const std::optional<Box> question = QuestionBeforeSave(table);
    return !question || App().prompter.ShowBox(this, *question);
}

std::optional<Box> MaintenanceScreen::QuestionBeforeSave(Table&) {
    return std::nullopt;
}

void MaintenanceScreen::PutRecord(Table& table, const SaveContext& context) {
    for (const PutStep& put : table.puts)
        put(App().channel, context);
}

void MaintenanceScreen::ReportSaveFailure(Table& table, qint16 result) {
    if (const auto words = table.spec.saveWords.find(result); words != table.spec.saveWords.end()) {
        App().prompter.ShowBox(this,
                               {.text = words->text, .icon = Box::Icon::Exclamation, .title = words->title});
        return;
    }
    App().ReportRequestFailure(result, m_storeCaption.isEmpty() ? table.spec.saveCaption : m_storeCaption,
                               table.spec.subject);
    // What must be unique is where the operator goes on: "txtCode", "txtProfileCode".
    if (result != status::DuplicateCode && result != status::DuplicateName)
        return;
    const QString role = result == status::DuplicateCode ? "Code" : "Name";
    for (const Field* field : table.form->Fields())
        if (field->Spec().required && field->Name().endsWith(role))
            return table.view->FocusField(*field);
}

bool MaintenanceScreen::Save(bool stay) {
    Table& table = Current();
    if (m_state == State::EditingSeveral)
        return SaveSeveral(table);
    stay = stay || StaysOpen();
    table.form->LeaveFields();
    const bool isDone = CheckBeforeSave(table) && SendRecord(table) && SendSteps(table);
    LoadListAfterSave(table);
    if (!isDone)
        return false;

    const GridRow row = RowFromForm(table, m_context.originalKey);
    table.form->Accept();
    MoveDefaultMark(table, row);
    AfterSave(table, row, m_wasNew);
    const auto* text = dynamic_cast<ValueField*>(table.form->FindByTag(table.spec.pickTag));
    if (text && !row.key.isEmpty())
        App().pickLists.Put(table.spec.pickLists, {row.key, text->DisplayText()});
    Announce(table.spec.notice);
    if (stay && !row.key.isEmpty())
        SetState(State::Editing);
    else
        EndEdit();
    emit App().notices.Done(tr("Saved %1").arg(RecordText(table, row)));
    return !stay || !row.key.isEmpty();
}

bool MaintenanceScreen::StoreRecord(const QString& caption) {
    Table& table = Current();
    const QScopedValueRollback reported(m_storeCaption, caption);
    table.form->LeaveFields();
    const bool isDone = CheckBeforeSave(table) && SendRecord(table);
    LoadListAfterSave(table);
    if (!isDone)
        return false;
    Announce(table.spec.notice);
    SetState(State::Editing);
    return true;
}

// There is one default: the server took the mark from whichever record had it.
void MaintenanceScreen::MoveDefaultMark(Table& table, const GridRow& saved) {
    const FlagField* flag = table.spec.defaultFlag;
    if (!flag || !flag->IsOn())
        return;
    const QList<GridColumn>& columns = table.spec.columns;
    const auto column = std::find_if(columns.begin(), columns.end(), [&](const GridColumn& each) {
        return table.form->FindByColumn(each.tag) == flag;
    });
    QList<GridRow> unmarked;
    for (GridRow row : table.grid->Model().Rows())
        if (QString& mark = row.cells[column - columns.begin()]; row.key != saved.key && mark == u"Y") {
            mark = "N";
            unmarked.append(row);
        }
    table.grid->PutRows(unmarked);
}

void MaintenanceScreen::LoadListAfterSave(Table& table) {
    if (!std::exchange(m_listIsOld, false))
        return;
    LoadList(table);
    table.grid->SelectKey(m_context.originalKey);
}

// Some saves wait for another system: the server answers that it goes on, and is asked again.
std::optional<qint16> MaintenanceScreen::AskToStore(Table& table) {
    const auto send = [&](const QString& goesOn) {
        if (!table.spec.PlacesCluster())
            PutCluster(table);
        PutRecord(table, m_context);
        if (!goesOn.isEmpty())
            App().channel.PutField("55", goesOn);
        return App().channel.SendRequest(m_context.isNew ? table.spec.addRequest : table.spec.updateRequest);
    };
    return SendAndWait(App().prompter, this, windowTitle(), tr("The other system is being asked..."), send);
}

// What one step of the save stored is accepted at once: saved again after a failure, the save goes on with
// what is left, and with what was edited since.
bool MaintenanceScreen::SendRecord(Table& table) {
    QList<Field*> later;
    for (const SaveStep& step : table.spec.steps)
        later += step.fields;
    const auto isLeft = [&](const Field* field) { return !later.contains(field) && field->IsChanged(); };
    const QList<Field*>& fields = table.form->Fields();
    if (m_isStored && std::none_of(fields.begin(), fields.end(), isLeft))
        return true;
    if (!m_isStored)
        m_wasNew = m_context.isNew;
    table.form->Tidy(); // the list, the pick-lists and the search for the new record go by what is stored
    const std::optional<qint16> answered = AskToStore(table);
    if (!answered)
        return false;
    if (const qint16 result = *answered; result != status::Ok) {
        if (const auto conflict = ConflictOf(App().channel, result, table.spec.subject))
            return SettleSaveConflict(table, *conflict) && SendRecord(table);
        ReportSaveFailure(table, result);
        return false;
    }
    QString key = KeyAfterSave(table);
    if (key.isEmpty()) { // the server did not say under which id it keeps the record: ask for what it has
        LoadList(table);
        key = FindSaved(table);
        table.grid->SelectKey(key);
    } else if (table.spec.listAfterChange) {
        m_listIsOld = true; // once the whole record is stored, or what can be
    } else {
        table.grid->PutRow(RowFromForm(table, key), m_context.originalKey);
    }
    m_context = {.isNew = false, .originalKey = key};
    m_isStored = !table.spec.steps.isEmpty();
    for (Field* field : fields)
        if (m_isStored && !later.contains(field))
            field->Accept();
    return true;
}

bool MaintenanceScreen::SendSteps(Table& table) {
    for (const SaveStep& step : table.spec.steps) {
        if (std::none_of(step.fields.begin(), step.fields.end(),
                         [](const Field* field) { return field->IsChanged(); }))
            continue;
        if (m_context.originalKey.isEmpty()) { // a new record that the list does not show
            App().ReportRequestFailure(status::NotFound, step.caption, table.spec.subject);
            return true;
        }
        if (!step.keyTag.isEmpty())
            App().channel.PutField(step.keyTag, m_context.originalKey);
        for (const PutStep& put : step.puts)
            put(App().channel, m_context);
        for (const Field* field : step.puts.isEmpty() ? step.fields : QList<Field*>())
            field->Put(App().channel);
        if (const qint16 result = App().channel.SendRequest(step.request); result != status::Ok) {
            SetState(State::Editing);
            if (const auto conflict = ConflictOf(App().channel, result, table.spec.subject))
                return SettleSaveConflict(table, *conflict) && SendRecord(table) && SendSteps(table);
            App().ReportRequestFailure(result, step.caption, table.spec.subject, NotStored(table.spec.steps));
            return false;
        }
        for (Field* field : step.fields)
            field->Accept();
        m_listIsOld = table.spec.listAfterChange;
    }
    return true;
}

QStringList MaintenanceScreen::RecordsOfSeveral(const Table& table) const {
    const RowsField* records = table.spec.several.records;
    if (!records)
        return table.grid->SelectedKeys();
    QStringList keys;
    for (const GridRow& row : records->Rows())
        if (row.cells.value(0) == u"Y")
            keys.append(row.key);
    return keys;
}

// The list is read anew, so that the request does what was meant when it is sent again.
bool MaintenanceScreen::TellSeveralChanged(Table& table, qint16 result, const QString& keyTag,
                                           const QString& outcome, const QString& wayOn) {
    if (result != status::RecordChanged)
        return false;
    const QString changed = ChangedByOthers(App().channel, keyTag, [&](const QString& key) {
        const GridRow* row = table.grid->Model().FindRow(key);
        return row ? DeleteItemText(table, *row) : key;
    });
    Tell(outcome + ' ' + changed + "\r\n\r\n" + tr("The list shows them as they are now.") + ' ' + wayOn);
    const QStringList keys = table.grid->SelectedKeys();
    LoadList(table);
    table.grid->SelectKeys(keys);
    return true;
}

bool MaintenanceScreen::SaveSeveral(Table& table) {
    const SeveralSpec& spec = table.spec.several;
    spec.form->LeaveFields();
    if (!CheckForm(*spec.form, *table.severalView))
        return false;
    PutCluster(table);
    for (const QString& key : RecordsOfSeveral(table))
        App().channel.PutField(spec.keyTag, key);
    for (const PutStep& put : spec.puts)
        put(App().channel, {});
    for (const Field* field : spec.form->Chosen())
        field->Put(App().channel);
    const qint16 result = App().channel.SendRequest(spec.request);
    if (TellSeveralChanged(table, result, spec.keyTag, tr("Nothing was saved."),
                           tr("Save again to change them all the same.")))
        return false;
    const bool anyFailed = TellFailures(spec.failedTag, spec.problemTag);
    if (!anyFailed && result != status::Ok) {
        App().ReportRequestFailure(result, spec.saveCaption, table.spec.subject);
        return false;
    }
    Announce(table.spec.notice);
    const qsizetype count = RecordsOfSeveral(table).size();
    EndEdit();
    LoadList(table);
    if (!anyFailed)
        emit App().notices.Done(count == 1 ? tr("Saved 1 record") : tr("Saved %1 records").arg(count));
    return true;
}

QString MaintenanceScreen::KeyAfterSave(const Table& table) const {
    const TableSpec& spec = table.spec;
    const auto draftOf = [&](const QString& tag) {
        const auto* value = dynamic_cast<ValueField*>(table.form->FindByTag(tag));
        return value ? value->Draft() : QString();
    };
    if (const QString key = draftOf(spec.recordTag); !key.isEmpty())
        return key; // the code itself is the key
    if (!m_context.isNew)
        return m_context.originalKey;
    RequestChannel& channel = App().channel;
    if (!spec.addedTag.isEmpty())
        return channel.GetField(spec.addedTag);
    while (channel.NextRecord(spec.recordTag))
        if (spec.matchTag.isEmpty() || channel.GetField(spec.matchTag) == draftOf(spec.matchTag))
            return channel.GetField(spec.recordTag);
    return {};
}

// The key of the list's record that reads like the one in the form: in the column by which new records are
// found, else in the first one; of several that one which reads so in all columns.
QString MaintenanceScreen::FindSaved(const Table& table) const {
    const QList<GridColumn>& columns = table.spec.columns;
    const GridRow saved = RowFromForm(table, {});
    qsizetype place = -1;
    for (qsizetype i = 0; i < columns.size(); ++i)
        if (columns[i].tag == table.spec.matchTag || (place < 0 && !columns[i].hidden && !columns[i].yesNo))
            place = i;
    QStringList keys;
    for (const GridRow& row : table.grid->Model().Rows())
        if (row.cells.value(place).trimmed() == saved.cells.value(place).trimmed()) {
            if (row.cells == saved.cells)
                return row.key;
            keys << row.key;
        }
    return keys.size() == 1 ? keys.first() : QString();
}

GridRow MaintenanceScreen::RowFromForm(const Table& table, const QString& key) const {
    GridRow row{key, {}, {}};
    const GridRow* before = table.grid->SelectedRow();
    for (qsizetype i = 0; i < table.spec.columns.size(); ++i) {
        const GridColumn& column = table.spec.columns[i];
        if (const auto* value = dynamic_cast<ValueField*>(table.form->FindByColumn(column.tag)))
            row.cells.Own().append(value->IsBlank() ? QString() // not "(none)"
                                   : column.dateFormat.isEmpty() && column.items.isEmpty()
                                       ? value->DisplayText()
                                       : value->Draft());
        else
            row.cells.Own().append(before && before->key == key ? before->cells.value(i) : QString());
    }
    return row;
}

} // namespace sysadmin
