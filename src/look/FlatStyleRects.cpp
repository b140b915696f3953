#include "look/FlatStyle.h"

#include <QStyleOption>

namespace sysadmin {

namespace {

// Without arrow buttons the whole bar is groove.
QRect ScrollBarRect(const FlatStyle& style, const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const bool horizontal = bar.orientation == Qt::Horizontal;
    const int length = horizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    int slider = length;
    if (range > 0) {
        slider = int(qint64(bar.pageStep) * length / (range + bar.pageStep));
        const int least = style.pixelMetric(QStyle::PM_ScrollBarSliderMin, &bar, nullptr);
        slider = qBound(qMin(length, least), slider, length);
    }
    const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - slider, bar.upsideDown);
    const auto along = [&](int from, int to) {
        const QRect rect = horizontal ? QRect(from, 0, to - from, bar.rect.height())
                                      : QRect(0, from, bar.rect.width(), to - from);
        return QStyle::visualRect(bar.direction, bar.rect, rect.translated(bar.rect.topLeft()));
    };
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    case QStyle::SC_ScrollBarSlider:
        return along(start, start + slider);
    case QStyle::SC_ScrollBarSubPage:
        return along(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return along(start + slider, length);
    default:
        return {};
    }
}

// The caption stands above the frame, not in its line.
QRect GroupBoxRect(const FlatStyle& style, const QStyleOptionGroupBox& box, QStyle::SubControl part) {
    const bool checkable = box.subControls & QStyle::SC_GroupBoxCheckBox;
    const int indicator = style.pixelMetric(QStyle::PM_IndicatorWidth, &box, nullptr);
    int captionHeight = box.text.isEmpty() ? 0 : box.fontMetrics.height() + 6;
    if (checkable)
        captionHeight = qMax(captionHeight, indicator + 6);
    const QRect frame = box.rect.adjusted(0, captionHeight, 0, 0);
    const QRect caption(box.rect.left(), box.rect.top(), box.rect.width(), captionHeight - 2);
    const auto visual = [&](const QRect& rect) { return QStyle::visualRect(box.direction, box.rect, rect); };
    switch (part) {
    case QStyle::SC_GroupBoxFrame:
        return frame;
    case QStyle::SC_GroupBoxContents:
        return box.features & QStyleOptionFrame::Flat ? frame : frame.adjusted(1, 1, -1, -1);
    case QStyle::SC_GroupBoxCheckBox:
        return visual({caption.left(), caption.center().y() - indicator / 2, indicator, indicator});
    case QStyle::SC_GroupBoxLabel:
        return visual(caption.adjusted(checkable ? indicator + 8 : 0, 0, 0, 0));
    default:
        return box.rect;
    }
}

constexpr int EditMargin = 4;

} // namespace

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && bar)
        return ScrollBarRect(*this, *bar, part);
    if (const auto* box = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
        control == CC_GroupBox && box)
        return GroupBoxRect(*this, *box, part);
    const QRect base = QProxyStyle::subControlRect(control, option, part, widget);
    const bool text = (control == CC_ComboBox && part == SC_ComboBoxEditField) ||
                      (control == CC_SpinBox && part == SC_SpinBoxEditField);
    return text ? base.adjusted(option->direction == Qt::LeftToRight ? EditMargin : 0, 0,
                                option->direction == Qt::LeftToRight ? 0 : -EditMargin, 0)
                : base;
}

} // namespace sysadmin
