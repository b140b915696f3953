#pragma once

#include "server/store/StoreAddress.h"

#include <functional>
#include <memory>
#include <thread>

namespace sysadmin::server {

/// Brings what was committed to a library to the disk, whoever committed it: one wait for the disk, in a
/// thread of its own, serves all who asked before it began. For use by all threads.
class LogSync {
public:
    /// Told whether all that was committed is on the disk; when not, nobody knows whether it outlives the
    /// machine.
    using Told = std::function<void(bool onDisk)>;

    LogSync();
    /// Those who wait are told before.
    ~LogSync();
    LogSync(const LogSync&) = delete;
    LogSync& operator=(const LogSync&) = delete;

    /// Whether an engine leaves waiting for the disk to this class, on this system.
    static bool IsAvailable(StoreAddress::Engine engine);

    /// What a change asks for before it begins: the way to the disk on which it will be waited for. A
    /// database server that broke down and came up again may have lost what was committed meanwhile, so only
    /// a way that was open all the time can tell. Throws `StoreError` when there is none.
    quint64 Open(const StoreAddress& address);
    /// Calls `told` once all that was committed to the library before this call is on the disk, or cannot be
    /// brought there; from the other thread, which everybody else waits for: it must neither throw nor wait.
    void Then(quint64 way, Told told);
    /// Returns once it is there; throws `StoreError` when it cannot be.
    void Wait(quint64 way);

private:
    struct State;

    std::shared_ptr<State> m_state; // of both threads
    std::thread m_thread;           // since somebody asked for the first time
};

} // namespace sysadmin::server
