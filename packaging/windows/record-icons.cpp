// record-icons FROM TO: records the drawings FROM/*.svg as TO/NAME.pictures, one QPicture of what is drawn in
// the ink's colour and one of what is in the accent's, for builds that have no library for SVG. Runs where
// the program is built.

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPicture>
#include <QRegularExpression>
#include <QSvgRenderer>

#include <cstdio>

namespace {

const char* const Ink = "#444444";
const char* const Accent = "#2f6fdb";

/// What the drawing has in colours of which this is true, in a square of 24.
template <class Wanted>
QPicture Record(const QByteArray& file, Wanted isWanted) {
    QString svg = QString::fromUtf8(file);
    const QRegularExpression colour("#[0-9a-fA-F]{6}");
    for (qsizetype at = 0; (at = svg.indexOf(colour, at)) >= 0; ++at)
        if (!isWanted(svg.mid(at, 7)))
            svg.replace(at, 7, "none");
    QSvgRenderer renderer(svg.toUtf8());
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
        stream << Record(svg, [](const QString& colour) { return colour != Ink && colour != Accent; })
               << Record(svg, [](const QString& colour) { return colour == Ink; })
               << Record(svg, [](const QString& colour) { return colour == Accent; });
    }
    return 0;
}
