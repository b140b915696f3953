#include "core/Application.h"
#include "framework/FormDialog.h"
#include "framework/ImportFile.h"
#include "framework/MaintenanceScreen.h"
#include "framework/ManyFields.h"
#include "framework/ManyRecords.h"

#include <QFile>
#include <QGuiApplication>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

// How a maintenance screen changes and imports many records at once. Every record goes through the form and
// the checks by which it would be saved alone, and the server gets what it would get then.
namespace sysadmin {

namespace {

constexpr int ChangeTopic = 50109;
constexpr int ImportTopic = 50110;

/// Asks which fields are written; closes when `preview` has saved them.
class ChangeDialog : public FormDialog {
public:
    ChangeDialog(Prompter& prompter, CommonForm& form, const Layout& layout, const FormDialogSpec& spec,
                 const std::function<bool(QDialog&)>& preview, QWidget* parent)
        : FormDialog(prompter, form, layout, spec, parent)
        , m_preview(preview) {
        const QSize wanted = View().sizeHint();
        static_cast<QVBoxLayout*>(this->layout())->insertWidget(0, View().InScrollArea(this), 1);
        constexpr QSize Least(480, 160);
        constexpr QSize Most(900, 560);
        constexpr QSize Around(56, 90);
        resize((wanted + Around).expandedTo(Least).boundedTo(Most));
    }

    void done(int result) override {
        if (result != Accepted || m_preview(*this))
            FormDialog::done(result);
    }

private:
    std::function<bool(QDialog&)> m_preview;
};

QList<const Field*> AsFields(const QList<ValueField*>& fields) {
    return {fields.begin(), fields.end()};
}

QList<QStringList> WordsOf(const Form& form) {
    QList<QStringList> words;
    for (const Field* field : form.Fields())
        words.append(field->Words());
    return words;
}

QString FoldedKey(const QString& text) {
    return text.trimmed().toCaseFolded();
}

/// What columns of a file can be about: fields of the form, and what only says which record is meant.
QList<ImportTarget> TargetsOf(const TableDeclaration& table) {
    const QList<GridColumn>& columns = table.spec.columns;
    const QList<ValueField*> fields = PlainFields(*table.form, table.spec);
    const QStringList titles = FieldTitles(AsFields(fields), table.layout);
    QList<const Field*> exported; // see "Export All Fields"
    for (const Field* field : table.form->Fields())
        if (!field->Name().isEmpty() && field->GetKind() != Field::Kind::Password)
            exported.append(field);
    const QStringList captions = FileCaptions(exported);
    QList<ImportTarget> targets;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        ValueField* field = fields[i];
        targets.append({titles[i],
                        {captions.value(exported.indexOf(field)), titles[i], field->Tag(), field->Name()},
                        field,
                        -1});
        if (titles.count(field->PlainCaption()) <= 1 && titles[i] == field->PlainCaption())
            targets.last().names.append(field->PlainCaption());
    }
    for (int i = 0; i < columns.size(); ++i) {
        Field* field = table.form->FindByColumn(columns[i].tag);
        const bool isKey = KeyWorth(table, i) > 0;
        if (const qsizetype place = fields.indexOf(field); place >= 0) {
            targets[place].listColumn = isKey ? i : -1;
            targets[place].names.append(columns[i].caption);
        } else if (isKey && !columns[i].hidden && !columns[i].caption.isEmpty()) {
            const QString caption =
                field && !field->PlainCaption().isEmpty() ? field->PlainCaption() : columns[i].caption;
            targets.append({caption, {caption, columns[i].caption, columns[i].tag}, nullptr, i});
        }
    }
    return targets;
}

/// By which target records are known unless the operator wants it otherwise: the code, or else the name.
int UsualKey(const TableDeclaration& table, const ImportPlan& plan) {
    int best = -1;
    int most = -1;
    for (int i = 0; i < plan.targets.size(); ++i) {
        const ImportTarget& target = plan.targets[i];
        if (target.listColumn < 0 || !plan.columns.contains(i))
            continue;
        const int worth = KeyWorth(table, target.listColumn);
        if (worth > most) {
            best = i;
            most = worth;
        }
    }
    return best;
}

} // namespace

void MaintenanceScreen::LearnMany(Table& table) {
    table.takesMany = table.spec.takesMany && !table.spec.updateRequest.isEmpty() &&
                      !PlainFields(*table.form, table.spec).isEmpty();
    // A table with an edit of several records of its own has no second one.
    table.changesSelected =
        table.takesMany && !table.spec.several.form && !CommonFields(*table.form, table.spec).isEmpty();
    for (int i = 0; i < table.spec.columns.size(); ++i)
        table.importsMany = table.importsMany || (table.takesMany && KeyWorth(table, i) > 0);
}

void MaintenanceScreen::CompleteSave(Table& table, const SaveContext& context,
                                     const QList<QStringList>& before, ManySave& save) {
    Form& form = *table.form;
    m_context = context;
    const auto forget = qScopeGuard([this] { m_context = {}; });
    form.LeaveFields();
    form.Tidy();
    QList<const Field*> fields(form.Fields().begin(), form.Fields().end());
    const QStringList titles = FieldTitles(fields, table.layout);
    bool isChanged = context.isNew;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        isChanged = isChanged || fields[i]->IsChanged();
        if (const QStringList words = fields[i]->Words();
            fields[i]->IsChanged() && !fields[i]->PlainCaption().isEmpty() && words != before.value(i))
            save.changes.append({titles[i], before.value(i).join("; "), words.join("; ")});
    }
    if (!isChanged || !save.problem.isEmpty())
        return;
    const std::optional<Form::Finding> finding = form.FirstProblem();
    const QStringList problems = ProblemsBeforeSave(table);
    if (finding || !problems.isEmpty()) {
        save.problem = (finding ? finding->text : problems.join(' ')).simplified();
        return;
    }
    save.question = QuestionBeforeSave(table);
    if (!table.spec.PlacesCluster())
        PutCluster(table);
    PutRecord(table, context);
    save.fields = App().channel.TakeFields();
    save.request = context.isNew ? table.spec.addRequest : table.spec.updateRequest;
}

bool MaintenanceScreen::SaveMany(Table& table, const QString& title, int helpContext,
                                 const QList<ManySave>& saves, QWidget* parent) {
    const bool anything = std::any_of(saves.begin(), saves.end(), [](const ManySave& save) {
        return !save.request.isEmpty() || !save.problem.isEmpty();
    });
    if (!anything) {
        App().prompter.ShowBox(parent, {.text = tr("Nothing changes: the records are like this already."),
                                        .icon = Box::Icon::Information});
        return false;
    }
    const ManyWords words{title, helpContext, table.spec.saveCaption, table.spec.subject,
                          &table.spec.saveWords};
    frmManyPreview preview(App(), words, saves, parent);
    const QStringList before = table.grid->Model().SortedKeys();
    if (!preview.Try() || !App().prompter.RunDialog(preview))
        return false;
    ShowManySaved(table, before);
    emit App().notices.Done(preview.Saved() == 1 ? tr("Saved 1 record")
                                                 : tr("Saved %L1 records").arg(preview.Saved()));
    return true;
}

// Lists that others show, too, follow: those of this screen, and shared pick-lists.
void MaintenanceScreen::ShowManySaved(Table& table, const QStringList& keysBefore) {
    ReloadLists();
    const QList<GridColumn>& columns = table.spec.columns;
    const auto text = std::find_if(columns.begin(), columns.end(), [&](const GridColumn& column) {
        return !table.spec.pickTag.isEmpty() && column.tag == table.spec.pickTag;
    });
    if (text != columns.end()) {
        for (const QString& key : keysBefore)
            if (!table.grid->Model().FindRow(key))
                App().pickLists.Remove(table.spec.pickLists, key);
        for (const GridRow& row : table.grid->Model().Rows())
            App().pickLists.Put(table.spec.pickLists,
                                {row.key, ShownText(*text, row.cells.value(text - columns.begin()))});
    }
    Announce(table.spec.notice);
}

void MaintenanceScreen::ChangeSelected(Table& table) {
    const QStringList keys = table.grid->SelectedKeys();
    if (m_state != State::List || keys.isEmpty() || !MayChangeMany(table))
        return;
    Form& form = *table.form;
    const QScopedValueRollback quiet(m_readsMany, true);
    const auto clear = qScopeGuard([&form] { form.Clear(); });
    const QList<ValueField*> fields = CommonFields(form, table.spec);
    if (fields.isEmpty())
        return;
    // The dialog begins with what the records have in common.
    QList<std::optional<QString>> common(fields.size());
    bool isFirst = true;
    for (const QString& key : keys) {
        const GridRow* row = table.grid->Model().FindRow(key);
        form.Clear();
        if (!row || !FillForm(table, GridRow(*row)))
            return;
        for (qsizetype i = 0; i < fields.size(); ++i)
            if (isFirst)
                common[i] = fields[i]->Draft();
            else if (common[i] != fields[i]->Draft())
                common[i].reset();
        isFirst = false;
    }
    CommonForm chosen(fields);
    for (qsizetype i = 0; i < fields.size(); ++i)
        if (ValueField* field = chosen.For(*fields[i]); common[i])
            field->SetStored(*common[i]);
        else
            field->Clear();
    const QString title =
        keys.size() == 1 ? tr("Change 1 Record") : tr("Change %L1 Records").arg(keys.size());
    const auto preview = [&](QDialog& dialog) {
        const auto saves = SavesOf(table, keys, chosen);
        return saves && SaveMany(table, title, ChangeTopic, *saves, &dialog);
    };
    Layout layout = chosen.LayoutFrom(table.layout);
    layout.children.prepend(Note(tr("Check the fields that are to be written to all of these records.")));
    ChangeDialog dialog(App().prompter, chosen, layout,
                        {.name = "frmChangeSelected",
                         .title = title,
                         .helpContext = ChangeTopic,
                         .okCaption = tr("&Preview..."),
                         .several = true},
                        preview, this);
    App().prompter.RunDialog(dialog);
}

std::optional<QList<ManySave>> MaintenanceScreen::SavesOf(Table& table, const QStringList& keys,
                                                          const CommonForm& chosen) {
    Form& form = *table.form;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto done = qScopeGuard([&form] {
        QGuiApplication::restoreOverrideCursor();
        form.Clear();
    });
    QList<ManySave> saves;
    for (const QString& key : keys) {
        const GridRow* row = table.grid->Model().FindRow(key);
        if (!row) {
            saves.append({.record = key, .problem = tr("It is no longer there.")});
            continue;
        }
        ManySave save{.record = RecordText(table, *row)};
        form.Clear();
        if (!FillForm(table, GridRow(*row)))
            return std::nullopt;
        const QList<QStringList> before = WordsOf(form);
        QList<NewValue> values;
        for (Field* field : form.Fields())
            if (const ValueField* wanted = chosen.For(*field); wanted && wanted->IsChosen())
                values.append({static_cast<ValueField*>(field), wanted->Draft()});
        save.problem = EnterDrafts(values);
        CompleteSave(table, {.isNew = false, .originalKey = key}, before, save);
        saves.append(save);
    }
    return saves;
}

void MaintenanceScreen::ImportRecords(Table& table) {
    if (m_state != State::List || !MayImport(table))
        return;
    const QString fileName = App().prompter.AskOpenFile(this, tr("Import from File"),
                                                        tr("Files of separated values (*.csv *.txt *.tsv)"));
    if (fileName.isEmpty())
        return;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Tell(tr("The file cannot be read: %1").arg(file.errorString()));
    ImportPlan plan{.file = ReadImportFile(file.readAll()), .targets = TargetsOf(table)};
    if (!plan.file.problem.isEmpty())
        return Tell(plan.file.problem);
    plan.columns = MatchColumns(plan.file.headings, plan.targets);
    plan.key = UsualKey(table, plan);
    const QScopedValueRollback quiet(m_readsMany, true);
    frmImportColumns* shown = nullptr;
    const auto preview = [&](const ImportPlan& decided) {
        const auto saves = SavesOf(table, decided);
        return saves && SaveMany(table, tr("Import"), ImportTopic, *saves, shown);
    };
    frmImportColumns dialog(App().prompter, plan, fileName, ImportTopic, preview, this);
    shown = &dialog;
    App().prompter.RunDialog(dialog);
}

std::optional<QList<ManySave>> MaintenanceScreen::SavesOf(Table& table, const ImportPlan& plan) {
    Form& form = *table.form;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto done = qScopeGuard([&form] {
        QGuiApplication::restoreOverrideCursor();
        form.Clear();
    });
    const ImportTarget& key = plan.targets[plan.key];
    const auto keyColumn = plan.columns.indexOf(plan.key);
    QMultiHash<QString, QString> known; // what records are called, and their keys
    for (const GridRow& row : table.grid->Model().Rows()) {
        const QString cell = row.cells.value(key.listColumn);
        QString shown = ShownText(table.spec.columns[key.listColumn], cell);
        if (const auto* choice = dynamic_cast<const ChoiceField*>(key.field))
            for (const PickItem& item : choice->Items())
                if (item.id == cell)
                    shown = item.text;
        known.insert(FoldedKey(cell), row.key);
        if (FoldedKey(shown) != FoldedKey(cell))
            known.insert(FoldedKey(shown), row.key);
    }
    QList<ManySave> saves;
    QHash<QString, int> lines;
    for (qsizetype i = 0; i < plan.file.records.size(); ++i) {
        const wire::CsvRecord& record = plan.file.records[i];
        const QString name = record.fields.value(keyColumn).trimmed();
        const QStringList keys = known.values(FoldedKey(name));
        ManySave save{.record = tr("Line %1: %2").arg(record.line).arg(name)};
        if (record.fields.size() != plan.file.headings.size())
            save.problem = tr("It has %1 values, and there are %2 columns.")
                               .arg(record.fields.size())
                               .arg(plan.file.headings.size());
        else if (name.isEmpty())
            save.problem =
                tr("\"%1\" is empty: the line does not say which record is meant.").arg(key.caption);
        else if (lines.contains(FoldedKey(name)))
            save.problem = tr("Line %1 is about the same record.").arg(lines[FoldedKey(name)]);
        else if (keys.size() > 1)
            save.problem = tr("There are several records of this name.");
        else if (keys.isEmpty() && (!m_mayCreate || table.spec.addRequest.isEmpty() || !key.field))
            save.problem = tr("There is no such record, and none can be added here.");
        lines.insert(FoldedKey(name), record.line);
        if (save.problem.isEmpty()) {
            const GridRow* found = keys.isEmpty() ? nullptr : table.grid->Model().FindRow(keys.first());
            const auto filled = SaveOfLine(table, plan, i, found);
            if (!filled)
                return std::nullopt;
            const QString called = save.record;
            save = *filled;
            save.record = called;
        }
        saves.append(save);
    }
    return saves;
}

std::optional<ManySave> MaintenanceScreen::SaveOfLine(Table& table, const ImportPlan& plan, qsizetype line,
                                                      const GridRow* row) {
    Form& form = *table.form;
    ManySave save{.isNew = !row};
    const SaveContext context{.isNew = !row, .originalKey = row ? row->key : QString()};
    form.Clear();
    if (row ? !FillForm(table, GridRow(*row)) : !PrepareNew(table))
        return std::nullopt;
    const QList<QStringList> before = row ? WordsOf(form) : QList<QStringList>();
    QList<NewValue> values;
    for (qsizetype i = 0; i < plan.columns.size() && save.problem.isEmpty(); ++i) {
        const int place = plan.columns[i];
        ValueField* field = place < 0 ? nullptr : plan.targets[place].field;
        const QString& cell = plan.file.records[line].fields[i];
        // A record keeps the key by which it was found, letter case and all; a new one begins with what new
        // ones begin with where the file says nothing.
        if (!field || (row && place == plan.key) || (!row && cell.trimmed().isEmpty()) ||
            cell == FileText(*field) || cell == field->Draft())
            continue;
        CommonForm scratch({field});
        ValueField& entered = *scratch.For(*field);
        entered.SetStored(field->Draft());
        save.problem = EnterText(entered, cell);
        values.append({field, entered.Draft()});
    }
    if (save.problem.isEmpty())
        save.problem = EnterDrafts(values);
    CompleteSave(table, context, before, save);
    return save;
}

} // namespace sysadmin
