#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QPalette;
class QStyleOption;
class QWidget;

/// The strokes of which the flat style's controls are made.
namespace sysadmin::flat {

inline constexpr qreal Radius = 4.5;

/// `over` laid over `under` with the given share, 0 to 1.
QColor Blend(const QColor& over, const QColor& under, qreal share);
/// What a surface turns to under the mouse.
QColor Hovered(const QPalette& palette, const QColor& surface);
QColor Pressed(const QPalette& palette, const QColor& surface);

/// A rounded box with a hairline, drawn inside the rectangle.
void Box(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& line, qreal width = 1);
/// A small arrow head in the middle of the rectangle; `angle` in degrees, 0 points down.
void Chevron(QPainter& painter, const QRectF& rect, const QColor& colour, qreal angle = 0);
/// The surface of a field to write or choose in; the accent's line shows the focus.
void Field(QPainter& painter, const QStyleOption& option, const QColor& fill);
/// Whether the control only shows its value: its own property "readOnly", or the one that a screen gave it.
bool IsReadOnly(const QWidget* control);
/// A check box's or radio button's mark with its frame.
void CheckMark(QPainter& painter, const QStyleOption& option, bool round);

} // namespace sysadmin::flat
