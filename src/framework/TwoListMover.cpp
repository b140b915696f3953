#include "framework/TwoListMover.h"

#include "core/Prompter.h"
#include "framework/ListGrid.h"
#include "framework/Utility.h"
#include "framework/forms/ListFields.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace sysadmin {

namespace {

constexpr int NameWidth = 115;

QVBoxLayout* FilterAboveGrid(ListGrid& grid) {
    auto* layout = new QVBoxLayout;
    layout->addWidget(grid.FilterBox());
    layout->addWidget(&grid, 1);
    return layout;
}

} // namespace

TwoListMover::TwoListMover(const PickedNames& names, const PickedLists& lists, Owner owner, QWidget* parent,
                           const QList<GridColumn>& more,
                           const std::optional<QList<GridColumn>>& availableMore)
    : QWidget(parent)
    , m_lists(lists)
    , m_owner(std::move(owner))
    , m_available(MakeGrid(names.availableGrid, names.availableCaption, availableMore.value_or(more)))
    , m_selected(MakeGrid(names.selectedGrid, names.selectedCaption, more)) {
    const QString intoSelected = names.selectedCaption;
    const QString intoAvailable = names.availableCaption;
    m_select = MakeButton(names.select, ">", tr("Move the highlighted rows to \"%1\"").arg(intoSelected),
                          &TwoListMover::Select);
    m_selectAll = MakeButton(names.selectAll, ">>", tr("Move all shown rows to \"%1\"").arg(intoSelected),
                             &TwoListMover::SelectAll);
    m_discard = MakeButton(names.discard, "<", tr("Move the highlighted rows to \"%1\"").arg(intoAvailable),
                           &TwoListMover::Discard);
    m_discardAll = MakeButton(names.discardAll, "<<", tr("Move all shown rows to \"%1\"").arg(intoAvailable),
                              &TwoListMover::DiscardAll);

    auto* buttons = new QVBoxLayout;
    buttons->addStretch();
    for (QPushButton* button : {m_select, m_selectAll, m_discard, m_discardAll})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(FilterAboveGrid(*m_available), 1);
    layout->addLayout(buttons);
    layout->addLayout(FilterAboveGrid(*m_selected), 1);
    InTabOrder(FocusWidgets());
    setFocusProxy(m_available);

    connect(m_available, &ListGrid::RowActivated, this, &TwoListMover::Select);
    connect(m_selected, &ListGrid::RowActivated, this, &TwoListMover::Discard);
    connect(m_available, &ListGrid::SelectionMoved, this, &TwoListMover::RefreshButtons);
    connect(m_selected, &ListGrid::SelectionMoved, this, &TwoListMover::RefreshButtons);
    connect(&m_available->Model(), &GridModel::layoutChanged, this,
            [this] { FollowOrder(*m_available, false); });
    connect(&m_selected->Model(), &GridModel::layoutChanged, this,
            [this] { FollowOrder(*m_selected, true); });
    Refresh();
}

QList<QWidget*> TwoListMover::FocusWidgets() const {
    return {m_available->FilterBox(), m_available, m_select, m_selectAll, m_discard, m_discardAll,
            m_selected->FilterBox(),  m_selected};
}

void TwoListMover::Refresh() {
    Show(*m_available, false);
    Show(*m_selected, true);
    RefreshButtons();
}

void TwoListMover::RefreshInPlace() {
    const bool wasMoving = std::exchange(m_isMoving, true);
    Refresh();
    m_isMoving = wasMoving;
}

// Rows that come from elsewhere belong to another record: a filter typed for the last one would hide them.
void TwoListMover::Show(ListGrid& grid, bool selected) {
    const quint64 revision = m_lists.Revision(selected);
    if (std::exchange(m_shownRevisions[selected], revision) == revision)
        return;
    const QList<GridRow>& rows = selected ? m_lists.Selected() : m_lists.Available();
    if (m_isMoving)
        grid.ReplaceRows(rows);
    else
        grid.SetRows(rows);
}

void TwoListMover::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    RefreshButtons();
}

void TwoListMover::SetPrompter(Prompter& prompter) {
    m_available->SetPrompter(prompter);
    m_selected->SetPrompter(prompter);
}

ListGrid* TwoListMover::MakeGrid(const QString& name, const QString& caption, const QList<GridColumn>& more) {
    const auto visible =
        std::count_if(more.begin(), more.end(), [](const auto& each) { return !each.hidden; });
    // Beside many columns the name would be squeezed.
    const GridColumn first{.caption = caption, .width = visible > 2 ? NameWidth : 0};
    auto* grid = new ListGrid(name, QList<GridColumn>{first} + more, this);
    grid->setAccessibleName(caption);
    grid->FilterBox()->setAccessibleName(tr("Filter for \"%1\"").arg(caption));
    grid->SetMultiSelect(true);
    return grid;
}

QPushButton* TwoListMover::MakeButton(const QString& name, const QString& text, const QString& toolTip,
                                      void (TwoListMover::*slot)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    // Enter belongs to the dialog's or screen's own default button.
    button->setAutoDefault(false);
    button->setFixedWidth(button->fontMetrics().averageCharWidth() * 8);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

void TwoListMover::Select() {
    Shift(*m_available, *m_selected, m_available->SelectedKeys(), true);
}

void TwoListMover::SelectAll() {
    Shift(*m_available, *m_selected, m_available->Model().ShownKeys(), true);
}

void TwoListMover::Discard() {
    Shift(*m_selected, *m_available, m_selected->SelectedKeys(), false);
}

void TwoListMover::DiscardAll() {
    Shift(*m_selected, *m_available, m_selected->Model().ShownKeys(), false);
}

// The moved rows are highlighted where they arrive; where they left, the row that took the first one's place
// is, so that one after the other can be moved without aiming anew.
void TwoListMover::Shift(ListGrid& from, ListGrid& to, QStringList keys, bool toSelected) {
    if (m_readOnly || keys.isEmpty())
        return;
    if (const QString refusal = m_veto ? m_veto(keys, toSelected) : QString(); !refusal.isEmpty()) {
        if (Prompter* prompter = from.GetPrompter())
            prompter->ShowBox(window(), {.text = refusal});
        return;
    }
    if (Prompter* prompter = from.GetPrompter(); prompter && m_admit)
        keys = m_admit(keys, toSelected, *prompter, window());
    if (keys.isEmpty())
        return;
    const int place = from.Model().DisplayRow(keys.first());
    m_isMoving = true;
    m_owner([&](PickedLists& lists) {
        if (toSelected)
            lists.MoveToSelected(keys);
        else
            lists.MoveToAvailable(keys);
    });
    Refresh();
    m_isMoving = false;
    FollowOrder(to, toSelected);
    const int last = from.Model().rowCount() - 1;
    if (last >= 0)
        from.SelectKey(from.Model().RowAt(std::min(place, last)).key);
    to.SelectKeys(keys);
    emit Changed();
}

// Rows are sent in the order in which the grid shows them.
void TwoListMover::FollowOrder(ListGrid& grid, bool selected) {
    if (m_isMoving || grid.Model().SortColumn() < 0)
        return;
    m_isMoving = true;
    Refresh();
    if (const std::vector<int> order = grid.Model().SortedPlaces();
        !std::is_sorted(order.begin(), order.end())) {
        m_owner([&](PickedLists& lists) { lists.Arrange(order, selected); });
        Refresh();
    }
    m_isMoving = false;
}

void TwoListMover::RefreshButtons() {
    if (!m_discardAll)
        return;
    m_select->setEnabled(!m_readOnly && !m_available->SelectedKey().isEmpty());
    m_selectAll->setEnabled(!m_readOnly && m_available->Model().rowCount() > 0);
    m_discard->setEnabled(!m_readOnly && !m_selected->SelectedKey().isEmpty());
    m_discardAll->setEnabled(!m_readOnly && m_selected->Model().rowCount() > 0);
}

} // namespace sysadmin

#include "moc_TwoListMover.cpp"
