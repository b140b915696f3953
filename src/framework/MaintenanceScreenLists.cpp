#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/CsvExport.h"
#include "framework/MaintenanceScreen.h"
#include "framework/ManyFields.h"
#include "framework/RowSummary.h"
#include "framework/Utility.h"
#include "framework/forms/ValueFields.h"
#include "framework/frmSortOrder.h"
#include "framework/frmWhereUsed.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include <algorithm>

// What a maintenance screen does with its lists besides maintaining their records.
namespace sysadmin {

namespace {

/// A cell of the list in words.
QString CellWords(const GridColumn& column, const Field* field, const QString& cell) {
    if (column.yesNo || dynamic_cast<const FlagField*>(field))
        return cell == u"Y" ? Form::tr("Yes") : Form::tr("No");
    if (const auto* choice = dynamic_cast<const ChoiceField*>(field))
        for (const PickItem& item : choice->Items())
            if (item.id == cell)
                return item.text;
    return ShownText(column, cell);
}

} // namespace

void MaintenanceScreen::AddListTools(Table& table) {
    LearnMany(table);
    table.grid->SetMenuButtons({m_cmdNew, m_cmdEdit, m_cmdDelete});
    auto* reload = new QAction(tr("&Reload"), table.grid);
    reload->setObjectName("mnuReload");
    reload->setShortcut(Qt::Key_F5);
    connect(reload, &QAction::triggered, this, &MaintenanceScreen::ReloadLists);
    auto* exportAll = new QAction(tr("Export All &Fields..."), table.grid);
    exportAll->setObjectName("mnuExportAll");
    connect(exportAll, &QAction::triggered, this, [this, &table] { ExportAllFields(table); });
    auto* uses = new QAction(tr("&Where Used..."), table.grid);
    uses->setObjectName("mnuWhereUsed");
    connect(uses, &QAction::triggered, this, [this, &table] {
        if (const GridRow* row = table.grid->SelectedRow(); row && m_state == State::List)
            ShowUses(table, GridRow(*row));
    });
    auto* history = new QAction(tr("&History..."), table.grid);
    history->setObjectName("mnuHistory");
    history->setShortcut(Qt::CTRL | Qt::Key_H);
    history->setShortcutContext(Qt::WidgetShortcut); // the screen has it everywhere
    connect(history, &QAction::triggered, this, [this] { ShowHistory(); });
    auto* change = new QAction(tr("&Change Selected..."), table.grid);
    change->setObjectName("mnuChangeSelected");
    change->setShortcut(Qt::CTRL | Qt::Key_M);
    connect(change, &QAction::triggered, this, [this, &table] { ChangeSelected(table); });
    auto* import = new QAction(tr("&Import from File..."), table.grid);
    import->setObjectName("mnuImport");
    import->setShortcut(Qt::CTRL | Qt::Key_I);
    connect(import, &QAction::triggered, this, [this, &table] { ImportRecords(table); });
    for (QAction* action : {change, import}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        table.listPage->addAction(action);
    }
    connect(table.grid, &ListGrid::SeveralActivated, change, &QAction::trigger);
    const auto separator = [&table] {
        auto* action = new QAction(table.grid);
        action->setSeparator(true);
        return action;
    };
    table.grid->SetMenuActions(
        {separator(), change, history, uses, separator(), import, exportAll, separator(), reload});
}

// Of those that not every screen has: what is declared of the table decides.
void MaintenanceScreen::RefreshListButtons() {
    const Table& table = Current();
    const bool inList = m_state == State::List;
    const GridRow* row = table.grid->SelectedRow();
    if (m_cmdDuplicate) {
        m_cmdDuplicate->setVisible(table.spec.copies && !m_readOnly);
        m_cmdDuplicate->setEnabled(inList && row && m_mayCreate);
    }
    for (const Table& each : m_tables) {
        const bool changesSeveral = each.changesSelected && MayChangeMany(each);
        if (changesSeveral && each.grid->selectionMode() == QAbstractItemView::SingleSelection)
            each.grid->SetSelectsMany();
        auto* change = each.grid->findChild<QAction*>("mnuChangeSelected");
        change->setVisible(changesSeveral);
        change->setEnabled(changesSeveral && inList && each.grid->SelectedCount() > 0);
        auto* import = each.grid->findChild<QAction*>("mnuImport");
        import->setVisible(MayImport(each));
        import->setEnabled(MayImport(each) && inList);
        for (const char* name : {"mnuWhereUsed", "mnuHistory"})
            each.grid->findChild<QAction*>(name)->setEnabled(each.grid->SelectedRow());
        if (each.severalButton) {
            each.severalButton->setVisible(&each == &table && m_mayEdit);
            each.severalButton->setEnabled(inList && row);
        }
        if (each.orderButton) {
            each.orderButton->setVisible(&each == &table && !m_readOnly);
            each.orderButton->setEnabled(inList && each.grid->Model().Rows().size() > 1);
        }
    }
}

void MaintenanceScreen::AskOrder() {
    Table& table = Current();
    const OrderSpec& spec = table.spec.order;
    const QList<GridColumn>& columns = table.spec.columns;
    clsGrid order{.Caption = spec.caption,
                  .HelpId = spec.helpContext,
                  .SendRequestName = spec.request,
                  .RuleRankTag = spec.rankTag,
                  .PreviousRankTag = spec.previousRankTag,
                  .IdTag = spec.idTag,
                  .Selected = table.grid->SelectedKey()};
    for (const GridColumn& column : columns)
        order.clsColumns.Add(column.caption, column.width,
                             column.hidden || column.yesNo || spec.derivedTags.contains(column.tag));
    const auto records = [&] {
        clsRows rows;
        for (const GridRow& record : table.grid->Model().Rows()) {
            QStringList words;
            for (qsizetype i = 0; i < columns.size(); ++i)
                words.append(ShownText(columns[i], record.cells.value(i)));
            rows.Add(record.key, words);
        }
        return rows;
    };
    order.clsRows = records();
    order.Reread = [&] {
        ReloadLists();
        return records();
    };
    frmSortOrder dialog(App(), order, this);
    App().prompter.RunDialog(dialog);
    if (!order.Changed)
        return;
    if (spec.derivedTags.isEmpty()) {
        QList<GridRow> rows;
        for (const clsRow& record : order.clsRows)
            rows.append(*table.grid->Model().FindRow(record.RowData));
        table.grid->ReplaceRows(rows);
    } else {
        ReloadLists();
    }
    Announce(table.spec.notice);
}

void MaintenanceScreen::ShowSummary() {
    const Table& table = Current();
    const ListGrid& grid = *table.grid;
    if (const qsizetype count = grid.SelectedCount(); count > 1) {
        QString hint;
        if (table.severalButton && m_mayEdit)
            hint = tr("%1 changes them together.")
                       .arg(DeclaredCaption(*table.severalButton).remove('&').remove("..."));
        else if (MayChangeMany(table))
            hint = tr("Change Selected (Ctrl+M, Enter or F2) changes them together.");
        m_summary->Show(tr("%L1 records are selected").arg(count), {}, hint);
        return;
    }
    const GridRow* row = grid.SelectedRow();
    if (!row) {
        const bool empty = grid.Model().Rows().isEmpty();
        m_summary->Show(empty ? tr("No %1 yet").arg(table.spec.subject) : tr("Nothing is selected"), {},
                        empty && m_mayCreate ? tr("New (Ins) makes the first one.") : QString());
        return;
    }
    QList<RowSummary::Line> lines;
    for (qsizetype i = 0; i < table.spec.columns.size(); ++i) {
        const GridColumn& column = table.spec.columns[i];
        const Field* field = table.form->FindByColumn(column.tag);
        const QString caption = field ? field->PlainCaption() : QString();
        // What the list keeps besides its columns is told where the form has a caption for it.
        if (!column.hidden || !caption.isEmpty())
            lines.append({caption.isEmpty() ? column.caption : caption,
                          CellWords(column, field, row->cells.value(i))});
    }
    m_summary->Show(RecordText(table, *row), lines,
                    m_mayEdit ? tr("Enter, F2 or a double click opens it for editing.")
                              : tr("Enter, F2 or a double click shows all of it."));
}

/// True when the operator went on to one of the records.
bool MaintenanceScreen::ShowUses(const Table& table, const GridRow& row) {
    const QString request = table.spec.getRequest.isEmpty() ? table.spec.listRequest : table.spec.getRequest;
    return ShowWhereUsed(App(), this, {SubjectOf(request), row.key, RecordText(table, row)});
}

const MaintenanceScreen::Table* MaintenanceScreen::TableOf(const QString& word) const {
    for (const Table& table : m_tables)
        if (SubjectOf(table.spec.listRequest) == word || SubjectOf(table.spec.getRequest) == word)
            return &table;
    return nullptr;
}

std::optional<HistoryRecord> MaintenanceScreen::RecordNow() const {
    const Table& table = Current();
    const bool inList = m_state == State::List;
    if (m_state == State::EditingNew || m_state == State::EditingSeveral ||
        (inList && table.grid->SelectedCount() > 1))
        return std::nullopt;
    const GridRow* row =
        inList ? table.grid->SelectedRow() : table.grid->Model().FindRow(m_context.originalKey);
    if (!row)
        return std::nullopt;
    const QString request = table.spec.getRequest.isEmpty() ? table.spec.listRequest : table.spec.getRequest;
    return HistoryRecord{SubjectOf(request), row->key, RecordText(table, *row),
                         [key = row->key](RequestChannel& channel) { channel.PutField("ID", key); }};
}

RecordState MaintenanceScreen::BlankState(const QString& word) const {
    const Table* table = TableOf(word);
    if (!table)
        return {};
    table->form->Clear();
    return StateOf(*table->form);
}

std::optional<RecordState> MaintenanceScreen::ReadState(const QString& word, const QString& key) {
    const auto table = std::find_if(m_tables.begin(), m_tables.end(),
                                    [wanted = TableOf(word)](const Table& each) { return &each == wanted; });
    if (table == m_tables.end())
        return std::nullopt;
    GridRow row{key, {}, {}};
    if (table->spec.getRequest.isEmpty()) { // the list is what tells of records
        LoadList(*table);
        const QString then = App().channel.GetField("AsKey");
        const GridRow* found = table->grid->Model().FindRow(then.isEmpty() ? key : then);
        if (!found)
            return std::nullopt;
        row = *found;
    } else if (const GridRow* known = table->grid->Model().FindRow(key)) {
        row = *known;
    }
    table->form->Clear();
    return FillForm(*table, row) ? std::optional(StateOf(*table->form)) : std::nullopt;
}

bool MaintenanceScreen::MayBringBack(const QString& word, bool isGone) const {
    const Table* table = TableOf(word);
    return table && (isGone ? m_mayCreate && !table->spec.addRequest.isEmpty() : m_mayEdit);
}

bool MaintenanceScreen::BringBack(const QString& word, const QString& key, const RecordState& state,
                                  const QList<int>& fields) {
    const Table* table = TableOf(word);
    const bool isOpen = m_state == State::Editing && &Current() == table && m_context.originalKey == key;
    if (!table || (m_state != State::List && !isOpen))
        return false;
    if (!isOpen) {
        const auto index =
            std::find_if(m_tables.begin(), m_tables.end(), [&](const Table& each) { return &each == table; });
        if (m_tabs)
            m_tabs->setCurrentIndex(int(index - m_tables.begin()));
        table->grid->FilterBox()->clear();
        if (key.isEmpty())
            StartNew();
        else if (table->grid->SelectKey(key))
            StartEdit();
    }
    if (m_state != (key.isEmpty() ? State::EditingNew : State::Editing))
        return false;
    BringBackInto(*table->form, state, fields);
    if (fields.size() == 1)
        table->view->FocusField(*table->form->Fields()[fields.first()]);
    return true;
}

bool MaintenanceScreen::ShowRecord(const QString& word, const QString& key, const QString& control) {
    for (size_t i = 0; i < m_tables.size(); ++i) {
        ListGrid& grid = *m_tables[i].grid;
        if (SubjectOf(m_tables[i].spec.listRequest) != word && SubjectOf(m_tables[i].spec.getRequest) != word)
            continue;
        if (m_state != State::List) // what is being edited stays; it may be the record
            return m_current == int(i) && m_context.originalKey == key;
        if (m_tabs)
            m_tabs->setCurrentIndex(int(i));
        if (!grid.Model().FindRow(key))
            return false;
        grid.FilterBox()->clear();
        grid.SelectKey(key);
        grid.setFocus();
        if (!control.isEmpty())
            GoTo(control);
        return true;
    }
    return false;
}

void MaintenanceScreen::GoTo(const QString& control) {
    for (size_t i = 0; i < m_tables.size(); ++i) {
        const Field* field = m_tables[i].form->Find(control);
        const auto* inside = m_tables[i].view->findChild<QWidget*>(control);
        if (!field && !inside)
            continue;
        if (m_state == State::List) {
            if (m_tabs)
                m_tabs->setCurrentIndex(int(i));
            StartEdit();
        }
        if (field && m_state != State::List && m_state != State::EditingSeveral && m_current == int(i))
            m_tables[i].view->FocusField(*field);
        else
            FormScreen::GoTo(control);
        return;
    }
    FormScreen::GoTo(control);
}

void MaintenanceScreen::ExportAllFields(Table& table) {
    const QStringList keys = table.grid->Model().ShownKeys();
    if (m_state != State::List || keys.isEmpty())
        return;
    const QString fileName = App().prompter.AskSaveFile(
        this, tr("Export All Fields"), FileNameFor(*table.grid, ".csv"), tr("CSV files (*.csv)"));
    if (fileName.isEmpty())
        return;
    QList<const Field*> fields;
    for (const Field* field : table.form->Fields())
        if (!field->Name().isEmpty() && field->GetKind() != Field::Kind::Password)
            fields.append(field);
    // What only the list tells (of which patron group a policy is) stands in front.
    QList<qsizetype> listed;
    QStringList captions;
    for (int i = 0; i < table.spec.columns.size(); ++i)
        if (const GridColumn& column = table.spec.columns[i];
            !table.form->FindByColumn(column.tag) && KeyWorth(table, i) > 0) {
            listed.append(i);
            captions.append(column.caption);
        }
    QList<QStringList> records{captions + FileCaptions(fields)};
    for (const QString& key : keys) {
        table.form->Clear();
        const GridRow* row = table.grid->Model().FindRow(key);
        if (!row || !FillForm(table, GridRow(*row))) {
            table.form->Clear();
            return;
        }
        QStringList values;
        for (const qsizetype column : listed)
            values.append(ShownText(table.spec.columns[column], row->cells.value(column)));
        for (const Field* field : fields)
            values.append(FileText(*field));
        records.append(values);
    }
    table.form->Clear();
    if (const QString problem = WriteCsv(fileName, records); !problem.isEmpty())
        App().prompter.ShowBox(this, {.text = tr("The file could not be written:") + "\r\n" + problem});
    else
        emit App().notices.Done(keys.size() == 1 ? tr("Exported 1 record")
                                                 : tr("Exported %L1 records").arg(keys.size()));
}

} // namespace sysadmin
