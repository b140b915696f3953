#include "server/store/LogSync.h"

#include "server/store/Database.h"
#include "server/store/LibraryFolder.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace sysadmin::server {

namespace {

#ifdef Q_OS_UNIX
bool SyncPath(const QString& path, bool dataOnly) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool done = (dataOnly ? ::fdatasync(file) : ::fsync(file)) == 0;
    ::close(file); // the engine's locks are on other files
    return done;
}
#endif

} // namespace

bool LogSync::IsAvailable() {
#ifdef Q_OS_UNIX
    return true;
#else
    return false;
#endif
}

void LogSync::Wait(const QString& databaseFile) {
    std::unique_lock lock(m_mutex);
    const quint64 mine = ++m_asked;
    while (m_done < mine && m_failed < mine) {
        if (m_running) {
            m_changed.wait(lock);
            continue;
        }
        m_running = true;
        const quint64 covered = m_asked;
        lock.unlock();
        const bool done = Sync(databaseFile + "-wal");
        lock.lock();
        m_running = false;
        (done ? m_done : m_failed) = covered;
        m_changed.notify_all();
    }
    if (m_failed >= mine)
        throw StoreError(StoreError::Kind::Lost, "The library's log cannot be brought to the disk.");
}

bool LogSync::Sync(const QString& log) {
#ifdef Q_OS_UNIX
    // A log that was just made must be found again, too.
    const FileIdentity file = IdentityOf(log);
    if (file != m_known) {
        if (!SyncPath(QFileInfo(log).absolutePath(), false))
            return false;
        m_known = file;
    }
    return SyncPath(log, true);
#else
    Q_UNUSED(log);
    return false;
#endif
}

} // namespace sysadmin::server
