#include "framework/FormView.h"

#include "framework/Captions.h"
#include "framework/FieldLabel.h"
#include "framework/WrappingRow.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

#include <algorithm>

// How a layout becomes controls; what they do then is in FormView.cpp.
namespace sysadmin {

namespace {

/// Whether what stands in a layout is the better the more height it gets: a frame wants what its children
/// want.
bool WantsHeight(const Layout& layout) {
    if (layout.kind == Layout::Kind::Tabs || (layout.field && layout.field->WantsHeight()))
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

QWidget* FormView::InScrollArea(QWidget* parent) {
    return MakeScrollArea(*this, parent);
}

FieldEditor& FormView::AddEditor(Field& field, QWidget* parent) {
    FieldEditor& editor = *m_editors.emplace_back(MakeFieldEditor(field, parent));
    if (m_form.IsSeveral())
        m_tabOrder.append(DrawChoosing(field, parent));
    m_tabOrder.append(editor.FocusWidgets());
    return editor;
}

/// The name of a control's box, by its role, or where another control has the same role by its name.
QString FormView::ChoosingName(const QString& control) const {
    const QString name = "chkModify" + RoleOf(control);
    return findChild<QCheckBox*>(name) ? "chkModify" + control.left(1).toUpper() + control.mid(1) : name;
}

/// The box that says whether the field is written to the records that are edited together.
QWidget* FormView::DrawChoosing(Field& field, QWidget* parent) {
    auto* box = new QCheckBox(parent);
    box->setObjectName(ChoosingName(field.Name()));
    box->setAccessibleName(tr("Modify %1").arg(field.PlainCaption()));
    box->setToolTip(tr("Writes this field to all selected records."));
    connect(box, &QCheckBox::clicked, this, [&field](bool on) { field.SetChosen(on); });
    connect(&m_form, &Form::Changed, box, [box, &field](const Field* changed) {
        if (changed == &field)
            box->setChecked(field.IsChosen());
    });
    return box;
}

void FormView::DrawColumn(const QList<Layout>& children, QWidget* parent) {
    auto* grid = new QGridLayout(parent);
    if (parent == this)
        grid->setContentsMargins({});
    int row = 0;
    bool stretches = false;
    for (const Layout& child : children) {
        const bool tall = WantsHeight(child);
        if (child.kind == Layout::Kind::Beside) {
            int column = 0;
            for (const Layout& cell : child.children)
                column = DrawChild(cell, parent, *grid, row, column, true);
        } else {
            DrawChild(child, parent, *grid, row, 0, false);
        }
        const QLayoutItem* first = grid->itemAtPosition(row, 0);
        const bool grows = child.kind == Layout::Kind::Slot && first && first->widget() &&
                           first->widget()->sizePolicy().verticalPolicy() & QSizePolicy::ExpandFlag;
        if (tall || grows) {
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
    if (child.kind == Layout::Kind::Field && child.field->Name().isEmpty())
        return column; // a field that has no control of its own
    if (child.kind == Layout::Kind::Field)
        return DrawField(*child.field, child.name, parent, grid, row, column, inRow);

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
    case Layout::Kind::Block:
        widget = DrawBlock(child, parent);
        break;
    case Layout::Kind::Button:
        widget = DrawButton(child, parent);
        break;
    case Layout::Kind::Slot:
        widget = m_makeSlot(child.name);
        widget->setParent(parent);
        if (widget->focusPolicy() != Qt::NoFocus)
            m_tabOrder.append(widget);
        for (QWidget* inner : widget->findChildren<QWidget*>())
            if (inner->focusPolicy() & Qt::TabFocus)
                m_tabOrder.append(inner);
        break;
    default: // a column or row inside another one
        widget = new QWidget(parent);
        DrawColumn(child.kind == Layout::Kind::Beside ? QList<Layout>{child} : child.children, widget);
        widget->layout()->setContentsMargins(inRow && column > 0 ? ColumnGap : 0, 0, 0, 0);
    }
    const int span = inRow ? CellsOfField : -1;
    Qt::Alignment alignment;
    const bool isWide =
        child.kind == Layout::Kind::Slot && widget->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag;
    if ((child.kind == Layout::Kind::Slot && !isWide) || child.kind == Layout::Kind::Button)
        alignment = Qt::AlignLeft;
    else if (child.kind == Layout::Kind::Beside && inRow && !WantsHeight(child))
        alignment = Qt::AlignVCenter; // on one line with what stands beside it
    grid.addWidget(widget, row, column, 1, span, alignment);
    return column + CellsOfField;
}

int FormView::DrawField(Field& field, const QString& name, QWidget* parent, QGridLayout& grid, int row,
                        int column, bool inRow) {
    const bool labelled = !field.ShowsOwnCaption() && !field.Caption().isEmpty();
    FieldEditor& editor = AddEditor(field, parent);
    QWidget* widget = editor.Widget();
    if (!name.isEmpty()) {
        editor.NamedWidget()->setObjectName(name);
        if (m_form.IsSeveral())
            m_tabOrder[m_tabOrder.size() - editor.FocusWidgets().size() - 1]->setObjectName(
                ChoosingName(name));
    }
    if (labelled) {
        auto* label = new FieldLabel(field.Caption(), parent);
        const QString& control = name.isEmpty() ? field.Name() : name;
        label->setObjectName("lbl" + RoleOf(control));
        if (label->objectName() == control) // a value that is given as a label
            label->setObjectName(control + "Caption");
        SetDeclaredCaption(*label, field.Caption());
        label->setBuddy(FocusTarget(editor));
        grid.addWidget(label, row, column, field.WantsHeight() ? Qt::AlignTop : Qt::AlignVCenter);
        m_labels.insert({&field, label});
    }

    QWidget* placed = widget;
    const bool hasUnit = !field.Unit().isEmpty() || !field.Spec().unit.isEmpty(); // or may have one later
    if (hasUnit || m_form.IsSeveral()) {
        placed = new QWidget(parent);
        auto* line = new QHBoxLayout(placed);
        line->setContentsMargins({});
        if (m_form.IsSeveral())
            line->addWidget(m_tabOrder[m_tabOrder.size() - editor.FocusWidgets().size() - 1]);
        line->addWidget(widget);
        if (hasUnit) {
            auto* unit = new QLabel(field.Unit(), placed);
            unit->setObjectName("unit" + RoleOf(name.isEmpty() ? field.Name() : name));
            m_units.insert({&field, unit});
            line->addWidget(unit);
        }
        if (!field.WantsHeight())
            line->addStretch();
    }
    const int first = labelled ? column + 1 : column;
    const int span = !inRow ? -1 : labelled ? 1 : CellsOfField;
    const bool narrow = widget->maximumWidth() < QWIDGETSIZE_MAX || qobject_cast<QAbstractButton*>(widget);
    grid.addWidget(placed, row, first, 1, span, narrow && placed == widget ? Qt::AlignLeft : Qt::Alignment());
    return column + CellsOfField;
}

QWidget* FormView::DrawBlock(const Layout& block, QWidget* parent) {
    auto* widget = new QWidget(parent);
    auto* grid = new QGridLayout(widget);
    grid->setContentsMargins({});
    for (int column = 0; column < block.headings.size(); ++column)
        grid->addWidget(new QLabel(block.headings[column], widget), 0, column + 1);
    for (int row = 0; row < block.children.size(); ++row) {
        const Layout& line = block.children[row];
        auto* heading = new QLabel(line.text, widget);
        grid->addWidget(heading, row + 1, 0);
        for (int column = 0; column < line.children.size(); ++column) {
            const Layout& cell = line.children[column];
            if (cell.kind != Layout::Kind::Field) {
                DrawChild(cell, widget, *grid, row + 1, column + 1, true);
                continue;
            }
            FieldEditor& editor = AddEditor(*cell.field, widget);
            QString name = line.text;
            if (const QString top = block.headings.value(column).simplified(); !top.isEmpty())
                name += " " + top;
            m_blockNames[&editor] = name.remove('&');
            editor.NameControls(m_blockNames[&editor]);
            if (column == 0)
                heading->setBuddy(FocusTarget(editor));
            grid->addWidget(editor.Widget(), row + 1, column + 1, Qt::AlignLeft);
        }
    }
    grid->setColumnStretch(int(block.headings.size()) + 1, 1);
    return widget;
}

QWidget* FormView::DrawButton(const Layout& layout, QWidget* parent) {
    auto* button = new QPushButton(layout.text, parent);
    button->setObjectName(layout.name);
    button->setAutoDefault(false); // Enter belongs to the dialog's or screen's own default button
    connect(button, &QPushButton::clicked, this, layout.press);
    m_tabOrder.append(button);
    m_buttons.push_back({button, layout.mayPress});
    return button;
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
    // The bar alone takes the focus: with the tab widget the tab order would take its pages along. (The
    // widget's policy is handed on to its bar.)
    tabs->setFocusPolicy(Qt::NoFocus);
    tabs->tabBar()->setFocusPolicy(Qt::TabFocus);
    tabs->tabBar()->setAccessibleName(tr("Pages"));
    // What scrolls too many tabs is for the mouse; the arrow keys go from tab to tab.
    for (QToolButton* scroller : tabs->tabBar()->findChildren<QToolButton*>())
        scroller->setFocusPolicy(Qt::NoFocus);
    m_tabOrder.append(tabs->tabBar());
    QStringList names;
    for (const Layout& page : layout.children) {
        auto* widget = new QWidget(tabs);
        DrawColumn(page.children, widget);
        // A page of many frames is scrolled by itself: the other pages need not be as high.
        const bool isLong = std::any_of(page.children.begin(), page.children.end(),
                                        [](const Layout& child) { return child.kind == Layout::Kind::Flow; });
        QWidget* shown = isLong ? MakeScrollArea(*widget, tabs) : widget;
        SetDeclaredCaption(*shown, page.text);
        tabs->addTab(shown, page.text);
        names.append(page.name);
    }
    m_tabs.append({tabs, names});
    return tabs;
}

} // namespace sysadmin
