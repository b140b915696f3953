#pragma once

#include "server/WorkerPool.h"
#include "server/remote/RemoteResult.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

namespace sysadmin::server {

/// What the server does with other systems while operators wait for it: in threads of its own, a few at a
/// time, so that no request and no change of anybody else waits for another system.
class RemoteJobs {
public:
    using Work = std::function<RemoteResult(const Patience& patience)>;

    RemoteJobs();
    /// Ends all jobs.
    ~RemoteJobs();
    RemoteJobs(const RemoteJobs&) = delete;
    RemoteJobs& operator=(const RemoteJobs&) = delete;

    /// Starts the job of this key for an operator; one that is there under the key ends.
    void Start(const QString& key, const QString& account, std::chrono::seconds timeLimit, Work work);
    /// Waits a moment for the job; its result, which is given once, or none while it goes on. A job that
    /// nobody started was cancelled.
    std::optional<RemoteResult> Wait(const QString& key, std::chrono::milliseconds moment);
    /// What a request says under "55" of its job: nothing begins it, "Y" goes on with it, "N" ends it. Its
    /// result, or none while it goes on.
    std::optional<RemoteResult> Follow(const QString& key, const QString& account,
                                       std::chrono::seconds timeLimit, const QString& goesOn,
                                       const std::function<Work()>& makeWork);
    /// Ends a job; nobody wants its result.
    void Cancel(const QString& key);
    /// A share of the memory that jobs may hold between them, for one that holds much; none while all are
    /// lent. It is given back with the last copy.
    std::shared_ptr<void> LendMemory();

private:
    struct Job;

    void Forget();

    std::mutex m_mutex;
    std::map<QString, std::shared_ptr<Job>> m_jobs;
    std::shared_ptr<std::atomic_int> m_lent = std::make_shared<std::atomic_int>(0);
    std::unique_ptr<WorkerPool> m_pool; // made for the first job
};

} // namespace sysadmin::server
