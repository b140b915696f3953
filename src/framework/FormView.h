#pragma once

#include "framework/FieldEditor.h"
#include "framework/forms/Layout.h"

#include <QWidget>

#include <functional>
#include <map>

class QGridLayout;
class QLabel;

namespace sysadmin {

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

private:
    void DrawColumn(const QList<Layout>& children, QWidget* parent);
    /// Draws a child into the grid from a cell on; answers the first free column behind it.
    int DrawChild(const Layout& child, QWidget* parent, QGridLayout& grid, int row, int column, bool inRow);
    int DrawField(Field& field, QWidget* parent, QGridLayout& grid, int row, int column, bool inRow);
    QWidget* DrawFrame(const Layout& frame, QWidget* parent);
    QWidget* DrawTabs(const Layout& tabs, QWidget* parent);
    void RefreshField(Field* field);

    Form& m_form;
    SlotMaker m_makeSlot;
    std::map<const Field*, std::unique_ptr<FieldEditor>> m_editors;
    std::map<const Field*, QLabel*> m_labels;
    QList<QWidget*> m_tabOrder;
    bool m_readOnly = false;
};

} // namespace sysadmin
