#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QThread;

namespace sysadmin {

/// A thread that does one piece of work after the other for whoever waits for it, or does not.
class LibraryThread {
public:
    LibraryThread();
    /// Waits for the work that has begun.
    ~LibraryThread();
    LibraryThread(const LibraryThread&) = delete;
    LibraryThread& operator=(const LibraryThread&) = delete;

    /// Begins a piece of work once the one before has ended. It must not throw.
    void Begin(std::function<void()> work);
    /// Waits for so long at the most; whether all work has ended.
    bool IsDone(std::chrono::milliseconds patience);
    /// Ends it after its work without waiting.
    void End();

private:
    struct State;

    std::unique_ptr<State> m_state;
    std::unique_ptr<QThread> m_thread;
};

} // namespace sysadmin
