#pragma once

#include <QString>

#include <condition_variable>
#include <mutex>

namespace sysadmin::server {

/// Brings what was committed to a library's file to the disk: its log (the "-wal" file of SQLite), which
/// holds the commits in their order. One wait for the disk serves all who committed before it began. For use
/// by all threads.
class LogSync {
public:
    /// Whether this system has a way to do it beside the engine.
    static bool IsAvailable();

    /// Returns once all that was committed before the call is on the disk. Throws `StoreError` when it cannot
    /// be brought there: whether it outlives the machine is not known then.
    void Wait(const QString& databaseFile);

private:
    bool Sync(const QString& log);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    quint64 m_asked = 0;  ///< how many have asked
    quint64 m_done = 0;   ///< up to which of them all is on the disk
    quint64 m_failed = 0; ///< up to which of them nobody knows
    bool m_running = false;
    std::pair<quint64, quint64> m_known; ///< the log whose name is on the disk, too
};

} // namespace sysadmin::server
