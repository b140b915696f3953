#pragma once

#include "wire/Limits.h"
#include "wire/Message.h"

#include <QByteArray>

#include <optional>

namespace sysadmin::wire {

/// A request as the CBOR array [number, name, [tag, value, ...]].
QByteArray Encode(const Request& request);
/// A reply as the CBOR array [number, status, [tag, value, ...]].
QByteArray Encode(const Reply& reply);

/// The request of exactly one encoded message; none when it is malformed or breaks a limit.
std::optional<Request> DecodeRequest(const QByteArray& message, const Limits& limits = {});
/// The reply of exactly one encoded message; none when it is malformed or breaks a limit.
std::optional<Reply> DecodeReply(const QByteArray& message, const Limits& limits = {});

/// Finds where a message ends in a stream of bytes that arrives in pieces. Lengths are checked against the limits
/// when their header has arrived, before anything of that length is stored.
class FrameScanner {
public:
    enum class Result {
        Incomplete, ///< the message goes on in bytes that are still to come
        Complete,   ///< Length() bytes make one message
        Broken,     ///< not a message, or over a limit: cut the peer off
    };

    explicit FrameScanner(const Limits& limits = {}) : m_limits(limits) {}
    void SetLimits(const Limits& limits) { m_limits = limits; }

    /// Looks at the bytes received so far of one message; call it again with more of the same message appended.
    Result Scan(const QByteArray& bytes);
    /// The length in bytes of the complete message.
    qint64 Length() const { return m_position; }
    /// Starts on the next message.
    void Reset();

private:
    Limits m_limits;
    qint64 m_position = 0;
    int m_item = 0;           // items of the message seen so far: the array, number, name or status, fields
    qint64 m_fieldsLeft = 0;  // texts still to come in the field array
};

} // namespace sysadmin::wire
