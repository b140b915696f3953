#pragma once

#include "framework/FieldEditor.h"
#include "framework/forms/Layout.h"

#include <QWidget>

#include <functional>
#include <map>
#include <vector>

class QGridLayout;
class QLabel;
class QPushButton;
class QTabWidget;

namespace sysadmin {

class FieldLabel;

/// Draws a form from its layout description: each kind of field with one kind of control, labels as buddies,
/// tab order as described.
class FormView : public QWidget {
    Q_OBJECT

public:
    /// Makes the widget of a slot by the slot's name; the view takes it over.
    using SlotMaker = std::function<QWidget*(const QString& name)>;

    FormView(Form& form, const Layout& layout, QWidget* parent = nullptr, const SlotMaker& makeSlot = {});

    /// Locks every field for display.
    void SetReadOnly(bool readOnly);
    bool IsReadOnly() const { return m_readOnly; }
    /// Puts the focus into the first field that takes it, on the first page.
    void FocusFirst();
    /// What the Tab key comes by, in this order.
    const QList<QWidget*>& TabOrder() const { return m_tabOrder; }
    /// Shows the page of the field and puts the focus into it.
    void FocusField(const Field& field);
    FieldEditor* EditorOf(const Field& field) const;
    Form& GetForm() const { return m_form; }

    /// The view in a frame that lets it be scrolled where the window is smaller than the form.
    QWidget* InScrollArea(QWidget* parent);

signals:
    /// A field was left with what is to be told at once, and the operator goes on in the view.
    void ProblemLeft(const Form::Finding& finding);

private:
    /// What takes the focus for a field.
    static QWidget* FocusTarget(const FieldEditor& editor);
    void DrawColumn(const QList<Layout>& children, QWidget* parent);
    /// Draws a child into the grid from a cell on; answers the first free column behind it.
    int DrawChild(const Layout& child, QWidget* parent, QGridLayout& grid, int row, int column, bool inRow);
    int DrawField(Field& field, const QString& name, QWidget* parent, QGridLayout& grid, int row, int column,
                  bool inRow);
    QWidget* DrawFrame(const Layout& frame, QWidget* parent);
    QWidget* DrawTabs(const Layout& tabs, QWidget* parent);
    QWidget* DrawBlock(const Layout& block, QWidget* parent);
    QWidget* DrawButton(const Layout& button, QWidget* parent);
    QString ChoosingName(const QString& control) const;
    QWidget* DrawChoosing(Field& field, QWidget* parent);
    FieldEditor& AddEditor(Field& field, QWidget* parent);
    void RefreshField(Field* field);
    void RefreshLabel(Field& field);
    void RefreshButtons();
    void RefreshPages();
    void TellLeft();

    Form& m_form;
    SlotMaker m_makeSlot;
    std::vector<std::unique_ptr<FieldEditor>> m_editors; // several of a field that stands in several places
    std::map<const FieldEditor*, QString> m_blockNames;  // where row and column say what a field is
    std::multimap<const Field*, FieldLabel*> m_labels;
    std::multimap<const Field*, QLabel*> m_units;
    std::vector<std::pair<QPushButton*, std::function<bool()>>> m_buttons;
    QList<std::pair<QTabWidget*, QStringList>> m_tabs; // with the names of their pages
    QList<QWidget*> m_tabOrder;
    Field* m_left = nullptr; // and not told about yet
    bool m_readOnly = false;
};

} // namespace sysadmin
