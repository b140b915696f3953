#include "support/Stories.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace sysadmin::testing {

QList<Story> ReadStories(const QString& folder) {
    static const QRegularExpression begin("^story (.*?)(?: \\((.*)\\))?$");
    const QDir directory(QString(SYSADMIN_SOURCE_DIR) + "/" + folder);
    QList<Story> stories;
    for (const QString& name : directory.entryList({"*.txt"}, QDir::Files, QDir::Name)) {
        QFile file(directory.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot read " + file.fileName().toStdString());
        int number = 0;
        for (QString line : QString::fromUtf8(file.readAll()).split('\n')) {
            ++number;
            line = line.trimmed();
            if (line.isEmpty() || line.startsWith('#'))
                continue;
            if (const auto title = begin.match(line); title.hasMatch())
                stories.append({file.fileName(), title.captured(1), title.captured(2), {}});
            else if (line.startsWith("and "))
                stories.last().lines.last().second += line.mid(3);
            else
                stories.last().lines.append({number, line});
        }
    }
    return stories;
}

std::string NameOf(const Story& story) {
    QString name = QFileInfo(story.file).baseName() + "_";
    for (const QString& word : story.title.split(' '))
        for (const QChar letter : word.at(0).toUpper() + word.mid(1))
            if (letter.isLetterOrNumber() && letter < QChar(128))
                name += letter;
    return name.toStdString();
}

} // namespace sysadmin::testing
