#pragma once

#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <vector>

class QThread;

namespace sysadmin::server {

/// A few threads that carry out everybody's work. Accounts take turns, so that one with much work delays
/// itself and not the others, and none holds more than half of the threads. All strangers together count
/// as one account in that, but take turns by their addresses.
class WorkerPool {
public:
    using Work = std::function<void()>;

    /// Whose work it is.
    struct Account {
        bool stranger = true; ///< nobody has signed on yet
        QString name;         ///< the operator's, a stranger's address
        bool operator<(const Account& other) const {
            return std::tie(stranger, name) < std::tie(other.stranger, other.name);
        }
    };

    explicit WorkerPool(int threads);
    /// Waits for the work that has begun; the rest is dropped.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Has the work done by one of the threads. Work must not throw.
    void Submit(const Account& account, Work work);

private:
    struct Queue {
        std::deque<Work> waiting;
        int running = 0;
    };
    using Queues = std::map<Account, Queue>;

    void Run();
    /// The queue whose turn it is and which may have another thread; the end when there is none.
    Queues::iterator Next();

    std::vector<std::unique_ptr<QThread>> m_threads;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    Queues m_queues; // of the accounts that have work waiting or running
    Account m_last;  // whose turn it was
    int m_most = 1;  // threads for one account
    int m_strangersRunning = 0;
    bool m_ending = false;
};

} // namespace sysadmin::server
