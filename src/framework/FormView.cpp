#include "framework/FormView.h"

#include "framework/Captions.h"
#include "framework/WrappingRow.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>

namespace sysadmin {

namespace {

/// Fields that are better the more room they get.
bool WantsHeight(const Field& field) {
    switch (field.GetKind()) {
    case Field::Kind::MultiLine:
    case Field::Kind::Rows:
    case Field::Kind::Picked:
    case Field::Kind::Checked:
        return true;
    default:
        return false;
    }
}

/// The same for whatever stands in a layout: a frame wants what its children want.
bool WantsHeight(const Layout& layout) {
    if (layout.kind == Layout::Kind::Tabs || (layout.field && WantsHeight(*layout.field)))
        return true;
    return std::any_of(layout.children.begin(), layout.children.end(),
                       [](const Layout& child) { return WantsHeight(child); });
}

/// What a control's name says behind the prefix of its type ("StartDate" of "fpStartDate").
QString RoleOf(const QString& controlName) {
    const auto role =
        std::find_if(controlName.begin(), controlName.end(), [](QChar c) { return c.isUpper(); });
    return controlName.mid(role - controlName.begin());
}

/// What takes the focus for a field. Of options it is the widget around them: it hands the focus to the
/// chosen one, while a label's key would choose the option that is the label's buddy.
QWidget* FocusTarget(const FieldEditor& editor) {
    return editor.Widget()->focusProxy() || editor.FocusWidgets().isEmpty() ? editor.Widget()
                                                                            : editor.FocusWidgets().first();
}

/// Lets the widget be scrolled where there is less room than it needs.
QScrollArea* MakeScrollArea(QWidget& widget, QWidget* parent) {
    auto* area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    area->setWidget(&widget);
    widget.setAutoFillBackground(false);
    return area;
}

/// Two cells hold a field: its label and its control.
constexpr int CellsOfField = 2;
/// Between columns that stand side by side.
constexpr int ColumnGap = 24;

} // namespace

FormView::FormView(Form& form, const Layout& layout, QWidget* parent, const SlotMaker& makeSlot)
    : QWidget(parent)
    , m_form(form)
    , m_makeSlot(makeSlot) {
    DrawColumn(layout.kind == Layout::Kind::Column ? layout.children : QList<Layout>{layout}, this);
    for (qsizetype i = 1; i < m_tabOrder.size(); ++i)
        setTabOrder(m_tabOrder[i - 1], m_tabOrder[i]);
    connect(&form, &Form::Changed, this, &FormView::RefreshField);
    // A screen's form goes before the controls: what they still say while they go reaches nobody.
    connect(&form, &QObject::destroyed, this, [this] { m_editors.clear(); });
}

void FormView::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    for (const auto& [field, editor] : m_editors)
        editor->SetReadOnly(readOnly);
}

void FormView::FocusFirst() {
    for (QTabWidget* tabs : findChildren<QTabWidget*>())
        tabs->setCurrentIndex(0);
    for (QWidget* widget : m_tabOrder)
        if (widget->isEnabledTo(this) && widget->focusPolicy() & Qt::TabFocus &&
            !qobject_cast<QTabBar*>(widget)) {
            widget->setFocus(Qt::TabFocusReason);
            return;
        }
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

QWidget* FormView::InScrollArea(QWidget* parent) {
    return MakeScrollArea(*this, parent);
}

FieldEditor* FormView::EditorOf(const Field& field) const {
    const auto found = m_editors.find(&field);
    return found == m_editors.end() ? nullptr : found->second.get();
}

void FormView::DrawColumn(const QList<Layout>& children, QWidget* parent) {
    auto* grid = new QGridLayout(parent);
    if (parent == this)
        grid->setContentsMargins({});
    int row = 0;
    bool stretches = false;
    for (const Layout& child : children) {
        const bool tall = WantsHeight(child);
        if (child.kind == Layout::Kind::Row) {
            int column = 0;
            for (const Layout& cell : child.children)
                column = DrawChild(cell, parent, *grid, row, column, true);
        } else {
            DrawChild(child, parent, *grid, row, 0, false);
        }
        if (tall) {
            grid->setRowStretch(row, 1);
            stretches = true;
        }
        ++row;
    }
    if (!stretches)
        grid->setRowStretch(row, 1);
    grid->setColumnStretch(qMax(1, grid->columnCount() - 1), 1);
}

int FormView::DrawChild(const Layout& child, QWidget* parent, QGridLayout& grid, int row, int column,
                        bool inRow) {
    if (child.kind == Layout::Kind::Field)
        return DrawField(*child.field, parent, grid, row, column, inRow);

    QWidget* widget = nullptr;
    switch (child.kind) {
    case Layout::Kind::Frame:
        widget = DrawFrame(child, parent);
        break;
    case Layout::Kind::Flow: {
        auto* flow = new WrappingRow(child.most, parent);
        for (const Layout& frame : child.children)
            flow->Add(DrawFrame(frame, flow));
        widget = flow;
        break;
    }
    case Layout::Kind::Tabs:
        widget = DrawTabs(child, parent);
        break;
    case Layout::Kind::Note: {
        auto* note = new QLabel(child.text, parent);
        note->setWordWrap(true);
        widget = note;
        break;
    }
    case Layout::Kind::Slot:
        widget = m_makeSlot(child.name);
        widget->setParent(parent);
        if (widget->focusPolicy() != Qt::NoFocus)
            m_tabOrder.append(widget);
        break;
    default: // a column or row inside another one
        widget = new QWidget(parent);
        DrawColumn(child.kind == Layout::Kind::Row ? QList<Layout>{child} : child.children, widget);
        widget->layout()->setContentsMargins(inRow && column > 0 ? ColumnGap : 0, 0, 0, 0);
    }
    const int span = inRow ? CellsOfField : -1;
    grid.addWidget(widget, row, column, 1, span,
                   child.kind == Layout::Kind::Slot ? Qt::AlignLeft : Qt::Alignment());
    return column + CellsOfField;
}

int FormView::DrawField(Field& field, QWidget* parent, QGridLayout& grid, int row, int column, bool inRow) {
    const bool labelled = field.GetKind() != Field::Kind::Flag && field.GetKind() != Field::Kind::Picked &&
                          !field.Spec().caption.isEmpty();
    std::unique_ptr<FieldEditor> editor = MakeFieldEditor(field, parent);
    QWidget* widget = editor->Widget();
    if (labelled) {
        auto* label = new QLabel(field.Spec().caption, parent);
        label->setObjectName("lbl" + RoleOf(field.Name()));
        SetDeclaredCaption(*label, field.Spec().caption);
        label->setBuddy(FocusTarget(*editor));
        grid.addWidget(label, row, column, WantsHeight(field) ? Qt::AlignTop : Qt::AlignVCenter);
        m_labels[&field] = label;
    } else if (field.GetKind() == Field::Kind::Flag) {
        SetDeclaredCaption(*widget, field.Spec().caption);
    }

    QWidget* placed = widget;
    if (!field.Spec().unit.isEmpty()) {
        placed = new QWidget(parent);
        auto* line = new QHBoxLayout(placed);
        line->setContentsMargins({});
        line->addWidget(widget);
        line->addWidget(new QLabel(field.Spec().unit, placed));
        line->addStretch();
    }
    const int first = labelled ? column + 1 : column;
    const int span = !inRow ? -1 : labelled ? 1 : CellsOfField;
    const bool narrow = widget->maximumWidth() < QWIDGETSIZE_MAX || qobject_cast<QAbstractButton*>(widget);
    grid.addWidget(placed, row, first, 1, span, narrow && placed == widget ? Qt::AlignLeft : Qt::Alignment());
    m_tabOrder.append(editor->FocusWidgets());
    m_editors[&field] = std::move(editor);
    return column + CellsOfField;
}

QWidget* FormView::DrawFrame(const Layout& layout, QWidget* parent) {
    auto* frame = new QGroupBox(layout.text, parent);
    frame->setObjectName(layout.name);
    DrawColumn(layout.children, frame);
    return frame;
}

QWidget* FormView::DrawTabs(const Layout& layout, QWidget* parent) {
    auto* tabs = new QTabWidget(parent);
    tabs->setObjectName(layout.name);
    // The bar alone takes the focus: with the tab widget the tab order would take its pages along.
    tabs->setFocusPolicy(Qt::NoFocus);
    m_tabOrder.append(tabs->tabBar());
    for (const Layout& page : layout.children) {
        auto* widget = new QWidget(tabs);
        DrawColumn(page.children, widget);
        // A page of many frames is scrolled by itself: the other pages need not be as high.
        const bool isLong = std::any_of(page.children.begin(), page.children.end(),
                                        [](const Layout& child) { return child.kind == Layout::Kind::Flow; });
        QWidget* shown = isLong ? MakeScrollArea(*widget, tabs) : widget;
        SetDeclaredCaption(*shown, page.text);
        tabs->addTab(shown, page.text);
    }
    return tabs;
}

void FormView::RefreshField(Field* changed) {
    // A flag may rule over other fields' usability, so all are looked at; only what differs is touched.
    for (const auto& [field, editor] : m_editors) {
        if (field == changed ||
            (changed->GetKind() == Field::Kind::Flag && field->IsUsable() != editor->Widget()->isEnabled()))
            editor->Refresh();
        if (const auto label = m_labels.find(field); label != m_labels.end())
            label->second->setEnabled(field->IsUsable());
    }
}

} // namespace sysadmin
