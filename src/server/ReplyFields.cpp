#include "server/ReplyFields.h"

#include "wire/ReceivedFields.h"

namespace sysadmin::server {

namespace {

std::recursive_mutex longReplies;

} // namespace

void ReplyFields::MakeRoom(qint64 bytes) {
    constexpr qint64 ofHeaders = 2 * wire::CborHeader::MostBytes;
    const qint64 size = m_fields.Bytes().size() + bytes + ofHeaders;
    if (size > MostBytes || m_fields.Count() >= wire::Limits().fields)
        throw ReplyTooLongError();
    if (size > LongBytes && !m_turn)
        m_turn = std::make_shared<std::unique_lock<std::recursive_mutex>>(longReplies);
}

void ReplyFields::Put(const QString& tag, const QString& value) {
    constexpr qint64 bytesOfCharacter = 3; // at the most
    MakeRoom(tag.size() + bytesOfCharacter * value.size());
    m_fields.Append(tag, value);
}

void ReplyFields::Put(const wire::EncodedTag& tag, QByteArrayView value) {
    MakeRoom(tag.Bytes().size() + value.size());
    m_fields.Append(tag, value);
}

wire::Fields ReplyFields::Decoded() const {
    return wire::ReceivedFields(m_fields).All();
}

} // namespace sysadmin::server
