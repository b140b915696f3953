#include "look/FlatPaint.h"
#include "look/FlatStyle.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>

namespace sysadmin {

namespace {

void DrawHeaderSection(const QStyleOptionHeader& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    QColor fill = palette.color(QPalette::Window);
    if (option.state & QStyle::State_Sunken)
        fill = flat::Pressed(palette, fill);
    else if (option.state & QStyle::State_MouseOver)
        fill = flat::Hovered(palette, fill);
    painter.fillRect(option.rect, fill);
    const QColor line = palette.color(QPalette::Mid);
    if (option.orientation == Qt::Horizontal) {
        painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), line);
        const bool last = option.position == QStyleOptionHeader::End ||
                          option.position == QStyleOptionHeader::OnlyOneSection;
        if (!last)
            painter.fillRect(QRect(option.rect.right(), option.rect.top() + 6, 1, option.rect.height() - 12),
                             line);
    } else {
        painter.fillRect(QRect(option.rect.right(), option.rect.top(), 1, option.rect.height()), line);
    }
}

void DrawTabShape(const QStyleOptionTab& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    const bool selected = option.state & QStyle::State_Selected;
    const bool hovered = option.state & QStyle::State_MouseOver;
    if (hovered && !selected)
        painter.fillRect(option.rect.adjusted(0, 0, 0, -1),
                         flat::Hovered(palette, palette.color(QPalette::Window)));
    if (!selected)
        return;
    const QRect& rect = option.rect;
    // A bar of tabs lies at one edge of its page; the accent marks the edge between them.
    const bool below = option.shape == QTabBar::RoundedSouth || option.shape == QTabBar::TriangularSouth;
    const QRect mark(rect.left() + 8, below ? rect.top() : rect.bottom() - 2, rect.width() - 16, 3);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::Highlight));
    painter.drawRoundedRect(mark, 1.5, 1.5);
    if (option.state & QStyle::State_HasFocus)
        flat::Box(painter, rect.adjusted(4, 4, -4, -5), {}, palette.color(QPalette::Highlight));
}

void DrawMenuBarItem(const QStyleOptionMenuItem& option, QPainter& painter, const QStyle& style) {
    const QPalette& palette = option.palette;
    painter.fillRect(option.rect, palette.color(QPalette::Window));
    if (option.state & (QStyle::State_Selected | QStyle::State_Sunken))
        flat::Box(painter, option.rect.adjusted(0, 2, 0, -2),
                  flat::Pressed(palette, palette.color(QPalette::Window)), {});
    style.drawItemText(&painter, option.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                       palette, option.state & QStyle::State_Enabled, option.text, QPalette::WindowText);
}

// The bar has the colour of what it scrolls.
QColor ScrolledSurface(const QWidget* bar, const QPalette& palette) {
    for (const QWidget* widget = bar; widget; widget = widget->parentWidget())
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(widget))
            return palette.color(area->viewport()->backgroundRole());
    return palette.color(QPalette::Window);
}

void DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QRect& slider,
                   const QWidget* bar) {
    const QPalette& palette = option.palette;
    painter.fillRect(option.rect, ScrolledSurface(bar, palette));
    if (option.maximum <= option.minimum)
        return;
    const bool held = (option.activeSubControls & QStyle::SC_ScrollBarSlider) &&
                      (option.state & (QStyle::State_MouseOver | QStyle::State_Sunken));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(held ? QPalette::Dark : QPalette::Mid));
    const QRectF thumb = QRectF(slider).adjusted(2.5, 2.5, -2.5, -2.5);
    const qreal radius = qMin(thumb.width(), thumb.height()) / 2;
    painter.drawRoundedRect(thumb, radius, radius);
}

void DrawComboBox(const QStyleOptionComboBox& option, QPainter& painter, const QRect& arrow,
                  const QWidget* widget) {
    const bool readOnly = flat::IsReadOnly(widget);
    if (option.frame)
        flat::Field(painter, option, option.palette.color(readOnly ? QPalette::Window : QPalette::Base));
    if (readOnly)
        return; // there is nothing to open
    const QPalette::ColorRole role =
        option.state & QStyle::State_Enabled ? QPalette::PlaceholderText : QPalette::Mid;
    flat::Chevron(painter, arrow, option.palette.color(role));
}

void DrawSpinBox(const QStyleOptionSpinBox& option, QPainter& painter, const QRect& up, const QRect& down) {
    const QPalette& palette = option.palette;
    if (option.frame)
        flat::Field(painter, option, palette.color(QPalette::Base));
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    const auto drawStep = [&](const QRect& rect, QStyle::SubControl part,
                              QAbstractSpinBox::StepEnabledFlag can, qreal angle) {
        const bool enabled = (option.stepEnabled & can) && (option.state & QStyle::State_Enabled);
        const bool active =
            enabled && (option.activeSubControls & part) && (option.state & QStyle::State_MouseOver);
        if (active)
            flat::Box(painter, QRectF(rect).adjusted(1, 1, -2, -1),
                      flat::Pressed(palette, palette.color(QPalette::Base)), {});
        flat::Chevron(painter, rect, palette.color(enabled ? QPalette::PlaceholderText : QPalette::Mid),
                      angle);
    };
    drawStep(up, QStyle::SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, 180);
    drawStep(down, QStyle::SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, 0);
}

void DrawGroupBox(const QStyleOptionGroupBox& option, QPainter& painter, const FlatStyle& style) {
    const auto part = [&](QStyle::SubControl which) {
        return style.subControlRect(QStyle::CC_GroupBox, &option, which, nullptr);
    };
    if (!(option.features & QStyleOptionFrame::Flat))
        flat::Box(painter, part(QStyle::SC_GroupBoxFrame), {}, option.palette.color(QPalette::Mid));
    if (option.subControls & QStyle::SC_GroupBoxCheckBox) {
        QStyleOptionButton box;
        box.QStyleOption::operator=(option);
        box.rect = part(QStyle::SC_GroupBoxCheckBox);
        flat::CheckMark(painter, box, false);
    }
    if (option.text.isEmpty())
        return;
    QFont font = painter.font();
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    style.drawItemText(&painter, part(QStyle::SC_GroupBoxLabel),
                       Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, option.palette,
                       option.state & QStyle::State_Enabled, option.text, QPalette::WindowText);
}

} // namespace

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    painter->save();
    const QPalette& palette = option->palette;
    switch (element) {
    case CE_Header:
        if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
            QStyleOptionHeader part = *header;
            painter->setClipRect(option->rect);
            DrawHeaderSection(*header, *painter);
            part.rect = subElementRect(SE_HeaderLabel, option, widget);
            // Columns can be read, too, while the list waits for an edit to end.
            part.palette.setColor(QPalette::Disabled, QPalette::ButtonText,
                                  palette.color(QPalette::Active, QPalette::ButtonText));
            QProxyStyle::drawControl(CE_HeaderLabel, &part, painter, widget);
            part.rect = subElementRect(SE_HeaderArrow, option, widget);
            drawPrimitive(PE_IndicatorHeaderArrow, &part, painter, widget);
        }
        break;
    case CE_HeaderSection:
        if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option))
            DrawHeaderSection(*header, *painter);
        break;
    case CE_HeaderEmptyArea:
        painter->fillRect(option->rect, palette.color(QPalette::Window));
        painter->fillRect(QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1),
                          palette.color(QPalette::Mid));
        break;
    case CE_TabBarTabShape:
        if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option))
            DrawTabShape(*tab, *painter);
        break;
    case CE_MenuBarItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
            DrawMenuBarItem(*item, *painter, *this);
        break;
    case CE_MenuBarEmptyArea:
        painter->fillRect(option->rect, palette.color(QPalette::Window));
        break;
    case CE_Splitter:
        // A thin handle is a line; a wide one is the gap between two parts.
        if (qMin(option->rect.width(), option->rect.height()) <= 4)
            painter->fillRect(option->rect, palette.color(QPalette::Mid));
        break;
    case CE_PushButtonLabel:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton label = *button;
            if ((button->features & QStyleOptionButton::DefaultButton) && (button->state & State_Enabled))
                label.palette.setColor(QPalette::ButtonText, palette.color(QPalette::HighlightedText));
            QProxyStyle::drawControl(element, &label, painter, widget);
        }
        break;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
    painter->restore();
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
    const auto part = [&](SubControl which) {
        return proxy()->subControlRect(control, option, which, widget);
    };
    painter->save();
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && bar) {
        DrawScrollBar(*bar, *painter, part(SC_ScrollBarSlider), widget);
    } else if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
        DrawComboBox(*combo, *painter, part(SC_ComboBoxArrow), widget);
    } else if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option)) {
        DrawSpinBox(*spin, *painter, part(SC_SpinBoxUp), part(SC_SpinBoxDown));
    } else if (const auto* box = qstyleoption_cast<const QStyleOptionGroupBox*>(option)) {
        DrawGroupBox(*box, *painter, *this);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
    painter->restore();
}

} // namespace sysadmin
