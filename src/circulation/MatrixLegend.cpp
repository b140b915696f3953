#include "circulation/MatrixLegend.h"

#include "circulation/MatrixMap.h"

#include <QPainter>

namespace sysadmin {

namespace {

constexpr int LegendGap = 6;

} // namespace

MatrixLegend::MatrixLegend(QWidget* parent)
    : QWidget(parent) {
    setObjectName("picLegend");
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    SetMeasure(MatrixMeasure::LoanPeriod, false);
}

void MatrixLegend::SetMeasure(MatrixMeasure measure, bool compares) {
    m_classes = MatrixPicture::Classes(measure, false);
    m_parts = m_classes;
    m_parts << tr("%1 not lent").arg(QChar(0x2013)) << tr("no rule");
    if (compares)
        m_parts << tr("differs");
    updateGeometry();
    update();
}

int MatrixLegend::Arrange(int width, const std::function<void(int, const QRect&)>& paint) const {
    const int line = fontMetrics().height() + LegendGap;
    QPoint at(0, 0);
    for (int part = 0; part < m_parts.size(); ++part) {
        const int wanted = line + LegendGap + fontMetrics().horizontalAdvance(m_parts[part]) + 3 * LegendGap;
        if (at.x() > 0 && at.x() + wanted > width)
            at = {0, at.y() + line};
        if (paint)
            paint(part, QRect(at, QSize(wanted, line)));
        at.rx() += wanted;
    }
    return at.y() + line;
}

int MatrixLegend::heightForWidth(int width) const {
    return Arrange(width, {});
}

QSize MatrixLegend::sizeHint() const {
    const int width = fontMetrics().averageCharWidth() * 90;
    return {width, heightForWidth(width)};
}

void MatrixLegend::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Arrange(width(), [&](int part, const QRect& place) {
        const QRect sample(place.left(), place.top() + 1, place.height(), place.height() - 3);
        if (part < m_classes.size())
            painter.fillRect(sample, MatrixMap::ColourOf(palette(), part, int(m_classes.size())));
        else if (part == m_classes.size())
            painter.fillRect(sample, palette().color(QPalette::Base));
        else if (part == m_classes.size() + 1)
            MatrixMap::PaintMissing(painter, sample, palette());
        else
            MatrixMap::PaintDifference(painter, sample);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(palette().color(QPalette::Dark));
        painter.drawRect(sample);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(place.adjusted(place.height() + LegendGap, 0, 0, 0),
                         Qt::AlignVCenter | Qt::AlignLeft, m_parts[part]);
    });
}

} // namespace sysadmin

#include "moc_MatrixLegend.cpp"
