#pragma once

#include "server/store/LogSync.h"

#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <utility>

namespace sysadmin::server {

/// The line of those who want to change a library's data: one at a time, first come, first served. For use by
/// all threads.
class WriterQueue {
public:
    using Clock = std::chrono::steady_clock;

    /// A place in the line and, while it lasts, the right to change the data.
    class Turn {
    public:
        /// No turn.
        Turn() = default;
        ~Turn() { End(); }
        Turn(Turn&& other) noexcept
            : m_queue(std::exchange(other.m_queue, nullptr)) {}
        Turn& operator=(Turn&& other) noexcept {
            std::swap(m_queue, other.m_queue);
            return *this;
        }
        /// Whether it has come and not ended.
        explicit operator bool() const { return m_queue; }
        /// Lets the next one in.
        void End();

    private:
        friend class WriterQueue;
        explicit Turn(WriterQueue* queue)
            : m_queue(queue) {}
        WriterQueue* m_queue = nullptr;
    };

    /// Waits at the end of the line; no turn when it does not come in time.
    Turn Wait(Clock::time_point deadline);
    /// The turn, if nobody has it.
    Turn TakeIfFree();
    /// What they committed, on its way to the disk once their turns are over.
    LogSync& Log() { return m_log; }
    /// How many are in the line, whose turn it is left out.
    int CountWaiting() const;

private:
    struct Waiter {
        std::condition_variable called;
        bool hasTurn = false;
    };

    void Leave();

    mutable std::mutex m_mutex;
    std::list<Waiter*> m_line;
    bool m_taken = false;
    LogSync m_log;
};

} // namespace sysadmin::server
