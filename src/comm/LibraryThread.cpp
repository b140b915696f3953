#include "comm/LibraryThread.h"

#include <QThread>

#include <condition_variable>
#include <deque>
#include <mutex>

namespace sysadmin {

struct LibraryThread::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> waiting;
    bool working = false;
    bool ending = false;

    void Run() {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [&] { return ending || !waiting.empty(); });
            if (waiting.empty())
                return;
            const std::function<void()> work = std::move(waiting.front());
            waiting.pop_front();
            working = true;
            lock.unlock();
            work();
            lock.lock();
            working = false;
            changed.notify_all();
        }
    }
};

LibraryThread::LibraryThread()
    : m_state(std::make_unique<State>())
    , m_thread(QThread::create([this] { m_state->Run(); })) {
    m_thread->start();
}

LibraryThread::~LibraryThread() {
    End();
    m_thread->wait();
}

void LibraryThread::Begin(std::function<void()> work) {
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->waiting.push_back(std::move(work));
    }
    m_state->changed.notify_all();
}

bool LibraryThread::IsDone(std::chrono::milliseconds patience) {
    std::unique_lock lock(m_state->mutex);
    return m_state->changed.wait_for(lock, patience,
                                     [&] { return m_state->waiting.empty() && !m_state->working; });
}

void LibraryThread::End() {
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->ending = true;
    }
    m_state->changed.notify_all();
}

} // namespace sysadmin
