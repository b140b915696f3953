#include "framework/RowsEditor.h"

#include "core/Prompter.h"
#include "framework/ListGrid.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace sysadmin {

QString CellProblem(const CellEdit& edit, const QString& value) {
    if (edit.kind != CellEdit::Kind::Number || value.isEmpty())
        return {};
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (isNumber && number >= edit.least && number <= edit.most)
        return {};
    return RowsEditor::tr("Please enter a whole number from %1 to %2.").arg(edit.least).arg(edit.most);
}

RowsEditor::RowsEditor(RowsField& field, QWidget* parent)
    : FieldEditor(field)
    , m_rows(field) {
    const RowsSpec& spec = field.Behaviour();
    QWidget* around = parent;
    const bool hasButtons = !(spec.add.name + spec.modify.name + spec.remove.name + spec.up.name).isEmpty();
    if (hasButtons)
        around = new QWidget(parent);
    m_grid = new ListGrid(field.Name(), field.Columns(), around);
    m_grid->SetEdits(spec.edits);
    m_grid->SetMultiSelect(spec.several);
    if (spec.ranked)
        m_grid->SetRanked();
    else if (hasButtons && std::none_of(spec.puts.begin(), spec.puts.end(), [](const RowTag& put) {
                 return put.source == RowTag::Source::State;
             }))
        m_grid->SetSortable(false); // the rows are sent as a whole, in the order in which they are shown
    m_widget = m_named = m_grid;
    m_focusWidgets = {m_grid};
    if (hasButtons) {
        m_widget = around;
        auto* whole = new QVBoxLayout(around);
        whole->setContentsMargins({});
        whole->addWidget(m_grid, 1);
        auto* line = new QWidget(around);
        auto* buttons = new QHBoxLayout(line);
        buttons->setContentsMargins({});
        m_add = MakeButton(spec.add, line);
        m_modify = MakeButton(spec.modify, line);
        m_remove = MakeButton(spec.remove, line);
        m_up = MakeButton(spec.up, line);
        m_down = MakeButton(spec.down, line);
        buttons->addStretch();
        whole->addWidget(line);
    }
    const auto onClick = [this](QPushButton* button, auto act) {
        if (button)
            connect(button, &QPushButton::clicked, this, act);
    };
    onClick(m_add, [this] { Ask(true); });
    onClick(m_modify, [this] { Ask(false); });
    onClick(m_remove, [this] { Remove(); });
    onClick(m_up,
            [this] { Move(m_grid->SelectedKey(), m_grid->Model().DisplayRow(m_grid->SelectedKey()) - 1); });
    onClick(m_down,
            [this] { Move(m_grid->SelectedKey(), m_grid->Model().DisplayRow(m_grid->SelectedKey()) + 1); });
    const auto press = [](QPushButton* button) {
        return [button] {
            if (button && button->isEnabled())
                button->click();
        };
    };
    connect(m_grid, &ListGrid::RowActivated, this, press(m_modify));
    connect(m_grid, &ListGrid::InsertPressed, this, press(m_add));
    connect(m_grid, &ListGrid::DeletePressed, this, press(m_remove));
    connect(m_grid, &ListGrid::SelectionMoved, this, &RowsEditor::RefreshButtons);
    connect(m_grid, &ListGrid::RowMoved, this, &RowsEditor::Move);
    if (spec.keepsRows)
        connect(&field.Owner(), &Form::Changed, this, &RowsEditor::RefreshButtons);
    // After the cell's editor is gone: rows that change under it would take it along.
    connect(&m_grid->Model(), &GridModel::CellEdited, this, &RowsEditor::EditCell, Qt::QueuedConnection);
}

QPushButton* RowsEditor::MakeButton(const RowButton& spec, QWidget* line) {
    if (spec.name.isEmpty())
        return nullptr;
    auto* button = new QPushButton(spec.caption, line);
    button->setObjectName(spec.name);
    button->setAutoDefault(false); // Enter belongs to the dialog's or screen's own default button
    line->layout()->addWidget(button);
    m_focusWidgets.append(button);
    return button;
}

void RowsEditor::ShowValue() {
    const QList<GridRow> rows = m_rows.ShownRows();
    if (rows.isSharedWith(m_shown) || rows == m_shown)
        return;
    // One row alone is rewritten where it stands, so that the grid keeps everything else as it is.
    QList<GridRow> changed;
    bool sameRows = rows.size() == m_shown.size();
    for (qsizetype i = 0; sameRows && i < rows.size(); ++i) {
        sameRows = rows[i].key == m_shown[i].key;
        if (rows[i] != m_shown[i])
            changed.append(rows[i]);
    }
    m_shown = rows;
    if (sameRows && changed.size() == 1)
        m_grid->Model().PutRow(changed.first());
    else
        m_grid->ReplaceRows(m_shown);
    RefreshButtons();
}

void RowsEditor::Lock(bool usable, bool readOnly) {
    m_grid->setEnabled(usable);
    m_isUsable = usable;
    m_mayEdit = usable && !readOnly;
    m_grid->SetEditable(m_mayEdit);
    RefreshButtons();
}

void RowsEditor::RefreshButtons() {
    const QString key = m_grid->SelectedKey();
    const auto allow = [](QPushButton* button, bool allowed) {
        if (button)
            button->setEnabled(allowed);
    };
    const int place = key.isEmpty() ? -1 : m_grid->Model().DisplayRow(key);
    const bool keepsRows = m_rows.Behaviour().keepsRows && m_rows.Behaviour().keepsRows();
    allow(m_add, m_mayEdit && !keepsRows);
    const bool shows = m_isUsable && m_rows.Behaviour().asksInView;
    allow(m_modify, (m_mayEdit || shows) && !key.isEmpty());
    allow(m_remove, m_mayEdit && !keepsRows && !key.isEmpty());
    allow(m_up, m_mayEdit && place > 0);
    allow(m_down, m_mayEdit && place >= 0 && place + 1 < m_grid->Model().rowCount());
}

QString AskForRow(RowsField& field, const QString& key, QWidget* parent, Prompter& prompter, bool readOnly) {
    const RowsSpec& spec = field.Behaviour();
    const GridRow* stored = key.isEmpty() ? nullptr : field.FindRow(key);
    const std::optional<GridRow> former = stored ? std::optional(*stored) : std::nullopt;
    const GridRow* before = former ? &*former : nullptr;
    const RowCheck check = [&field](const GridRow& row, const GridRow* was) {
        return field.Refusal(row, was);
    };
    FormDialogSpec dialog = spec.ask.dialog;
    dialog.readOnly = dialog.readOnly || readOnly;
    std::optional<GridRow> row = spec.ask.ask(dialog, parent, prompter, before, check);
    if (!row || dialog.readOnly)
        return {};
    if (spec.keyColumn >= 0)
        row->key = row->cells.value(spec.keyColumn);
    if (row->key.isEmpty())
        row->key = before ? before->key : field.NewKey();
    const QList<GridRow> rows = spec.spread ? spec.spread(*row) : QList<GridRow>{*row};
    field.ReplaceRow(before ? before->key : QString(), rows.first());
    field.PutRows(rows.mid(1));
    return row->key;
}

void RowsEditor::Ask(bool isNew) {
    const QString selected = isNew ? QString() : m_grid->SelectedKey();
    if (!m_rows.Behaviour().ask || !m_grid->GetPrompter() || (!isNew && selected.isEmpty()))
        return;
    const QString key = AskForRow(m_rows, selected, m_grid->window(), *m_grid->GetPrompter(), !m_mayEdit);
    if (!key.isEmpty())
        m_grid->SelectKey(key);
}

/// The question about a row, with the cells that it asks for.
QString RowsEditor::Filled(const QString& question, const QString& key) const {
    QStringList cells;
    for (const GridRow& row : m_rows.ShownRows())
        if (row.key == key)
            cells = row.cells.Texts();
    QString filled;
    for (qsizetype i = 0; i < question.size(); ++i) {
        const int column = question[i] == u'%' && i + 1 < question.size() ? question[i + 1].digitValue() : -1;
        if (column > 0)
            filled += cells.value(column - 1);
        else
            filled += question[i];
        i += column > 0 ? 1 : 0;
    }
    return filled;
}

void RowsEditor::Remove() {
    const RowsSpec& spec = m_rows.Behaviour();
    const QStringList keys = spec.several ? m_grid->SelectedKeys() : QStringList(m_grid->SelectedKey());
    if (keys.isEmpty() || keys.first().isEmpty())
        return;
    if (!spec.removeQuestion.isEmpty()) {
        Box question{.text = Filled(spec.removeQuestion, keys.first()),
                     .icon = Box::Icon::Question,
                     .buttons = Box::Buttons::YesNo,
                     .careful = true};
        if (!spec.removeTitle.isEmpty())
            question.title = spec.removeTitle;
        Prompter* prompter = m_grid->GetPrompter();
        if (!prompter || !prompter->ShowBox(m_grid->window(), question))
            return;
    }
    const int place = m_grid->Model().DisplayRow(keys.first());
    m_rows.RemoveRows(keys);
    if (const int last = m_grid->Model().rowCount() - 1; last >= 0)
        m_grid->SelectKey(m_grid->Model().RowAt(qMin(place, last)).key);
}

void RowsEditor::Move(const QString& key, int place) {
    if (!m_mayEdit || key.isEmpty() || place < 0 || place >= m_rows.Rows().size())
        return;
    m_rows.MoveRow(key, place);
    m_grid->SelectKey(key);
}

void RowsEditor::EditCell(const QString& key, int column, const QString& value) {
    const GridRow* former = m_rows.FindRow(key);
    if (!m_mayEdit || !former || former->cells.value(column) == value)
        return;
    GridRow row = *former;
    while (row.cells.size() <= column)
        row.cells.Own().append(QString());
    row.cells[column] = value;
    QString refusal = CellProblem(m_rows.Behaviour().edits.value(column), value);
    if (refusal.isEmpty())
        refusal = m_rows.Refusal(row, former);
    if (refusal.isEmpty())
        m_rows.SetCells({key}, column, value);
    else if (m_grid->GetPrompter())
        m_grid->GetPrompter()->ShowBox(m_grid->window(), {.text = refusal});
}

} // namespace sysadmin

#include "moc_RowsEditor.cpp"
