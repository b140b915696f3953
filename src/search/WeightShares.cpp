#include "search/WeightShares.h"

#include "framework/SpokenPicture.h"
#include "look/FlatPaint.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr qsizetype MostBars = 7; ///< what is smaller is shown together
constexpr int Margin = 6;
constexpr int ValueRoom = 90;

QString Percent(qreal part) {
    return QLocale().toString(part * 100, 'f', part > 0 && part < 0.1 ? 1 : 0) + " %";
}

/// Colour alone does not tell what has no weight of its own.
QBrush Fill(const QPalette& palette, bool isRest) {
    const QColor colour = flat::Blend(QColor(0x2f, 0x7d, 0xd1), palette.color(QPalette::Base), 0.65);
    return {colour, isRest ? Qt::BDiagPattern : Qt::SolidPattern};
}

} // namespace

WeightShares::WeightShares(QWidget* parent)
    : QWidget(parent)
    , m_spoken(new SpokenPicture(this, [this](const QPoint& point) { return Said(BarAt(point)); })) {
    setObjectName("picShares");
    setAccessibleName(tr("Shares of the weights"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleDescription(InWords());
}

void WeightShares::Show(const QList<WeightShare>& shares) {
    QList<WeightShare> shown = shares;
    std::stable_sort(shown.begin(), shown.end(),
                     [](const WeightShare& one, const WeightShare& other) { return one.part > other.part; });
    if (shown.size() > MostBars) {
        WeightShare others{.place = tr("%1 more places").arg(shown.size() - MostBars + 1), .isRest = true};
        others.label = others.place;
        for (qsizetype i = MostBars - 1; i < shown.size(); ++i) {
            others.weight += shown[i].weight;
            others.part += shown[i].part;
        }
        shown.resize(MostBars - 1);
        shown.append(others);
    }
    if (shown == m_shares)
        return;
    m_shares = shown;
    m_bar = qBound(qsizetype(0), m_bar, qMax(qsizetype(0), m_shares.size() - 1));
    setAccessibleDescription(InWords());
    update();
}

QString WeightShares::Said(qsizetype bar) const {
    if (bar < 0 || bar >= m_shares.size())
        return {};
    const WeightShare& share = m_shares[bar];
    return share.isTaken ? tr("%1: weight %2, %3").arg(share.place).arg(share.weight).arg(Percent(share.part))
                         : tr("%1: not taken by the index").arg(share.place);
}

QString WeightShares::InWords() const {
    if (m_shares.isEmpty())
        return tr("No index is chosen.");
    return tr("%1 (%2 of %3)").arg(Said(m_bar)).arg(m_bar + 1).arg(m_shares.size());
}

int WeightShares::LineHeight() const {
    return fontMetrics().height() + 8;
}

QSize WeightShares::sizeHint() const {
    return {480, minimumSizeHint().height()};
}

QSize WeightShares::minimumSizeHint() const {
    return {240, LineHeight() * int(MostBars) + 2 * Margin};
}

QRect WeightShares::LineOf(qsizetype bar) const {
    return {Margin, Margin + int(bar) * LineHeight(), width() - 2 * Margin, LineHeight()};
}

qsizetype WeightShares::BarAt(const QPoint& point) const {
    for (qsizetype i = 0; i < m_shares.size(); ++i)
        if (LineOf(i).contains(point))
            return i;
    return -1;
}

void WeightShares::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    flat::Box(painter, rect(), palette().color(QPalette::Base), palette().color(QPalette::Mid));
    if (m_shares.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter, InWords());
        return;
    }
    int labels = 0;
    for (const WeightShare& share : m_shares)
        labels = qMax(labels, fontMetrics().horizontalAdvance(share.label));
    labels = qMin(labels + 2, width() * 2 / 5); // what fits exactly would be cut by a fraction of a pixel
    for (qsizetype i = 0; i < m_shares.size(); ++i)
        PaintBar(painter, i, labels);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(LineOf(m_bar)).adjusted(1, 1, -1, -1), 3, 3);
    }
}

/// The place, its bar as long as its share of the greatest one, and the share in figures.
void WeightShares::PaintBar(QPainter& painter, qsizetype bar, int labels) const {
    const WeightShare& share = m_shares[bar];
    const QRect line = LineOf(bar).adjusted(Margin, 0, -Margin, 0);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(line.left(), line.top(), labels, line.height()), Qt::AlignVCenter,
                     fontMetrics().elidedText(share.label, Qt::ElideRight, labels));
    const int left = line.left() + labels + 2 * Margin;
    const qreal greatest = m_shares.first().part;
    const qreal room = qMax(0, line.right() - left - ValueRoom);
    const qreal length = greatest > 0 ? room * share.part / greatest : 0;
    if (length > 0) {
        const QRectF box(left, line.top() + 4, qMax(length, qreal(2)), line.height() - 8);
        painter.fillRect(box, Fill(palette(), share.isRest));
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(box);
    }
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(left + int(length) + Margin, line.top(), ValueRoom, line.height()),
                     Qt::AlignVCenter, share.isTaken ? Percent(share.part) : tr("not taken"));
}

void WeightShares::GoTo(qsizetype bar) {
    if (m_shares.isEmpty())
        return;
    m_bar = qBound(qsizetype(0), bar, m_shares.size() - 1);
    m_spoken->Say(InWords());
    update();
}

void WeightShares::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        return GoTo(m_bar - 1);
    case Qt::Key_Down:
    case Qt::Key_Right:
        return GoTo(m_bar + 1);
    case Qt::Key_Home:
        return GoTo(0);
    case Qt::Key_End:
        return GoTo(m_shares.size() - 1);
    default:
        QWidget::keyPressEvent(event);
    }
}

void WeightShares::mousePressEvent(QMouseEvent* event) {
    if (const qsizetype bar = BarAt(event->pos()); bar >= 0 && event->button() == Qt::LeftButton)
        GoTo(bar);
}

} // namespace sysadmin

#include "moc_WeightShares.cpp"
