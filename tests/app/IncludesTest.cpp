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
    allowed["circulation"].insert("loan");
    allowed["requests"].insert("callslips");
    allowed["cataloging"].insert("marc");
    QSet<QString> all(allowed.keyBegin(), allowed.keyEnd());
    allowed["app"] = all;
    return allowed;
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
    static const QRegularExpression include("^#include \"([^\"]+)\"", QRegularExpression::MultilineOption);
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

} // namespace

} // namespace sysadmin
