#pragma once

#include "wire/Limits.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace sysadmin {

class Waiting;

/// What "Login Information" tells about a connection.
struct ConnectionInfo {
    QString server;     ///< where the server is: "host:port", or a folder on this computer
    QString connection; ///< how the bytes travel, in words: protocol and cipher
};

/// Why a transport could not open, or could not carry a message.
enum class TransportFailure {
    None,
    Unreachable, ///< there is no server, or it does not answer; trying again may help
    Refused,     ///< the server is not to be trusted, or cannot be opened at all
    TimeLimit,   ///< no whole answer within the time limit
    Lost,        ///< the connection broke
    Broken,      ///< the server sent something that is not an answer
};

/// Carries encoded messages to a settings server and back, one at a time.
class Transport {
public:
    virtual ~Transport() = default;

    /// Connects; an empty text, or why it did not work in words for the operator.
    virtual QString Open() = 0;
    virtual bool IsOpen() const = 0;
    /// Sends an encoded request and waits for the encoded reply. None when that failed, and then it is
    /// closed.
    virtual std::optional<QByteArray> Exchange(const QByteArray& message,
                                               std::chrono::milliseconds timeLimit) = 0;
    virtual void Close() = 0;
    virtual ConnectionInfo Describe() const = 0;

    /// Why the last `Open` or `Exchange` failed.
    TransportFailure LastFailure() const { return m_failure; }
    /// The same in words for the operator.
    const QString& LastProblem() const { return m_problem; }

    /// What a reply may hold at the most; anything above it breaks the connection.
    void SetLimits(const wire::Limits& limits) { m_limits = limits; }
    /// The wait during which the next calls happen; null for none.
    void SetWaiting(Waiting* waiting) { m_waiting = waiting; }

protected:
    const wire::Limits& ReplyLimits() const { return m_limits; }
    /// Lets the windows live while a call waits.
    void Pump();
    /// Holds input back while a call runs an event loop of its own.
    void HoldInput();
    void ReleaseInput();
    /// Ends the busy cursor for the time of a question to the operator.
    void PauseWaiting();
    /// Notes why a call failed; answers the problem.
    QString Fail(TransportFailure failure, const QString& problem);
    void ClearFailure();

private:
    wire::Limits m_limits = wire::Limits::BeforeSignOn();
    Waiting* m_waiting = nullptr;
    TransportFailure m_failure = TransportFailure::None;
    QString m_problem;
};

} // namespace sysadmin
