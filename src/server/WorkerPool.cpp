#include "server/WorkerPool.h"

#include <QThread>

namespace sysadmin::server {

WorkerPool::WorkerPool(int threads)
    : m_most(qMax(1, threads / 2)) {
    for (int i = 0; i < threads; ++i) {
        m_threads.emplace_back(QThread::create([this] { Run(); }));
        m_threads.back()->start();
    }
}

WorkerPool::~WorkerPool() {
    {
        const std::scoped_lock lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    for (const auto& thread : m_threads)
        thread->wait();
}

void WorkerPool::Submit(const Account& account, Work work) {
    {
        const std::scoped_lock lock(m_mutex);
        m_queues[account].waiting.push_back(std::move(work));
    }
    m_changed.notify_one();
}

WorkerPool::Queues::iterator WorkerPool::Next() {
    const auto mayRun = [this](const auto& entry) {
        const auto& [account, queue] = entry;
        return !queue.waiting.empty() && queue.running < m_most &&
               (!account.stranger || m_strangersRunning < m_most);
    };
    const auto after = m_queues.upper_bound(m_last);
    for (auto queue = after; queue != m_queues.end(); ++queue)
        if (mayRun(*queue))
            return queue;
    for (auto queue = m_queues.begin(); queue != after; ++queue)
        if (mayRun(*queue))
            return queue;
    return m_queues.end();
}

void WorkerPool::Run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        auto next = m_queues.end();
        m_changed.wait(lock, [&] { return m_ending || (next = Next()) != m_queues.end(); });
        if (m_ending)
            return;
        const Account account = next->first;
        m_last = account;
        Work work = std::move(next->second.waiting.front());
        next->second.waiting.pop_front();
        ++next->second.running;
        m_strangersRunning += account.stranger;
        lock.unlock();
        work();
        work = nullptr; // what it holds goes before its account may have more
        lock.lock();
        m_strangersRunning -= account.stranger;
        const auto done = m_queues.find(account);
        --done->second.running;
        if (done->second.running == 0 && done->second.waiting.empty())
            m_queues.erase(done);
        // Of an account that had as many threads as it may have one piece more can be done: by this thread.
    }
}

} // namespace sysadmin::server
