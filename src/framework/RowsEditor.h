#pragma once

#include "framework/FieldEditor.h"
#include "framework/forms/RowsField.h"

class QPushButton;

namespace sysadmin {

class ListGrid;
class Prompter;

/// A grid of rows with the buttons that its field declares: they ask for rows, move and remove them; cells
/// are edited in place.
class RowsEditor : public FieldEditor {
    Q_OBJECT

public:
    RowsEditor(RowsField& field, QWidget* parent);

protected:
    void ShowValue() override;
    void Lock(bool usable, bool readOnly) override;

private:
    QPushButton* MakeButton(const RowButton& button, QWidget* line);
    void Ask(bool isNew);
    QString Filled(const QString& question, const QString& key) const;
    void Remove();
    void Move(const QString& key, int place);
    void EditCell(const QString& key, int column, const QString& value);
    void RefreshButtons();

    RowsField& m_rows;
    ListGrid* m_grid = nullptr;
    QPushButton* m_add = nullptr;
    QPushButton* m_modify = nullptr;
    QPushButton* m_remove = nullptr;
    QPushButton* m_up = nullptr;
    QPushButton* m_down = nullptr;
    QList<GridRow> m_shown;
    bool m_isUsable = false;
    bool m_mayEdit = false;
};

/// Asks the operator for a row of the field (of an empty key: a new one) and takes what is entered. The row's
/// key; empty when the operator gave up. `readOnly` shows the row only.
QString AskForRow(RowsField& field, const QString& key, QWidget* parent, Prompter& prompter,
                  bool readOnly = false);

/// The text that keeps a cell from being taken: not a number in its range; empty when it is fine.
QString CellProblem(const CellEdit& edit, const QString& value);

} // namespace sysadmin
