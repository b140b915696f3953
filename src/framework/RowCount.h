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

/// The list with its filter above it and, below, the count of its rows and these buttons: all of a screen
/// that shows a list and no form. The order of the tab stops is that of the controls.
QVBoxLayout* ListWithButtons(ListGrid& grid, const QList<QPushButton*>& buttons, QWidget* parent);

} // namespace sysadmin
