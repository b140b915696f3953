#pragma once

#include <QByteArray>
#include <QColor>
#include <QString>

class QPainter;
class QSize;

namespace sysadmin {

/// What follows the name of a picture's file below ":/icons".
QString IconFileSuffix();

/// Draws a picture of ours, as large as the size allows, in these two colours. IconPicture_svg.cpp draws the
/// files as they are; IconPicture_recorded.cpp what `packaging/windows/record-icons` made of them.
void DrawIcon(QPainter& painter, const QByteArray& file, const QSize& size, const QColor& ink,
              const QColor& accent);

} // namespace sysadmin
