#include "core/NavigationDelegate.h"

#include "look/FlatPaint.h"

#include <QIcon>
#include <QPainter>
#include <QTreeView>

namespace sysadmin {

namespace {

constexpr int SmallIcon = 18;
constexpr int LargeIcon = 34;
constexpr int Margin = 6;  // around the rounded back of a row
constexpr int Padding = 8; // inside it
constexpr int Gap = 10;    // between picture and caption
constexpr int GroupHeight = 36;

bool IsGroup(const QModelIndex& index) {
    return !index.parent().isValid();
}
bool IsLarge(const QModelIndex& index) {
    return index.data(NavigationDelegate::LargeRole).toBool();
}

QFont GroupFont(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

// The part of a row of this width that its caption may take.
QRect CaptionArea(const QRect& row, bool large) {
    const QRect inner = row.adjusted(Margin + Padding, 0, -(Margin + Padding), 0);
    return large ? inner.adjusted(0, Padding + LargeIcon + 4, 0, 0)
                 : inner.adjusted(Padding + SmallIcon + Gap, 0, 0, 0);
}

int WrapFlags(bool large) {
    return Qt::TextWordWrap | (large ? Qt::AlignHCenter | Qt::AlignTop : Qt::AlignVCenter);
}

} // namespace

NavigationDelegate::NavigationDelegate(QTreeView* view)
    : QStyledItemDelegate(view)
    , m_view(view) {}

QSize NavigationDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int width = m_view->viewport()->width();
    if (IsGroup(index))
        return {width, qMax(GroupHeight, option.fontMetrics.height() + 2 * Padding)};
    const bool large = IsLarge(index);
    const QRect area = CaptionArea(QRect(0, 0, width, 10000), large);
    const QString caption = index.data(Qt::DisplayRole).toString();
    const int textHeight = option.fontMetrics.boundingRect(area, WrapFlags(large), caption).height();
    const QString detail = index.data(NavigationDelegate::DetailRole).toString();
    const int detailHeight =
        detail.isEmpty() ? 0 : option.fontMetrics.boundingRect(area, WrapFlags(large), detail).height();
    return {width, large ? Padding + LargeIcon + 4 + textHeight + Padding
                         : qMax(SmallIcon, textHeight + detailHeight) + 12};
}

void NavigationDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (IsGroup(index))
        PaintGroup(painter, option, index);
    else
        PaintItem(painter, option, index);
    painter->restore();
}

void NavigationDelegate::PaintGroup(QPainter* painter, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
    const QPalette& palette = option.palette;
    const bool hovered = option.state & QStyle::State_MouseOver;
    const bool focused = (option.state & QStyle::State_HasFocus) && m_view->hasFocus();
    const QRectF back = QRectF(option.rect).adjusted(Margin - 2, 2, -(Margin - 2), -2);
    if (hovered || focused) {
        painter->setPen(focused ? QPen(palette.color(QPalette::Highlight), 1.5) : QPen(Qt::NoPen));
        painter->setBrush(flat::Blend(palette.color(QPalette::Text), palette.color(QPalette::Window), 0.06));
        painter->drawRoundedRect(back, 6, 6);
    }

    const QRect inner = option.rect.adjusted(Margin + Padding, 0, -(Margin + Padding), 0);
    const QRect picture(inner.left(), inner.center().y() - SmallIcon / 2 + 1, SmallIcon, SmallIcon);
    index.data(Qt::DecorationRole).value<QIcon>().paint(painter, picture);
    painter->setFont(GroupFont(option.font));
    painter->setPen(palette.color(QPalette::WindowText));
    const QRect area = inner.adjusted(SmallIcon + Gap, 0, -20, 0);
    painter->drawText(
        area, Qt::AlignVCenter,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideMiddle, area.width()));

    // A chevron: down while the group is open, right while it is closed.
    painter->translate(inner.right() - 6, inner.center().y() + 0.5);
    if (!m_view->isExpanded(index))
        painter->rotate(-90);
    painter->setPen(
        QPen(palette.color(QPalette::PlaceholderText), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF chevron[] = {{-4, -2}, {0, 2}, {4, -2}};
    painter->drawPolyline(chevron, 3);
}

void NavigationDelegate::PaintItem(QPainter* painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    const QPalette& palette = option.palette;
    const bool marked = option.state & QStyle::State_Selected;
    const bool hovered = option.state & QStyle::State_MouseOver;
    const bool focused = (option.state & QStyle::State_HasFocus) && m_view->hasFocus();
    const bool large = IsLarge(index);

    const QRectF back = QRectF(option.rect).adjusted(Margin, 1, -Margin, -1);
    if (marked || hovered || focused) {
        const QColor tint = marked ? palette.color(QPalette::Highlight) : palette.color(QPalette::Text);
        painter->setPen(focused ? QPen(palette.color(QPalette::Highlight), 1.5) : QPen(Qt::NoPen));
        painter->setBrush(flat::Blend(tint, palette.color(QPalette::Window), marked ? 0.18 : 0.06));
        painter->drawRoundedRect(focused ? back.adjusted(1, 1, -1, -1) : back, 6, 6);
    }

    const QRect area = CaptionArea(option.rect, large);
    const QIcon icon = index.data(Qt::DecorationRole).value<QIcon>();
    if (large)
        icon.paint(painter, option.rect.center().x() - LargeIcon / 2, option.rect.top() + Padding, LargeIcon,
                   LargeIcon);
    else
        icon.paint(painter, area.left() - Gap - SmallIcon, option.rect.center().y() - SmallIcon / 2 + 1,
                   SmallIcon, SmallIcon);
    painter->setPen(palette.color(marked ? QPalette::Link : QPalette::WindowText));
    const QString detail = index.data(DetailRole).toString();
    if (detail.isEmpty()) {
        painter->drawText(area, WrapFlags(large), index.data().toString());
        return;
    }
    const QRect inner = area.adjusted(0, 6, 0, -6);
    QRect caption;
    painter->drawText(inner, Qt::TextWordWrap | Qt::AlignTop, index.data().toString(), &caption);
    painter->setPen(palette.color(QPalette::PlaceholderText));
    painter->drawText(inner.adjusted(0, caption.height(), 0, 0), Qt::TextWordWrap | Qt::AlignTop, detail);
}

} // namespace sysadmin

#include "moc_NavigationDelegate.cpp"
