#pragma once

#include "wire/EncodedFields.h"
#include "wire/Limits.h"
#include "wire/Message.h"
#include "wire/ReceivedFields.h"

#include <QByteArray>

#include <optional>

namespace sysadmin::wire {

/// A request as the CBOR array [number, name, [tag, value, ...]].
QByteArray Encode(const Request& request);
/// A reply as the CBOR array [number, status, [tag, value, ...]], with the array of changed subjects as
/// fourth element when there are some.
QByteArray Encode(const Reply& reply);
/// The same reply, of fields that were encoded while they were put together.
QByteArray Encode(quint64 number, qint16 status, const EncodedFields& fields,
                  const QStringList& changed = {});

/// The request of exactly one encoded message; none when it is malformed, not UTF-8, or breaks a limit.
std::optional<Request> DecodeRequest(const QByteArray& message, const Limits& limits = {});
/// The reply of exactly one encoded message; none when it is malformed, not UTF-8, or breaks a limit.
std::optional<Reply> DecodeReply(const QByteArray& message, const Limits& limits = {});
/// The same, checked in the same way, with the fields left as they came.
std::optional<ReceivedReply> ReadReply(const QByteArray& message, const Limits& limits = {});

/// Finds where a message ends in a stream of bytes that arrives in pieces. Lengths are checked against the
/// limits when their header has arrived, before anything of that length is stored. Only arrays and texts
/// whose length stands in front of them are accepted. What was looked at once is not looked at again.
class FrameScanner {
public:
    enum class Result {
        Incomplete, ///< the message goes on in bytes that are still to come
        Complete,   ///< Length() bytes make one message
        Broken,     ///< not a message, or over a limit: cut the peer off
    };

    explicit FrameScanner(const Limits& limits = {})
        : m_limits(limits) {}
    void SetLimits(const Limits& limits) { m_limits = limits; }

    /// Looks at the bytes received so far of one message; call it again with more of the same message
    /// appended.
    Result Scan(const QByteArray& bytes);
    /// The length in bytes of the complete message; before that, how far it reaches at the least.
    qint64 Length() const { return m_position; }
    /// About how much memory the message takes when it is decoded, as far as it is known yet: the fields
    /// count as soon as their number has arrived.
    qint64 DecodedBytes() const { return m_decodedBytes; }
    /// The request's name in these bytes, once it has arrived; empty in a reply.
    QByteArrayView Name(const QByteArray& bytes) const;
    /// Starts on the next message.
    void Reset();

private:
    // The array, the number, the name or status, the field array, perhaps the array of changed subjects; the
    // texts of an array are counted by m_textsLeft.
    int m_items = 4;

    Limits m_limits;
    qint64 m_position = 0; // where the next header stands, or will when the bytes before it have arrived
    qint64 m_nameStart = 0;
    qint64 m_nameLength = 0;
    qint64 m_decodedBytes = 0;
    int m_item = 0;         // items seen so far
    qint64 m_textsLeft = 0; // texts still to come: among fields an even count stands in front of a tag
};

} // namespace sysadmin::wire
