#include "wire/EncodedFields.h"

namespace sysadmin::wire {

EncodedTag::EncodedTag(QStringView tag) {
    CborWriter writer;
    writer.Text(tag);
    m_bytes = writer.Bytes();
}

void EncodedFields::Append(QStringView tag, QStringView value) {
    m_items.Text(tag);
    m_items.Text(value);
    ++m_count;
}

void EncodedFields::Append(const EncodedTag& tag, QByteArrayView value) {
    m_items.AppendWithText(tag.Bytes(), value);
    ++m_count;
}

} // namespace sysadmin::wire
