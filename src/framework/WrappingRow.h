#pragma once

#include <QWidget>

class QGridLayout;

namespace sysadmin {

/// Widgets side by side, in their order: as many in a line as there is room for, the others in further lines.
/// What comes below each other is as wide as what is above it.
class WrappingRow : public QWidget {
    Q_OBJECT

public:
    /// A line holds `most` widgets at the most.
    WrappingRow(int most, QWidget* parent);

    void Add(QWidget* widget);
    /// How many widgets a line holds now.
    int Columns() const { return m_columns; }
    /// As narrow as the widest widget; as high as the lines are now.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    QList<QWidget*> Shown() const;
    int ColumnsThatFit(const QList<QWidget*>& widgets) const;
    void Arrange();

    QGridLayout* m_grid = nullptr;
    QList<QWidget*> m_widgets;
    QList<QWidget*> m_placed;
    int m_most;
    int m_columns = 1;
};

} // namespace sysadmin
