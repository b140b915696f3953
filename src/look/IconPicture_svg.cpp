#include "look/IconPicture.h"

#ifndef Q_OS_WIN

#include <QSvgRenderer>

namespace sysadmin {

namespace {

// The two colours in which the pictures are drawn, and which the palette's replace.
const char* const InkInFile = "#444444";
const char* const AccentInFile = "#2f6fdb";

} // namespace

QString IconFileSuffix() {
    return ".svg";
}

void DrawIcon(QPainter& painter, const QByteArray& file, const QSize&, const QColor& ink,
              const QColor& accent) {
    QByteArray svg = file;
    svg.replace(InkInFile, ink.name().toLatin1()).replace(AccentInFile, accent.name().toLatin1());
    QSvgRenderer renderer(svg);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter);
}

} // namespace sysadmin

#endif
