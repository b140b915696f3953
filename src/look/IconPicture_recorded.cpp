#include "look/IconPicture.h"

#ifdef Q_OS_WIN

#include <QDataStream>
#include <QIODevice>
#include <QImage>
#include <QPainter>
#include <QPicture>

namespace sysadmin {

namespace {

// The side of the square that the recorded drawings are in.
constexpr qreal Side = 24;

/// A drawing in this colour; in its own ones without one.
QImage Layer(QPicture& drawing, const QSize& size, const QColor& colour = {}) {
    QImage layer(size, QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    QPainter painter(&layer);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal scale = qMin(size.width(), size.height()) / Side;
    painter.translate((size.width() - Side * scale) / 2, (size.height() - Side * scale) / 2);
    painter.scale(scale, scale);
    drawing.play(&painter);
    if (!colour.isValid())
        return layer;
    painter.resetTransform();
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(layer.rect(), colour);
    return layer;
}

} // namespace

QString IconFileSuffix() {
    return ".pictures";
}

void DrawIcon(QPainter& painter, const QByteArray& file, const QSize& size, const QColor& ink,
              const QColor& accent) {
    QDataStream stream(file);
    QPicture inOwnColours;
    QPicture inInk;
    QPicture inAccent;
    stream >> inOwnColours >> inInk >> inAccent;
    painter.drawImage(0, 0, Layer(inOwnColours, size));
    painter.drawImage(0, 0, Layer(inInk, size, ink));
    painter.drawImage(0, 0, Layer(inAccent, size, accent));
}

} // namespace sysadmin

#endif
