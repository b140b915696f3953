#include "framework/FormView.h"

#include "framework/Captions.h"
#include "framework/FieldLabel.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace sysadmin {

FormView::FormView(Form& form, const Layout& layout, QWidget* parent, const SlotMaker& makeSlot)
    : QWidget(parent)
    , m_form(form)
    , m_makeSlot(makeSlot) {
    DrawColumn(layout.kind == Layout::Kind::Below ? layout.children : QList<Layout>{layout}, this);
    for (qsizetype i = 1; i < m_tabOrder.size(); ++i)
        setTabOrder(m_tabOrder[i - 1], m_tabOrder[i]);
    connect(&form, &Form::Changed, this, &FormView::RefreshField);
    connect(&form, &Form::PagesChanged, this, &FormView::RefreshPages);
    connect(&form, &Form::Left, this, [this](Field* field) {
        m_left = field;
        if (field) // once it is known where the focus went: who cancels needs no advice
            QTimer::singleShot(0, this, &FormView::TellLeft);
    });
    for (Field* field : form.Fields())
        RefreshLabel(*field);
    RefreshPages();
    RefreshButtons();
}

void FormView::TellLeft() {
    Field* field = std::exchange(m_left, nullptr);
    const QWidget* focus = window()->focusWidget();
    if (!field || m_readOnly || !field->IsUsable() || !focus || !isAncestorOf(focus))
        return;
    if (const QString problem = m_form.ProblemWhenLeft(field); !problem.isEmpty())
        emit ProblemLeft({field, problem});
}

void FormView::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    for (const std::unique_ptr<FieldEditor>& editor : m_editors)
        editor->SetReadOnly(readOnly);
    for (Field* field : m_form.Fields())
        RefreshLabel(*field);
    RefreshButtons();
}

void FormView::FocusFirst() {
    for (QTabWidget* tabs : findChildren<QTabWidget*>())
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->isTabEnabled(i)) { // the first one, without coming by the others
                tabs->setCurrentIndex(i);
                break;
            }
    for (QWidget* widget : m_tabOrder)
        if (widget->isEnabledTo(this) && widget->focusPolicy() & Qt::TabFocus &&
            !qobject_cast<QTabBar*>(widget)) {
            widget->setFocus(Qt::TabFocusReason);
            return;
        }
}

// Of options it is the widget around them: it hands the focus to the chosen one, while a label's key would
// choose the option that is the label's buddy.
QWidget* FormView::FocusTarget(const FieldEditor& editor) {
    return editor.Widget()->focusProxy() || editor.FocusWidgets().isEmpty() ? editor.Widget()
                                                                            : editor.FocusWidgets().first();
}

void FormView::FocusField(const Field& field) {
    FieldEditor* editor = EditorOf(field);
    if (!editor)
        return;
    QList<QScrollArea*> areas;
    for (QWidget* widget = editor->Widget(); widget; widget = widget->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(widget))
            areas.append(area);
        QWidget* stack = widget->parentWidget();
        if (auto* tabs = stack ? qobject_cast<QTabWidget*>(stack->parentWidget()) : nullptr)
            if (tabs->indexOf(widget) >= 0)
                tabs->setCurrentWidget(widget);
    }
    QWidget* target = FocusTarget(*editor);
    target->setFocus(Qt::TabFocusReason);
    for (QScrollArea* area : areas)
        area->ensureWidgetVisible(target);
}

FieldEditor* FormView::EditorOf(const Field& field) const {
    for (const std::unique_ptr<FieldEditor>& editor : m_editors)
        if (&editor->GetField() == &field)
            return editor.get();
    return nullptr;
}

void FormView::RefreshField(Field* changed) {
    for (const std::unique_ptr<FieldEditor>& editor : m_editors)
        if (&editor->GetField() == changed)
            editor->Refresh();
    RefreshLabel(*changed);
    RefreshButtons();
}

void FormView::RefreshLabel(Field& field) {
    const bool isOn = field.IsUsable() || m_readOnly || field.Spec().displayOnly;
    const auto [label, end] = m_labels.equal_range(&field);
    for (auto each = label; each != end; ++each) {
        each->second->setEnabled(isOn);
        ChangeCaption(*each->second, field.Caption());
        each->second->SetRequired(field.Spec().required && !m_readOnly);
    }
    for (const std::unique_ptr<FieldEditor>& editor : m_editors)
        if (&editor->GetField() == &field && !m_blockNames.count(editor.get()))
            editor->NameControls(SpokenName(field));
    const auto [unit, last] = m_units.equal_range(&field);
    for (auto each = unit; each != last; ++each) {
        each->second->setText(field.Unit());
        each->second->setEnabled(isOn);
    }
}

void FormView::RefreshButtons() {
    for (const auto& [button, mayPress] : m_buttons)
        button->setEnabled(mayPress ? mayPress() : !m_readOnly);
}

// A page that does not belong to the record cannot be opened; where all belong, none is brought to the front.
void FormView::RefreshPages() {
    for (const auto& [tabs, names] : m_tabs) {
        int first = -1;
        bool anyLocked = false;
        for (int i = 0; i < names.size(); ++i) {
            const bool belongs = names[i].isEmpty() || m_form.HasPage(names[i]);
            tabs->setTabEnabled(i, belongs);
            anyLocked = anyLocked || !belongs;
            if (belongs && !names[i].isEmpty() && first < 0)
                first = i;
        }
        if (anyLocked && first >= 0)
            tabs->setCurrentIndex(first);
    }
}

} // namespace sysadmin

#include "moc_FormView.cpp"
