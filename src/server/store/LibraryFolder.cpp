#include "server/store/LibraryFolder.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace sysadmin::server {

namespace {

constexpr QFile::Permissions OfOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                        QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

/// The database and what it keeps beside itself.
QStringList FilesOf(const QString& file) {
    QStringList files;
    for (const char* suffix : {"", "-wal", "-shm", "-journal"})
        if (const QString name = file + suffix; QFileInfo::exists(name))
            files << name;
    return files;
}

bool IsOpen(const QString& path) {
#ifdef Q_OS_UNIX
    return (QFileInfo(path).permissions() & OfOthers) != 0;
#else
    Q_UNUSED(path); // who may do what is inherited from the user's folder there
    return false;
#endif
}

bool Close(const QString& path) {
    return !IsOpen(path) || QFile::setPermissions(path, QFileInfo(path).permissions() & ~OfOthers);
}

/// Closes what is there. A folder in which other things live is not ours to close.
QString CloseFolder(const QString& folder, const QString& file) {
    const QString shown = QDir::toNativeSeparators(folder);
    const QString remedy =
        "Close it with \"chmod 700 " + shown + "\", or give the library a folder of its own.";
    const bool isOurs = QFileInfo::exists(file) ||
                        QDir(folder).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    if (!isOurs && IsOpen(folder))
        return "The folder " + shown + " is open to others and holds other things. " + remedy;
    bool closed = Close(folder);
    for (const QString& one : FilesOf(file))
        closed = Close(one) && closed;
    return closed ? QString()
                  : "The folder " + shown + " is open to others and belongs to somebody else. " + remedy;
}

} // namespace

FileIdentity IdentityOf(const QString& path) {
#ifdef Q_OS_UNIX
    struct stat found {};
    if (::stat(QFile::encodeName(path).constData(), &found) == 0)
        return {quint64(found.st_dev), quint64(found.st_ino)};
#else
    Q_UNUSED(path);
#endif
    return {};
}

QString FileIsGone(const QString& file) {
    return "The library's file " + QDir::toNativeSeparators(file) +
           " was removed or replaced while the program had it open; nothing is written until it is back or "
           "the program is started again.";
}

QString PrepareLibraryFolder(const QString& file, bool mayMake) {
    const QFileInfo database(file);
    const QFileInfo folder(database.absolutePath());
    const QString shown = QDir::toNativeSeparators(folder.absoluteFilePath());
    if (!database.exists() && !mayMake)
        return "There is no library in " + shown + '.';
    if (!folder.exists()) {
        if (!QDir().mkpath(folder.absoluteFilePath()))
            return "The directory " + shown + " cannot be made.";
        QFile::setPermissions(folder.absoluteFilePath(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    } else if (!folder.isDir()) {
        return shown + " is not a directory.";
    }
    if (!folder.isWritable() || (database.exists() && !database.isWritable()))
        return "The library in " + shown + " cannot be written to.";
    return CloseFolder(folder.absoluteFilePath(), file);
}

QString OpenToOthers(const QString& file) {
    const QString folder = QFileInfo(file).absolutePath();
    QStringList open;
    for (const QString& one : QStringList{folder} + FilesOf(file))
        if (IsOpen(one))
            open << QDir::toNativeSeparators(one);
    return open.isEmpty() ? QString() : "Others on this machine may get at " + open.join(", ") + '.';
}

} // namespace sysadmin::server
