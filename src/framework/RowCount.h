#pragma once

#include <QLabel>

class QPushButton;
class QVBoxLayout;

namespace sysadmin {

class ListGrid;

/// Says below a list how many rows there are, how many of them the filter shows, and how many are selected
/// where that may be several.
class RowCount : public QLabel {
    Q_OBJECT

public:
    RowCount(ListGrid& grid, QWidget* parent);

private:
    void Count();

    ListGrid& m_grid;
};

/// Adds to a widget's layout what a screen has that shows a list and no form: the list with its filter above
/// it and, below, the count of its rows and these buttons. Tab goes through them in this order.
void AddListWithButtons(QVBoxLayout& layout, ListGrid& grid, const QList<QPushButton*>& buttons);

} // namespace sysadmin
