#include "look/IconLoader.h"

#include "look/IconPicture.h"
#include "look/Resources.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

namespace sysadmin {

namespace {

class TintedIconEngine : public QIconEngine {
public:
    TintedIconEngine(const QString& name, const QByteArray& file)
        : m_name(name)
        , m_file(file) {}

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

        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        DrawIcon(painter, m_file, size, ink, accent);
        painter.end();
        QPixmapCache::insert(key, picture);
        return picture;
    }

    QIconEngine* clone() const override { return new TintedIconEngine(m_name, m_file); }
    bool isNull() override { return m_file.isEmpty(); }

private:
    QString m_name;
    QByteArray m_file;
};

} // namespace

QIcon LoadIcon(const QString& name) {
    LoadResources();
    QFile file(":/icons/" + name + IconFileSuffix());
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("There is no picture %s", qUtf8Printable(name));
        return {};
    }
    return QIcon(new TintedIconEngine(name, file.readAll()));
}

} // namespace sysadmin
