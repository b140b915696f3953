#pragma once

#include "wire/CborWriter.h"
#include "wire/Message.h"

namespace sysadmin::wire {

/// A tag in the form in which it travels: a list encodes each of its tags once.
class EncodedTag {
public:
    explicit EncodedTag(QStringView tag);
    const QByteArray& Bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

/// The fields of a message that is being built, in the form in which they travel.
class EncodedFields {
public:
    void Append(QStringView tag, QStringView value);
    /// `value` is UTF-8 and valid.
    void Append(const EncodedTag& tag, QByteArrayView value);

    qsizetype Count() const { return m_count; }
    /// Tags and values in turn.
    const QByteArray& Bytes() const { return m_items.Bytes(); }

private:
    CborWriter m_items;
    qsizetype m_count = 0;
};

} // namespace sysadmin::wire
