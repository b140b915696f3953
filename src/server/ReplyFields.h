#pragma once

#include "wire/Message.h"

#include <exception>
#include <memory>
#include <mutex>

namespace sysadmin::server {

/// A reply that would not fit into a message, or takes more memory than one may have while it is built.
class ReplyTooLongError : public std::exception {
public:
    const char* what() const noexcept override { return "The reply is too long."; }
};

/// The fields of a reply while it is built. What it takes is bounded, however much there is to list: long
/// replies are built one at a time in the whole program (others wait in `Put`), and one that becomes too long
/// throws `ReplyTooLongError`.
class ReplyFields : public wire::Fields {
public:
    /// From so many bytes on a reply is a long one.
    static constexpr qint64 LongBytes = 1024 * 1024;
    /// The most memory that the fields of one reply take, about.
    static constexpr qint64 MostBytes = 128 * 1024 * 1024;
    /// The most characters in their texts: they must fit into a message, whatever the characters.
    static constexpr qint64 MostCharacters = 20 * 1024 * 1024;

    using wire::Fields::Fields;

    /// Appends a field.
    void Put(const QString& tag, const QString& value);

private:
    qint64 m_characters = 0;
    /// Held while this is a long reply; by the thread, since a reply may be put together from others.
    std::shared_ptr<std::unique_lock<std::recursive_mutex>> m_turn;
};

/// Appends a field to a reply.
inline void Put(ReplyFields& fields, const QString& tag, const QString& value) {
    fields.Put(tag, value);
}

} // namespace sysadmin::server
