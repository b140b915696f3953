#include "server/ReplyFields.h"

namespace sysadmin::server {

namespace {

std::recursive_mutex longReplies;

/// What a field takes besides its characters: its place in a list that grows by doubling, and the heads of
/// its texts.
constexpr qint64 FieldBytes = 2 * qint64(sizeof(wire::Field)) + 64;

} // namespace

void ReplyFields::Put(const QString& tag, const QString& value) {
    m_characters += tag.size() + value.size();
    const qint64 bytes = (size() + 1) * FieldBytes + m_characters * qint64(sizeof(QChar));
    if (bytes > MostBytes || m_characters > MostCharacters)
        throw ReplyTooLongError();
    if (bytes > LongBytes && !m_turn)
        m_turn = std::make_shared<std::unique_lock<std::recursive_mutex>>(longReplies);
    append(wire::Field{tag, value});
}

} // namespace sysadmin::server
