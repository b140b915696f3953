// record-icons FROM TO: records the drawings FROM/*.svg as TO/NAME.pictures, one QPicture of what is drawn in
// the ink's colour and one of what is in the accent's, for builds that have no library for SVG. Runs where
// the program is built.

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPicture>
#include <QSvgRenderer>

#include <cstdio>

namespace {

const char* const Ink = "#444444";
const char* const Accent = "#2f6fdb";

/// The drawing without what has the other colour, in a square of 24.
QPicture Record(QByteArray svg, const char* otherColour) {
    QSvgRenderer renderer(svg.replace(otherColour, "none"));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPicture picture;
    QPainter painter(&picture);
    renderer.render(&painter, QRectF(0, 0, 24, 24));
    painter.end();
    return picture;
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication program(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "Usage: record-icons FROM TO\n");
        return 2;
    }
    const QDir from(argv[1]);
    const QDir to(argv[2]);
    for (const QString& name : from.entryList({"*.svg"})) {
        QFile file(from.filePath(name));
        QFile made(to.filePath(name.chopped(4) + ".pictures"));
        if (!file.open(QIODevice::ReadOnly) || !made.open(QIODevice::WriteOnly)) {
            std::fprintf(stderr, "record-icons: %s cannot be read, or %s not written\n",
                         qPrintable(file.fileName()), qPrintable(made.fileName()));
            return 1;
        }
        const QByteArray svg = file.readAll();
        QDataStream stream(&made);
        stream << Record(svg, Accent) << Record(svg, Ink);
    }
    return 0;
}
