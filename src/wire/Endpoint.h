#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace sysadmin::wire {

/// The server's end of one connection: takes encoded requests one at a time and answers each before the next.
/// A socket or the client's in-process transport stands on the other side.
class Endpoint {
public:
    virtual ~Endpoint() = default;
    /// The encoded reply to one encoded request; none when the peer broke the protocol and must be cut off.
    virtual std::optional<QByteArray> Handle(const QByteArray& message) = 0;
    /// Answers as `Handle` does, but later when the reply has to wait for something, and then from another
    /// thread. Until then the endpoint takes no other message.
    using Answered = std::function<void(std::optional<QByteArray> reply)>;
    virtual void HandleThen(const QByteArray& message, const Answered& answered) {
        answered(Handle(message));
    }
    /// Who is signed on; empty while nobody is. Peers share the server fairly by this.
    virtual QString Account() const = 0;
    /// Whether a request of this name may write, and so have to wait for the changes of others. May be asked
    /// while another thread handles a message.
    virtual bool Writes(const QByteArray& request) const = 0;
    /// The size in bytes up to which the next message is accepted.
    virtual qint64 MessageLimit() const = 0;
};

/// Makes the end of a new connection from a peer's address (text; "local" inside the process).
using EndpointFactory = std::function<std::unique_ptr<Endpoint>(const QString& peer)>;

} // namespace sysadmin::wire
