#pragma once

#include "wire/EncodedFields.h"
#include "wire/Limits.h"

#include <exception>
#include <memory>
#include <mutex>

namespace sysadmin::server {

/// A reply that would not fit into a message.
class ReplyTooLongError : public std::exception {
public:
    const char* what() const noexcept override { return "The reply is too long."; }
};

/// The fields of a reply while it is built, in the form in which they travel. What it takes is bounded,
/// however much there is to list: long replies are built one at a time in the whole program (others wait in
/// `Put`), and one that becomes too long for a message throws `ReplyTooLongError`.
class ReplyFields {
public:
    /// From so many bytes on a reply is a long one.
    static constexpr qint64 LongBytes = 1024 * 1024;
    /// The most bytes of its fields; what else stands in a message has room beside them.
    static constexpr qint64 MostBytes = wire::Limits().message - 256 * 1024;

    /// Appends a field.
    void Put(const QString& tag, const QString& value);
    /// The same of a value that is UTF-8 already, and valid.
    void Put(const wire::EncodedTag& tag, QByteArrayView value);

    bool IsEmpty() const { return m_fields.Count() == 0; }
    void Clear() { m_fields = {}; }
    const wire::EncodedFields& Encoded() const { return m_fields; }
    /// The fields as texts, for the few who look at them again.
    wire::Fields Decoded() const;

private:
    /// To be called in front of a field of about so many bytes.
    void MakeRoom(qint64 bytes);

    wire::EncodedFields m_fields;
    /// Held while this is a long reply; by the thread, since a reply may be put together from others.
    std::shared_ptr<std::unique_lock<std::recursive_mutex>> m_turn;
};

/// Appends a field to a reply.
inline void Put(ReplyFields& fields, const QString& tag, const QString& value) {
    fields.Put(tag, value);
}

} // namespace sysadmin::server
