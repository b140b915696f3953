#pragma once

#include <QLabel>

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

} // namespace sysadmin
