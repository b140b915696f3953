#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstring>

namespace sysadmin::wire {

/// Whether a text holds ASCII only, as nearly all do. (Eight bytes at a time: texts are short and many.
/// Leaving at once keeps compilers from widening the loop, which short texts pay dearly for.)
inline bool IsAscii(QByteArrayView text) {
    constexpr quint64 highBits = 0x8080'8080'8080'8080;
    const char* at = text.data();
    qsizetype left = text.size();
    for (; left >= 8; at += 8, left -= 8) {
        quint64 some;
        std::memcpy(&some, at, 8);
        if (some & highBits)
            return false;
    }
    for (; left > 0; ++at, --left)
        if (uchar(*at) & 0x80)
            return false;
    return true;
}

inline bool IsAscii(QStringView text) {
    char16_t all = 0;
    for (const QChar character : text)
        all |= character.unicode();
    return all < 0x80;
}

/// The text of valid UTF-8. Unlike Qt's own function this keeps a byte order mark: it is part of the text.
inline QString FromUtf8(QByteArrayView bytes) {
    const bool hasMark = bytes.startsWith("\xef\xbb\xbf");
    const QString text = QString::fromUtf8(bytes);
    return hasMark ? QChar(QChar::ByteOrderMark) + text : text;
}

} // namespace sysadmin::wire
