#include "framework/WrappingRow.h"

#include <QEvent>
#include <QGridLayout>

#include <algorithm>
#include <numeric>

namespace sysadmin {

namespace {

int LeastWidth(const QWidget& widget) {
    return qMax(widget.minimumWidth(), widget.minimumSizeHint().width());
}

} // namespace

WrappingRow::WrappingRow(int most, QWidget* parent)
    : QWidget(parent)
    , m_most(most) {
    m_grid = new QGridLayout(this);
    m_grid->setContentsMargins({});
}

void WrappingRow::Add(QWidget* widget) {
    m_widgets.append(widget);
    Arrange();
}

QSize WrappingRow::minimumSizeHint() const {
    int width = 0;
    for (const QWidget* widget : Shown())
        width = qMax(width, LeastWidth(*widget));
    return {width, m_grid->totalMinimumSize().height()};
}

void WrappingRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Arrange();
}

bool WrappingRow::event(QEvent* event) {
    // A widget wants more or less room than before, with another font or caption.
    if (event->type() == QEvent::LayoutRequest)
        Arrange();
    return QWidget::event(event);
}

QList<QWidget*> WrappingRow::Shown() const {
    QList<QWidget*> shown = m_widgets;
    shown.removeIf([](const QWidget* widget) {
        return widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
    });
    return shown;
}

int WrappingRow::ColumnsThatFit(const QList<QWidget*>& widgets) const {
    for (int columns = int(std::min(qsizetype(m_most), widgets.size())); columns > 1; --columns) {
        QList<int> widths(columns, 0);
        for (qsizetype i = 0; i < widgets.size(); ++i) {
            int& width = widths[i % columns];
            width = qMax(width, LeastWidth(*widgets[i]));
        }
        const int gaps = (columns - 1) * m_grid->horizontalSpacing();
        if (std::accumulate(widths.begin(), widths.end(), gaps) <= width())
            return columns;
    }
    return 1;
}

void WrappingRow::Arrange() {
    const QList<QWidget*> shown = Shown();
    const int columns = ColumnsThatFit(shown);
    if (columns == m_columns && shown == m_placed)
        return;
    for (QWidget* widget : m_widgets)
        m_grid->removeWidget(widget);
    for (int column = 0; column < qMax(columns, m_columns); ++column)
        m_grid->setColumnStretch(column, column < columns ? 1 : 0);
    m_columns = columns;
    m_placed = shown;
    for (qsizetype i = 0; i < shown.size(); ++i)
        m_grid->addWidget(shown[i], int(i / columns), int(i % columns));
    updateGeometry();
}

} // namespace sysadmin

#include "moc_WrappingRow.cpp"
