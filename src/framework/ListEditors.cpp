#include "framework/ListEditors.h"

#include "core/Prompter.h"
#include "framework/BesideOrBelow.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "framework/RowsEditor.h"
#include "framework/TwoListMover.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace sysadmin {

namespace {

class CheckedEditor : public FieldEditor {
public:
    CheckedEditor(CheckedField& field, QWidget* parent)
        : FieldEditor(field)
        , m_checked(field) {
        m_list = new QListWidget(parent);
        m_list->setSpacing(2);
        m_widget = m_list;
        m_focusWidgets = {m_list};
        connect(m_list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
            m_checked.SetChecked(m_list->row(item), item->checkState() == Qt::Checked);
        });
        // A click anywhere on the entry toggles it; on the box itself the list has done that already.
        connect(m_list, &QListWidget::itemPressed, this,
                [this](QListWidgetItem* item) { m_pressed = item->checkState(); });
        connect(m_list, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
            if (!m_locked && item->checkState() == m_pressed)
                item->setCheckState(m_pressed == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        });
    }

protected:
    void ShowValue() override {
        const QSignalBlocker quiet(m_list);
        const QList<CheckedItem>& items = m_checked.Items();
        if (m_list->count() != items.size()) {
            m_list->clear();
            for (qsizetype i = 0; i < items.size(); ++i)
                m_list->addItem(QString());
        }
        for (int i = 0; i < items.size(); ++i) {
            QListWidgetItem* item = m_list->item(i);
            item->setText(items[i].text);
            item->setData(Qt::UserRole, items[i].id);
            item->setCheckState(items[i].checked ? Qt::Checked : Qt::Unchecked);
            item->setFlags(m_locked ? Qt::ItemIsEnabled | Qt::ItemIsSelectable
                                    : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        }
    }
    void Lock(bool usable, bool readOnly) override {
        m_list->setEnabled(usable);
        if (m_locked == readOnly)
            return;
        m_locked = readOnly;
        ShowValue();
    }

private:
    CheckedField& m_checked;
    QListWidget* m_list;
    Qt::CheckState m_pressed = Qt::Unchecked;
    bool m_locked = false;
};

/// The two lists; where the field says so, with buttons that move the selected row up and down, and with its
/// settings in a form beside them or in a dialog behind a button.
class PickedEditor : public FieldEditor {
public:
    PickedEditor(PickedField& field, QWidget* parent)
        : FieldEditor(field)
        , m_picked(field) {
        const PickedSpec& spec = field.Behaviour();
        const bool isAlone = !spec.settings && spec.modify.name.isEmpty() && !spec.ranked;
        m_widget = isAlone ? nullptr : new QWidget(parent);
        m_mover = new TwoListMover(
            field.Names(), field.Lists(), [this](const TwoListMover::Move& move) { m_picked.Move(move); },
            isAlone ? parent : m_widget, spec.more, spec.availableMore);
        m_mover->SetVeto(
            [this](const QStringList& keys, bool toSelected) { return m_picked.Veto(keys, toSelected); });
        m_mover->SetAdmission(
            [this](const QStringList& keys, bool toSelected, Prompter& prompter, QWidget* around) {
                return m_picked.Admit(keys, toSelected, prompter, around);
            });
        m_focusWidgets = m_mover->FocusWidgets();
        ListGrid& grid = m_mover->SelectedGrid();
        grid.SetEdits(spec.edits);
        if (spec.ranked) {
            grid.SetRanked();
            connect(&grid, &ListGrid::RowMoved, this, [this](const QString& key, int place) {
                // The place is among the rows that the filter shows.
                const GridModel& shown = m_mover->SelectedGrid().Model();
                if (place >= 0 && place < shown.rowCount())
                    MoveTo(key, PlaceOf(shown.RowAt(place).key));
            });
        }
        connect(&grid.Model(), &GridModel::CellEdited, this, &PickedEditor::EditCell, Qt::QueuedConnection);
        if (isAlone) {
            m_widget = m_mover;
            return;
        }
        m_named = m_mover;
        auto* whole = new QVBoxLayout(m_widget);
        whole->setContentsMargins({});
        auto* line = new QHBoxLayout;
        whole->addLayout(line, 1);
        if (!spec.settings)
            line->addWidget(m_mover, 1);
        if (spec.ranked)
            AddRankButtons(*line, QString(field.Names().selectedGrid).remove("vsfSelected"));
        if (spec.settings) {
            QList<Layout> fields;
            for (Field* each : spec.settings->Fields())
                fields.append(*each);
            m_settings = new FormView(*spec.settings, Below(fields), m_widget);
            m_focusWidgets.append(m_settings->TabOrder());
            grid.setTextElideMode(Qt::ElideMiddle); // marks of what a row does stand behind its name
            constexpr int LeastLists = 520;
            auto* both = new BesideOrBelow(m_widget);
            both->Place(m_mover, m_settings, LeastLists);
            line->insertWidget(0, both, 1);
            connect(&grid, &ListGrid::SelectionMoved, this, &PickedEditor::ShowSettings);
            connect(spec.settings, &Form::Edited, this, &PickedEditor::TakeSetting);
        }
        if (!spec.modify.name.isEmpty()) {
            m_modify = new QPushButton(spec.modify.caption, m_widget);
            m_modify->setObjectName(spec.modify.name);
            m_modify->setAutoDefault(false);
            m_focusWidgets.append(m_modify);
            whole->addWidget(m_modify, 0, Qt::AlignRight); // below the list whose row it opens
            connect(m_modify, &QPushButton::clicked, this, &PickedEditor::Ask);
            connect(&grid, &ListGrid::SelectionMoved, this, &PickedEditor::RefreshButtons);
        }
    }

    void NameControls(const QString&) override {} // the lists have captions of their own

protected:
    void ShowValue() override {
        if (m_changing)
            m_mover->RefreshInPlace();
        else
            m_mover->Refresh();
        ShowSettings();
    }
    void Lock(bool usable, bool readOnly) override {
        m_isUsable = usable;
        m_mover->setEnabled(usable);
        m_mover->SetReadOnly(readOnly);
        m_mayEdit = usable && !readOnly;
        m_mover->SelectedGrid().SetEditable(m_mayEdit);
        if (m_settings)
            m_settings->SetReadOnly(!m_mayEdit);
        ShowSettings();
        RefreshButtons();
    }

private:
    /// Stand beside the selected rows, which they bring up and down by one place.
    void AddRankButtons(QHBoxLayout& line, const QString& role) {
        auto* column = new QVBoxLayout;
        auto* label = new QLabel(FieldEditor::tr("Priority"), m_widget);
        label->setObjectName("lblPriority" + role);
        label->setAlignment(Qt::AlignCenter);
        column->addStretch();
        column->addWidget(label);
        const auto add = [&](const QString& name, const QString& caption, int step) {
            auto* button = new QPushButton(caption, m_widget);
            button->setObjectName(name + role);
            button->setAutoDefault(false);
            column->addWidget(button);
            m_focusWidgets.append(button);
            connect(button, &QPushButton::clicked, this, [this, step] {
                const QString key = m_mover->SelectedGrid().SelectedKey();
                MoveTo(key, PlaceOf(key) + step);
            });
            return button;
        };
        m_up = add("cmdUp", FieldEditor::tr("Up"), -1);
        m_down = add("cmdDown", FieldEditor::tr("Down"), 1);
        column->addStretch();
        line.addLayout(column);
        connect(&m_mover->SelectedGrid(), &ListGrid::SelectionMoved, this, &PickedEditor::RefreshButtons);
    }
    int PlaceOf(const QString& key) const {
        const QList<GridRow>& rows = m_picked.Lists().Selected();
        const auto found =
            std::find_if(rows.begin(), rows.end(), [&](const GridRow& row) { return row.key == key; });
        return found == rows.end() ? -1 : int(found - rows.begin());
    }
    void MoveTo(const QString& key, int place) {
        if (!m_mayEdit || place < 0 || place >= m_picked.Lists().Selected().size() || PlaceOf(key) < 0)
            return;
        ChangeRows([&](PickedLists& lists) { lists.MoveSelected(key, place); });
        m_mover->SelectedGrid().SelectKey(key);
        RefreshButtons();
    }
    const GridRow* SelectedRow() const {
        const QString key = m_mover->SelectedGrid().SelectedKey();
        for (const GridRow& row : m_picked.Lists().Selected())
            if (row.key == key)
                return &row;
        return nullptr;
    }
    /// The rows change, but they are the same record's: filter and selection stay.
    template <class Change>
    void ChangeRows(const Change& change) {
        const bool wasChanging = std::exchange(m_changing, true);
        m_picked.Move(change);
        m_changing = wasChanging;
    }
    void EditCell(const QString& key, int column, const QString& value) {
        const QString problem = CellProblem(m_picked.Behaviour().edits.value(column), value);
        if (!m_mayEdit)
            return;
        if (problem.isEmpty())
            ChangeRows([&](PickedLists& lists) { lists.SetCells({key}, column, value); });
        else if (Prompter* prompter = m_mover->SelectedGrid().GetPrompter())
            prompter->ShowBox(m_mover->window(), {.text = problem});
    }
    /// The settings' fields carry the tags of the further columns; the name is the first cell.
    void ShowSettings() {
        if (!m_settings || m_changing)
            return;
        Form& form = m_settings->GetForm();
        const Form::Loading loading(form);
        const GridRow* row = SelectedRow();
        form.Clear();
        const QList<GridColumn>& more = m_picked.Behaviour().more;
        for (qsizetype i = 0; i < more.size(); ++i)
            if (auto* value = dynamic_cast<ValueField*>(form.FindByTag(more[i].tag)); value && row)
                value->SetStored(row->cells.value(i + 1));
        m_settings->setEnabled(row || !m_mayEdit); // what is only shown can take the focus
    }
    void TakeSetting(Field* field) {
        const QString key = m_mover->SelectedGrid().SelectedKey();
        const auto* value = dynamic_cast<ValueField*>(field);
        const QList<GridColumn>& more = m_picked.Behaviour().more;
        for (qsizetype i = 0; i < more.size() && value && !key.isEmpty(); ++i)
            if (more[i].tag == field->Tag())
                ChangeRows([&](PickedLists& lists) { lists.SetCells({key}, int(i) + 1, value->Draft()); });
    }
    void Ask() {
        const GridRow* selected = SelectedRow();
        Prompter* prompter = m_mover->SelectedGrid().GetPrompter();
        if (!selected || !prompter || !m_picked.Behaviour().ask)
            return;
        const GridRow former = *selected;
        const auto any = [](const GridRow&, const GridRow*) { return QString(); };
        const RowAsker& asker = m_picked.Behaviour().ask;
        FormDialogSpec dialog = asker.dialog;
        dialog.readOnly = !m_mayEdit;
        const std::optional<GridRow> row = asker.ask(dialog, m_mover->window(), *prompter, &former, any);
        if (!row || !m_mayEdit)
            return;
        ChangeRows([&](PickedLists& lists) {
            for (int column = 0; column < row->cells.size(); ++column)
                lists.SetCells({former.key}, column, row->cells[column]);
        });
    }
    void RefreshButtons() {
        if (m_modify)
            m_modify->setEnabled(m_isUsable && SelectedRow());
        if (!m_up)
            return;
        const int place = PlaceOf(m_mover->SelectedGrid().SelectedKey());
        m_up->setEnabled(m_mayEdit && place > 0);
        m_down->setEnabled(m_mayEdit && place >= 0 && place + 1 < m_picked.Lists().Selected().size());
    }

    PickedField& m_picked;
    TwoListMover* m_mover = nullptr;
    FormView* m_settings = nullptr;
    QPushButton* m_modify = nullptr;
    QPushButton* m_up = nullptr; // only where the order of the selected rows means something
    QPushButton* m_down = nullptr;
    bool m_isUsable = false;
    bool m_mayEdit = false;
    bool m_changing = false;
};

} // namespace

void RegisterListEditors() {
    static const EditorFor<RowsField, RowsEditor> rowsEditor;
    static const EditorFor<CheckedField, CheckedEditor> checkedEditor;
    static const EditorFor<PickedField, PickedEditor> pickedEditor;
}

} // namespace sysadmin
