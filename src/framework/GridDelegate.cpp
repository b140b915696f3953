#include "framework/GridDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace sysadmin {

namespace {

QColor Blend(const QColor& under, const QColor& over, double share) {
    const auto mix = [share](int a, int b) { return int(a + (b - a) * share); };
    return QColor(mix(under.red(), over.red()), mix(under.green(), over.green()),
                  mix(under.blue(), over.blue()));
}

} // namespace

bool GridDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const bool isCutOff = sizeHint(option, index).width() > view->visualRect(index).width();
    // A record's text is no markup, whatever it looks like.
    QToolTip::showText(event->globalPos(), isCutOff ? index.data().toString().toHtmlEscaped() : QString(),
                       view);
    return true;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    // The bar says where the cursor is: no frame around a single cell.
    option->state &= ~QStyle::State_HasFocus;
    if (option->state & QStyle::State_Enabled)
        return;
    const QPalette& palette = option->palette;
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const QColor bar = Blend(base, palette.color(QPalette::Active, QPalette::Highlight), 0.3);
    option->palette.setColor(QPalette::Disabled, QPalette::Highlight, bar);
    option->palette.setColor(QPalette::Disabled, QPalette::HighlightedText,
                             palette.color(QPalette::Active, QPalette::Text));
}

} // namespace sysadmin
