#include "server/store/WriterQueue.h"

namespace sysadmin::server {

WriterQueue::Turn WriterQueue::Wait(Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    if (!m_taken) {
        m_taken = true;
        return Turn(this);
    }
    Waiter waiter;
    const auto place = m_line.insert(m_line.end(), &waiter);
    if (waiter.called.wait_until(lock, deadline, [&] { return waiter.hasTurn; }))
        return Turn(this);
    m_line.erase(place);
    return {};
}

WriterQueue::Turn WriterQueue::TakeIfFree() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_taken, true) ? Turn() : Turn(this);
}

int WriterQueue::CountWaiting() const {
    const std::lock_guard lock(m_mutex);
    return int(m_line.size());
}

void WriterQueue::Leave() {
    const std::lock_guard lock(m_mutex);
    if (m_line.empty()) {
        m_taken = false;
        return;
    }
    // The turn is handed over: whoever comes just now cannot take it first.
    Waiter* const next = m_line.front();
    m_line.pop_front();
    next->hasTurn = true;
    next->called.notify_one();
}

void WriterQueue::Turn::End() {
    if (WriterQueue* const queue = std::exchange(m_queue, nullptr))
        queue->Leave();
}

} // namespace sysadmin::server
