#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

/// What each folder may include besides itself. `core/data` and `framework/forms` are folders of their own:
/// they hold no widgets.
QMap<QString, QSet<QString>> AllowedIncludes() {
    QMap<QString, QSet<QString>> allowed{
        {"wire", {}},
        {"loan", {}},
        {"callslips", {}},
        {"marc", {}},
        {"core/data", {"wire"}},
        {"look", {}},
        {"core", {"core/data", "look", "wire"}},
        {"comm", {"core", "core/data", "look", "wire"}},
        {"framework/forms", {"core/data", "wire"}},
        {"framework", {"framework/forms", "core", "core/data", "wire"}},
        {"server", {"wire", "callslips"}},
    };
    const QStringList subsystems{"system",     "security", "circulation", "requests",
                                 "cataloging", "search",   "acquisitions"};
    for (const QString& subsystem : subsystems)
        allowed[subsystem] = {"framework", "framework/forms", "core", "core/data", "wire"};
    // Pictures are painted in the style's shades.
    allowed["circulation"] += {"loan", "look"};
    allowed["search"].insert("look");
    allowed["requests"].insert("callslips");
    allowed["cataloging"] += {"marc", "callslips"};
    allowed["search"].insert("marc");
    QSet<QString> all(allowed.keyBegin(), allowed.keyEnd());
    allowed["app"] = all;
    return allowed;
}

/// The classes that a file defines for everybody, with their namespaces.
QStringList ClassesOf(const QString& text) {
    static const QRegularExpression opening("^namespace ?([\\w:]*) \\{");
    static const QRegularExpression defining("^(?:class|struct) (\\w+)(?!\\w|::).*[^;]$");
    QStringList spaces, classes;
    for (const QString& line : text.split('\n')) {
        if (const auto space = opening.match(line); space.hasMatch())
            spaces.append(space.captured(1));
        else if (line.startsWith("} // namespace"))
            spaces.removeLast();
        else if (const auto one = defining.match(line); one.hasMatch() && !spaces.contains(QString()))
            classes.append(spaces.join("::") + "::" + one.captured(1));
    }
    return classes;
}

/// The folder of a path below src: two levels where those are a folder of their own.
QString FolderOf(const QString& path) {
    for (const char* inner : {"core/data", "framework/forms"})
        if (path.startsWith(QString(inner) + "/"))
            return inner;
    return path.section('/', 0, 0);
}

TEST(IncludesTest, PointDownwardsOnly) {
    const QMap<QString, QSet<QString>> allowed = AllowedIncludes();
    const QDir src(SYSADMIN_SOURCE_DIR "/src");
    static const QRegularExpression include("^#include \"((?!moc_)[^\"]+)\"",
                                            QRegularExpression::MultilineOption);
    QDirIterator files(src.path(), {"*.h", "*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
    int seen = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString path = src.relativeFilePath(file.fileName());
        const QString folder = FolderOf(path);
        ASSERT_TRUE(allowed.contains(folder)) << "unknown folder " << folder.toStdString();
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = include.globalMatch(text); match.hasNext();) {
            const QString target = FolderOf(match.next().captured(1));
            EXPECT_TRUE(target == folder || allowed[folder].contains(target))
                << path.toStdString() << " includes " << target.toStdString();
            ++seen;
        }
    }
    EXPECT_GT(seen, 100);
}

// The linker takes one of two classes of a name without a word, and the other one's objects are built by it.
TEST(IncludesTest, NoTwoFilesDefineAClassOfTheSameName) {
    QHash<QString, QString> files;
    QDirIterator each(SYSADMIN_SOURCE_DIR "/src", {"*.h", "*.cpp"}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (each.hasNext()) {
        QFile file(each.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        for (const QString& name : ClassesOf(QString::fromUtf8(file.readAll()))) {
            EXPECT_FALSE(files.contains(name))
                << name.toStdString() << " stands in " << file.fileName().toStdString() << " and in "
                << files.value(name).toStdString();
            files.insert(name, file.fileName());
        }
    }
    EXPECT_GT(files.size(), 400);
}

} // namespace

} // namespace sysadmin
