#include "look/IconLoader.h"

#include "look/Resources.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace sysadmin {

namespace {

// The two colours in which the pictures are drawn, and which the palette's replace.
const char* const InkInFile = "#444444";
const char* const AccentInFile = "#2f6fdb";

class TintedIconEngine : public QIconEngine {
public:
    TintedIconEngine(const QString& name, const QByteArray& svg)
        : m_name(name)
        , m_svg(svg) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QPixmap picture = pixmap(rect.size() * ratio, mode, state);
        picture.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect.topLeft(), picture);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        QColor ink = palette.color(QPalette::Active, QPalette::WindowText);
        QColor accent = palette.color(QPalette::Active, QPalette::Link);
        if (mode == QIcon::Disabled)
            ink = accent = palette.color(QPalette::Disabled, QPalette::WindowText);
        const QString key =
            QStringList{
                "icon",     m_name,       QString::number(size.width()), QString::number(size.height()),
                ink.name(), accent.name()}
                .join(':');
        QPixmap picture;
        if (QPixmapCache::find(key, &picture))
            return picture;

        QByteArray svg = m_svg;
        svg.replace(InkInFile, ink.name().toLatin1()).replace(AccentInFile, accent.name().toLatin1());
        QSvgRenderer renderer(svg);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        renderer.render(&painter);
        painter.end();
        QPixmapCache::insert(key, picture);
        return picture;
    }

    QIconEngine* clone() const override { return new TintedIconEngine(m_name, m_svg); }
    bool isNull() override { return m_svg.isEmpty(); }

private:
    QString m_name;
    QByteArray m_svg;
};

} // namespace

QIcon LoadIcon(const QString& name) {
    LoadResources();
    QFile file(":/icons/" + name + ".svg");
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("There is no picture %s", qUtf8Printable(name));
        return {};
    }
    return QIcon(new TintedIconEngine(name, file.readAll()));
}

} // namespace sysadmin
