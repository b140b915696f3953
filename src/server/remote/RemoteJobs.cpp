#include "server/remote/RemoteJobs.h"

#include <algorithm>
#include <condition_variable>

namespace sysadmin::server {

namespace {

constexpr int Threads = 8;
constexpr size_t MostJobs = 200;
constexpr int MostOfAccount = 40;
constexpr int MostShares = 4;
/// How much longer than its time limit a job may take until it is given up: the system looks names up.
constexpr std::chrono::milliseconds Slack{2000};
/// A job after whose result nobody asks is forgotten.
constexpr std::chrono::minutes Kept{2};

} // namespace

struct RemoteJobs::Job {
    QString account{};
    std::chrono::seconds timeLimit{};
    std::atomic_bool cancelled = false;
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<QDeadlineTimer> giveUp{}; ///< once it runs
    std::optional<RemoteResult> result{};
    QDeadlineTimer forget{Kept}; ///< since somebody asked last
};

RemoteJobs::RemoteJobs() = default;

RemoteJobs::~RemoteJobs() {
    for (auto& [key, job] : m_jobs)
        job->cancelled = true;
    m_pool.reset();
}

/// Ends the jobs after which nobody asks any more.
void RemoteJobs::Forget() {
    for (auto job = m_jobs.begin(); job != m_jobs.end();) {
        const bool gone = job->second->forget.hasExpired();
        if (gone)
            job->second->cancelled = true;
        job = gone ? m_jobs.erase(job) : std::next(job);
    }
}

std::shared_ptr<void> RemoteJobs::LendMemory() {
    {
        const std::lock_guard lock(m_mutex);
        Forget();
    }
    if (m_lent->fetch_add(1) >= MostShares) {
        m_lent->fetch_sub(1);
        return nullptr;
    }
    return {m_lent.get(), [lent = m_lent](void*) { lent->fetch_sub(1); }};
}

void RemoteJobs::Start(const QString& key, const QString& account, std::chrono::seconds timeLimit,
                       Work work) {
    std::unique_lock lock(m_mutex);
    Forget();
    if (const auto former = m_jobs.find(key); former != m_jobs.end()) {
        former->second->cancelled = true;
        m_jobs.erase(former);
    }
    const auto job = std::make_shared<Job>();
    job->account = account;
    job->timeLimit = timeLimit;
    const auto own = std::count_if(m_jobs.begin(), m_jobs.end(),
                                   [&](const auto& entry) { return entry.second->account == account; });
    const bool busy = m_jobs.size() >= MostJobs || own >= MostOfAccount;
    m_jobs[key] = job;
    if (busy) {
        job->result = RemoteResult{.outcome = Outcome::Busy};
        return;
    }
    if (!m_pool)
        m_pool = std::make_unique<WorkerPool>(Threads);
    m_pool->Submit({.stranger = false, .name = account}, [job, work = std::move(work)] {
        {
            const std::lock_guard guard(job->mutex);
            job->giveUp = QDeadlineTimer(std::chrono::milliseconds(job->timeLimit) + Slack);
        }
        RemoteResult result{.outcome = Outcome::Cancelled};
        if (!job->cancelled)
            result =
                work(Patience{QDeadlineTimer(std::chrono::milliseconds(job->timeLimit)), &job->cancelled});
        const std::lock_guard guard(job->mutex);
        job->result = std::move(result);
        job->changed.notify_all();
    });
}

std::optional<RemoteResult> RemoteJobs::Wait(const QString& key, std::chrono::milliseconds moment) {
    std::shared_ptr<Job> job;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_jobs.find(key);
        if (found == m_jobs.end())
            return RemoteResult{.outcome = Outcome::Cancelled};
        job = found->second;
        job->forget = QDeadlineTimer(Kept);
    }
    std::optional<RemoteResult> result;
    {
        std::unique_lock lock(job->mutex);
        job->changed.wait_for(lock, moment, [&] { return job->result.has_value(); });
        result = job->result;
        if (!result && job->giveUp && job->giveUp->hasExpired()) {
            job->cancelled = true;
            result = RemoteResult{.outcome = Outcome::TimedOut};
        }
    }
    if (result) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_jobs.find(key);
        if (found != m_jobs.end() && found->second == job)
            m_jobs.erase(found);
    }
    return result;
}

std::optional<RemoteResult> RemoteJobs::Follow(const QString& key, const QString& account,
                                               std::chrono::seconds timeLimit, const QString& goesOn,
                                               const std::function<Work()>& makeWork) {
    constexpr std::chrono::milliseconds Moment{300};
    if (goesOn == u"N") {
        Cancel(key);
        return RemoteResult{.outcome = Outcome::Cancelled};
    }
    if (goesOn != u"Y")
        Start(key, account, timeLimit, makeWork());
    return Wait(key, Moment);
}

void RemoteJobs::Cancel(const QString& key) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_jobs.find(key);
    if (found == m_jobs.end())
        return;
    found->second->cancelled = true;
    m_jobs.erase(found);
}

} // namespace sysadmin::server
