#include "look/FlatStyle.h"

#include "look/FlatPaint.h"
#include "look/IconLoader.h"

#include <QAbstractSpinBox>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>
#include <QTabBar>

namespace sysadmin {

namespace {

constexpr int ControlHeight = 30;
constexpr int ScrollBarWidth = 12;
constexpr int TextMargin = 5; // between a field's line and its text, besides what the field leaves itself
constexpr int ArrowSize = 12;

void HorizontalLine(QPainter& painter, int left, int right, int y, const QColor& colour) {
    painter.fillRect(QRect(left, y, right - left + 1, 1), colour);
}

bool IsAccentButton(const QStyleOption* option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return button && (button->features & QStyleOptionButton::DefaultButton) &&
           (button->state & QStyle::State_Enabled);
}

void DrawButtonPanel(const QStyleOption& option, QPainter& painter) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const QPalette& palette = option.palette;
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool down = option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool hovered = enabled && (option.state & QStyle::State_MouseOver);
    if (button && (button->features & QStyleOptionButton::Flat) && !down && !hovered)
        return;
    const bool accent = IsAccentButton(&option);
    QColor fill = accent    ? palette.color(QPalette::Highlight)
                  : enabled ? palette.color(QPalette::Button)
                            : palette.color(QPalette::Window);
    if (down)
        fill = accent ? flat::Blend(Qt::black, fill, 0.2) : flat::Pressed(palette, fill);
    else if (hovered)
        fill = accent ? flat::Blend(Qt::white, fill, 0.1) : flat::Hovered(palette, fill);
    const bool focused = enabled && (option.state & QStyle::State_HasFocus);
    const QColor line = focused
                            ? (accent ? palette.color(QPalette::Text) : palette.color(QPalette::Highlight))
                        : accent  ? fill
                        : enabled ? palette.color(QPalette::Mid)
                                  : palette.color(QPalette::Midlight);
    flat::Box(painter, option.rect, fill, line, focused ? 1.75 : 1);
}

void DrawLineEditPanel(const QStyleOption& option, QPainter& painter) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (!frame || frame->lineWidth <= 0)
        return; // part of a combo or spin box, which draws its own
    const bool readOnly = option.state & QStyle::State_ReadOnly;
    flat::Field(painter, option, option.palette.color(readOnly ? QPalette::Window : QPalette::Base));
}

void DrawFrame(const QStyleOption& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    const bool focused = (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_Enabled);
    painter.setPen(palette.color(focused ? QPalette::Highlight : QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

void DrawTabClose(const QStyleOption& option, QPainter& painter) {
    const QPalette& palette = option.palette;
    QRectF box(0, 0, 16, 16);
    box.moveCenter(QRectF(option.rect).center());
    if (option.state & QStyle::State_MouseOver)
        flat::Box(painter, box, flat::Pressed(palette, palette.color(QPalette::Window)), {});
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::PlaceholderText), 1.4, Qt::SolidLine, Qt::RoundCap));
    const QPointF middle = box.center();
    painter.drawLine(middle + QPointF(-3, -3), middle + QPointF(3, 3));
    painter.drawLine(middle + QPointF(-3, 3), middle + QPointF(3, -3));
}

void DrawHeaderArrow(const QStyleOption& option, QPainter& painter) {
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
    if (!header || header->sortIndicator == QStyleOptionHeader::None)
        return;
    // Ascending points up.
    flat::Chevron(painter, option.rect, option.palette.color(QPalette::PlaceholderText),
                  header->sortIndicator == QStyleOptionHeader::SortUp ? 0 : 180);
}

void DrawFocusRect(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    if (qobject_cast<const QPushButton*>(widget) || qobject_cast<const QTabBar*>(widget))
        return; // they show the focus with their own line
    QColor line = option.palette.color(QPalette::Highlight);
    line.setAlpha(160);
    flat::Box(painter, option.rect, {}, line);
}

} // namespace

FlatStyle::FlatStyle()
    : QProxyStyle("Fusion") {}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_ButtonMargin:
        return 12;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabOverlap:
    case PM_TabBarBaseOverlap:
    case PM_MenuBarPanelWidth:
        return 0;
    case PM_DefaultFrameWidth:
        return qobject_cast<const QAbstractSpinBox*>(widget) ? 2 : 1;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return 17;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return 8;
    case PM_ScrollBarExtent:
        return ScrollBarWidth;
    case PM_ScrollBarSliderMin:
        return 32;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return 8;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
        return 12;
    case PM_TabBarTabHSpace:
        return 28;
    case PM_TabBarTabVSpace:
        return 16;
    case PM_FocusFrameHMargin: // left and right of a cell's text
        return 6;
    case PM_MessageBoxIconSize:
        return 40;
    case PM_HeaderMargin:
        return 8;
    case PM_MenuBarVMargin:
        return 2;
    case PM_MenuBarHMargin:
        return 4;
    case PM_MenuBarItemSpacing:
        return 2;
    case PM_MenuVMargin:
        return 4;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_MessageBox_CenterButtons:
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_Table_GridLineColor:
        return option ? int(option->palette.color(QPalette::Midlight).rgb()) : 0;
    case SH_UnderlineShortcut:
        return 1;
    case SH_Menu_SubMenuPopupDelay:
        return 120;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton:
        return result.expandedTo({86, ControlHeight});
    case CT_LineEdit:
    case CT_ComboBox:
        return result.expandedTo({0, ControlHeight}) + QSize(2 * TextMargin, 0);
    case CT_SpinBox:
        return {result.width() + 2 * TextMargin, qMax(ControlHeight, option->fontMetrics.height() + 10)};
    case CT_HeaderSection:
        return result.expandedTo({0, ControlHeight});
    case CT_MenuItem:
        return result + QSize(8, result.height() > 12 ? 4 : 0);
    case CT_MenuBarItem:
        return result + QSize(8, 6);
    default:
        return result;
    }
}

QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    const QRect base = QProxyStyle::subElementRect(element, option, widget);
    const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    const bool sorted = header && header->sortIndicator != QStyleOptionHeader::None;
    switch (element) {
    case SE_LineEditContents:
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->lineWidth > 0)
            return base.adjusted(TextMargin - 1, 0, -(TextMargin - 1), 0);
        return base;
    case SE_HeaderArrow:
        return visualRect(option->direction, option->rect,
                          QRect(option->rect.right() - ArrowSize - 8,
                                option->rect.center().y() - ArrowSize / 2, ArrowSize, ArrowSize));
    case SE_HeaderLabel: {
        const int margin = pixelMetric(PM_HeaderMargin, option, widget);
        const QRect label = option->rect.adjusted(margin, 0, sorted ? -(ArrowSize + 10) : -margin, 0);
        return visualRect(option->direction, option->rect, label);
    }
    default:
        return base;
    }
}

QIcon FlatStyle::standardIcon(StandardPixmap picture, const QStyleOption* option,
                              const QWidget* widget) const {
    switch (picture) {
    case SP_MessageBoxCritical:
        return LoadIcon("Box_Error");
    case SP_MessageBoxWarning:
        return LoadIcon("Box_Exclamation");
    case SP_MessageBoxInformation:
        return LoadIcon("Box_Information");
    case SP_MessageBoxQuestion:
        return LoadIcon("Box_Question");
    // These two are needed at every start; the usual ones take all plugins for pictures to be loaded.
    case SP_LineEditClearButton:
        return LoadIcon("Clear");
    case SP_ToolBarHorizontalExtensionButton:
        return LoadIcon("More");
    default:
        return QProxyStyle::standardIcon(picture, option, widget);
    }
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    painter->save();
    const QPalette& palette = option->palette;
    switch (element) {
    case PE_PanelButtonCommand:
        DrawButtonPanel(*option, *painter);
        break;
    case PE_FrameDefaultButton:
        break; // its fill tells
    case PE_PanelButtonTool:
        if (option->state & (State_Sunken | State_On))
            flat::Box(*painter, option->rect, flat::Pressed(palette, palette.color(QPalette::Window)), {});
        else if (option->state & State_MouseOver)
            flat::Box(*painter, option->rect, flat::Hovered(palette, palette.color(QPalette::Window)), {});
        break;
    case PE_PanelLineEdit:
        DrawLineEditPanel(*option, *painter);
        break;
    case PE_FrameLineEdit:
        break; // drawn with the panel
    case PE_Frame:
        DrawFrame(*option, *painter);
        break;
    case PE_FrameGroupBox:
    case PE_FrameTabWidget:
        flat::Box(*painter, option->rect, {}, palette.color(QPalette::Mid));
        break;
    case PE_FrameTabBarBase:
        HorizontalLine(*painter, option->rect.left(), option->rect.right(), option->rect.bottom(),
                       palette.color(QPalette::Mid));
        break;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
    case PE_IndicatorRadioButton: {
        QStyleOption mark = *option;
        if (flat::IsReadOnly(widget))
            mark.state |= State_ReadOnly;
        flat::CheckMark(*painter, mark, element == PE_IndicatorRadioButton);
        break;
    }
    case PE_IndicatorTabClose:
        DrawTabClose(*option, *painter);
        break;
    case PE_IndicatorArrowDown:
        flat::Chevron(*painter, option->rect, palette.color(QPalette::PlaceholderText));
        break;
    case PE_IndicatorHeaderArrow:
        DrawHeaderArrow(*option, *painter);
        break;
    case PE_FrameFocusRect:
        DrawFocusRect(*option, *painter, widget);
        break;
    case PE_FrameMenu:
        painter->setPen(palette.color(QPalette::Mid));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        break;
    case PE_PanelMenu:
        painter->fillRect(option->rect, palette.color(QPalette::Base));
        break;
    case PE_PanelStatusBar:
        HorizontalLine(*painter, option->rect.left(), option->rect.right(), option->rect.top(),
                       palette.color(QPalette::Mid));
        break;
    case PE_FrameStatusBarItem:
        // A hairline between the panels.
        if (option->rect.left() > 8)
            painter->fillRect(
                QRect(option->rect.left(), option->rect.top() + 4, 1, option->rect.height() - 8),
                palette.color(QPalette::Mid));
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->restore();
}

} // namespace sysadmin

#include "moc_FlatStyle.cpp"
