#include "framework/ListEditors.h"

#include "framework/FieldEditor.h"
#include "framework/ListGrid.h"
#include "framework/TwoListMover.h"
#include "framework/forms/ListFields.h"

#include <QListWidget>

namespace sysadmin {

namespace {

/// Shows the rows; adding and changing them is the matter of buttons beside it.
class RowsEditor : public FieldEditor {
public:
    RowsEditor(RowsField& field, QWidget* parent)
        : FieldEditor(field)
        , m_rows(field) {
        m_grid = new ListGrid(field.Name(), field.Columns(), parent);
        m_widget = m_grid;
        m_focusWidgets = {m_grid};
    }

protected:
    void ShowValue() override {
        if (m_shown == m_rows.Rows())
            return;
        m_shown = m_rows.Rows();
        m_grid->ReplaceRows(m_shown);
    }
    void Lock(bool usable, bool) override { m_grid->setEnabled(usable); }

private:
    RowsField& m_rows;
    ListGrid* m_grid;
    QList<GridRow> m_shown;
};

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

class PickedEditor : public FieldEditor {
public:
    PickedEditor(PickedField& field, QWidget* parent)
        : FieldEditor(field)
        , m_picked(field) {
        m_mover = new TwoListMover(
            field.Names(), field.Lists(), [this](const TwoListMover::Move& move) { m_picked.Move(move); },
            parent);
        m_widget = m_mover;
        m_focusWidgets = m_mover->FocusWidgets();
    }

protected:
    void ShowValue() override { m_mover->Refresh(); }
    void Lock(bool usable, bool readOnly) override {
        m_mover->setEnabled(usable);
        m_mover->SetReadOnly(readOnly);
    }

private:
    PickedField& m_picked;
    TwoListMover* m_mover;
};

} // namespace

std::unique_ptr<FieldEditor> MakeListEditor(Field& field, QWidget* parent) {
    switch (field.GetKind()) {
    case Field::Kind::Rows:
        return std::make_unique<RowsEditor>(static_cast<RowsField&>(field), parent);
    case Field::Kind::Checked:
        return std::make_unique<CheckedEditor>(static_cast<CheckedField&>(field), parent);
    default:
        return std::make_unique<PickedEditor>(static_cast<PickedField&>(field), parent);
    }
}

} // namespace sysadmin
