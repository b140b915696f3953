#include "framework/RowCount.h"

#include "framework/ListGrid.h"
#include "framework/Utility.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

RowCount::RowCount(ListGrid& grid, QWidget* parent)
    : QLabel(parent)
    , m_grid(grid) {
    setObjectName("lblRows_" + grid.objectName());
    setForegroundRole(QPalette::PlaceholderText);
    connect(&grid, &ListGrid::SelectionMoved, this, &RowCount::Count);
    Count();
}

void RowCount::Count() {
    const qsizetype all = m_grid.Model().Rows().size();
    const int shown = m_grid.Model().rowCount();
    const QString rows = all == 1 ? tr("1 row") : tr("%L1 rows").arg(all);
    QString text = shown == all ? rows : tr("%L1 of %2").arg(shown).arg(rows);
    if (const qsizetype selected = m_grid.SelectedCount(); selected > 1)
        text += tr(", %L1 selected").arg(selected);
    setText(text);
}

void AddListWithButtons(QVBoxLayout& layout, ListGrid& grid, const QList<QPushButton*>& buttons) {
    layout.addWidget(grid.FilterBox());
    layout.addWidget(&grid, 1);
    auto* below = new QHBoxLayout;
    below->addWidget(new RowCount(grid, layout.parentWidget()), 1);
    QList<QWidget*> order{grid.FilterBox(), &grid};
    for (QPushButton* button : buttons) {
        below->addWidget(button);
        order.append(button);
    }
    layout.addLayout(below);
    InTabOrder(order);
}

} // namespace sysadmin

#include "moc_RowCount.cpp"
