#pragma once

#include <QElapsedTimer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace sysadmin {

class InputGate;

/// Told when the wait for a request has become long (true) and when such a wait is over (false).
using WaitObserver = std::function<void(const QString& request, bool waiting)>;

/// One wait for the server, from its construction to its end. A short wait is not noticed: input stays where
/// it is and is served afterwards. Once the wait is long, the windows paint, the cursor is busy, the observer
/// is told, and clicks and keys are dropped: the screen that they were meant for may look different when the
/// reply is there.
class Waiting {
public:
    static constexpr std::chrono::milliseconds Patience{300};
    /// How long to block at the most between two calls of `Pump`.
    static constexpr std::chrono::milliseconds Slice{25};

    Waiting(const QString& request, const WaitObserver& observer);
    ~Waiting();
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    /// Makes the wait a long one when its time has come, and lets the windows paint in a long one.
    void Pump();
    /// Ends a long wait for the time of a question to the operator; it starts anew with the next `Pump`.
    void Pause();
    /// For who must run an event loop in a short wait, too: holds input back until `ReleaseInput` or a long
    /// wait.
    void HoldInput();
    void ReleaseInput();

private:
    void BeginLongWait();
    void EndLongWait();

    QString m_request;
    const WaitObserver& m_observer;
    QElapsedTimer m_since;
    bool m_long = false;
    std::unique_ptr<InputGate> m_gate;
};

} // namespace sysadmin
