#pragma once

#include <QWidget>

class QBoxLayout;

namespace sysadmin {

/// A list and the fields of its selected row: beside each other where there is room for both, else the fields
/// below the list.
class BesideOrBelow : public QWidget {
    Q_OBJECT

public:
    explicit BesideOrBelow(QWidget* parent);
    /// The list is at least so wide, in pixels, with the fields beside it.
    void Place(QWidget* list, QWidget* fields, int leastList);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QBoxLayout* m_layout;
    QWidget* m_list = nullptr;
    QWidget* m_fields = nullptr;
    int m_leastList = 0;
};

} // namespace sysadmin
