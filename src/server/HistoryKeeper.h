#pragma once

#include <QDateTime>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace sysadmin::server {

class Database;
class Library;

/// How far back the history of changes goes, where older entries were removed.
struct HistoryBegin {
    qint64 removed = 0; ///< number of the last request of which entries were removed
    QString from;       ///< the point in time before which they were made, as it is stored
};

/// None where nothing was ever removed. Throws `StoreError`.
std::optional<HistoryBegin> ReadHistoryBegin(Database& database);

/// Removes some of the history's entries from before a point in time, oldest first, in one short transaction;
/// false when none are left. The latest request stays, because its number says how far the changes have come.
/// Throws `StoreError`.
bool RemoveSomeHistory(Database& database, const QDateTime& before);

/// Removes entries of the history that are older than some days, when it begins and once a day, in a thread
/// of its own. Whoever saves waits for one short transaction at the most.
class HistoryKeeper {
public:
    HistoryKeeper(std::shared_ptr<const Library> library, int days);
    ~HistoryKeeper();

private:
    bool WaitFor(std::chrono::milliseconds time);
    void Run(int days);

    std::shared_ptr<const Library> m_library;
    std::mutex m_mutex;
    std::condition_variable m_ends;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace sysadmin::server
