#include "look/FlatPaint.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

namespace sysadmin::flat {

QColor Blend(const QColor& over, const QColor& under, qreal share) {
    const auto mix = [share](int a, int b) { return qRound(a * share + b * (1 - share)); };
    return QColor(mix(over.red(), under.red()), mix(over.green(), under.green()),
                  mix(over.blue(), under.blue()));
}

QColor Hovered(const QPalette& palette, const QColor& surface) {
    return Blend(palette.color(QPalette::Text), surface, 0.06);
}

QColor Pressed(const QPalette& palette, const QColor& surface) {
    return Blend(palette.color(QPalette::Text), surface, 0.13);
}

void Box(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& line, qreal width) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line.isValid() ? QPen(line, width) : QPen(Qt::NoPen));
    painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    const qreal inset = line.isValid() ? width / 2 : 0;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), Radius, Radius);
    painter.restore();
}

void Chevron(QPainter& painter, const QRectF& rect, const QColor& colour, qreal angle) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    painter.rotate(angle);
    painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF points[] = {{-3.5, -1.75}, {0, 1.75}, {3.5, -1.75}};
    painter.drawPolyline(points, 3);
    painter.restore();
}

void Field(QPainter& painter, const QStyleOption& option, const QColor& fill) {
    const QPalette& palette = option.palette;
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool focused = enabled && (option.state & QStyle::State_HasFocus);
    const bool hovered = enabled && (option.state & QStyle::State_MouseOver);
    const QColor line = focused    ? palette.color(QPalette::Highlight)
                        : hovered  ? palette.color(QPalette::Dark)
                        : !enabled ? palette.color(QPalette::Midlight)
                                   : palette.color(QPalette::Mid);
    Box(painter, option.rect, enabled ? fill : palette.color(QPalette::Window), line, focused ? 1.75 : 1);
}

bool IsReadOnly(const QWidget* control) {
    return control && control->property("readOnly").toBool();
}

void CheckMark(QPainter& painter, const QStyleOption& option, bool round) {
    const QPalette& palette = option.palette;
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool readOnly = option.state & QStyle::State_ReadOnly;
    const bool on = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const qreal side = qMin(option.rect.width(), option.rect.height()) - 1;
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(option.rect).center());

    QColor fill = on ? palette.color(QPalette::Highlight) : palette.color(QPalette::Base);
    QColor line = on ? fill : palette.color(QPalette::Dark);
    if (!enabled) {
        fill = on ? palette.color(QPalette::Disabled, QPalette::Text) : palette.color(QPalette::Window);
        line = on ? fill : palette.color(QPalette::Mid);
    } else if (readOnly) {
        // Its mark has the colour of text: it is to be read and not to be pressed.
        fill = palette.color(QPalette::Window);
        line = palette.color(option.state & QStyle::State_HasFocus ? QPalette::Highlight : QPalette::Dark);
    } else if (option.state & (QStyle::State_HasFocus | QStyle::State_MouseOver)) {
        line = on ? Blend(palette.color(QPalette::Text), fill, 0.35) : palette.color(QPalette::Highlight);
    }

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, 1.2));
    painter.setBrush(fill);
    const QRectF inner = box.adjusted(0.6, 0.6, -0.6, -0.6);
    if (round)
        painter.drawEllipse(inner);
    else
        painter.drawRoundedRect(inner, 3.5, 3.5);

    const QColor mark = palette.color(readOnly ? QPalette::Text : QPalette::HighlightedText);
    painter.translate(box.center());
    painter.scale(side / 16, side / 16);
    painter.setPen(QPen(enabled ? mark : palette.color(QPalette::Window), 1.9, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    if (round && on) {
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(QPointF(0, 0), 2.2, 2.2);
    } else if (option.state & QStyle::State_NoChange) {
        painter.drawLine(QPointF(-3.5, 0), QPointF(3.5, 0));
    } else if (option.state & QStyle::State_On) {
        const QPointF tick[] = {{-3.6, 0.2}, {-1.1, 2.8}, {3.7, -2.8}};
        painter.drawPolyline(tick, 3);
    }
    painter.restore();
}

} // namespace sysadmin::flat
