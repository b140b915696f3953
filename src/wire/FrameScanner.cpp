#include "wire/Codec.h"

#include <QtEndian>

namespace sysadmin::wire {

namespace {

constexpr int MajorUnsigned = 0;
constexpr int MajorNegative = 1;
constexpr int MajorText = 3;
constexpr int MajorArray = 4;
constexpr quint64 MostChanged = 1000;

// What stands in front of every item: its kind and, for a text or an array, its length.
struct Header {
    int major = 0;
    quint64 value = 0;
    int size = 0; // bytes of the header itself
};

enum class HeaderResult { Complete, Incomplete, Broken };

HeaderResult ReadHeader(const char* bytes, qint64 available, Header& header) {
    if (available < 1)
        return HeaderResult::Incomplete;
    const auto first = uchar(bytes[0]);
    header.major = first >> 5;
    const int info = first & 0x1f;
    // 28 to 30 mean nothing, 31 is a length that is told only at the end: a limit could not be checked first.
    if (info > 27)
        return HeaderResult::Broken;
    header.size = info < 24 ? 1 : 1 + (1 << (info - 24));
    if (available < header.size)
        return HeaderResult::Incomplete;
    switch (info) {
    case 24:
        header.value = uchar(bytes[1]);
        break;
    case 25:
        header.value = qFromBigEndian<quint16>(bytes + 1);
        break;
    case 26:
        header.value = qFromBigEndian<quint32>(bytes + 1);
        break;
    case 27:
        header.value = qFromBigEndian<quint64>(bytes + 1);
        break;
    default:
        header.value = quint64(info);
    }
    return HeaderResult::Complete;
}

bool IsArrayOf(const Header& header, quint64 count) {
    return header.major == MajorArray && header.value == count;
}

/// What a text takes apart from its place in a field: two bytes a character, and what the memory's own
/// bookkeeping adds.
qint64 DecodedText(qint64 bytes) {
    return bytes == 0 ? 0 : 2 * bytes + 32;
}

bool IsText(const Header& header, qint64 limit) {
    return header.major == MajorText && header.value <= quint64(limit);
}

} // namespace

FrameScanner::Result FrameScanner::Scan(const QByteArray& bytes) {
    while (m_item != m_items || m_textsLeft > 0) {
        Header header;
        const qint64 available = bytes.size() - m_position;
        switch (ReadHeader(bytes.constData() + qMin<qint64>(m_position, bytes.size()), available, header)) {
        case HeaderResult::Broken:
            return Result::Broken;
        case HeaderResult::Incomplete:
            return m_position < m_limits.message ? Result::Incomplete : Result::Broken;
        case HeaderResult::Complete:
            break;
        }
        qint64 content = 0;
        if (m_textsLeft > 0) {
            const bool isTag = m_item == 5 || m_textsLeft % 2 == 0;
            if (!IsText(header, isTag ? m_limits.tag : m_limits.value))
                return Result::Broken;
            content = qint64(header.value);
            m_decodedBytes += DecodedText(content);
            --m_textsLeft;
        } else {
            switch (m_item) {
            case 0:
                if (!IsArrayOf(header, 3) && !IsArrayOf(header, 4))
                    return Result::Broken;
                m_items = 1 + int(header.value);
                break;
            case 1:
                if (header.major != MajorUnsigned)
                    return Result::Broken;
                break;
            case 2:
                // A request has its name here, a reply its status.
                if (IsText(header, m_limits.name)) {
                    content = qint64(header.value);
                    m_nameStart = m_position + header.size;
                    m_nameLength = content;
                } else if (header.major != MajorUnsigned && header.major != MajorNegative)
                    return Result::Broken;
                break;
            case 3:
                if (header.major != MajorArray || header.value % 2 != 0 ||
                    header.value / 2 > quint64(m_limits.fields))
                    return Result::Broken;
                m_textsLeft = qint64(header.value);
                m_decodedBytes += m_textsLeft / 2 * qint64(sizeof(Field));
                break;
            default:
                if (header.major != MajorArray || header.value > MostChanged)
                    return Result::Broken;
                m_textsLeft = qint64(header.value);
            }
            ++m_item;
        }
        m_position += header.size + content;
        // Each text to come takes one byte at least.
        if (m_position + m_textsLeft > m_limits.message)
            return Result::Broken;
    }
    return bytes.size() < m_position ? Result::Incomplete : Result::Complete;
}

QByteArrayView FrameScanner::Name(const QByteArray& bytes) const {
    return m_nameStart + m_nameLength <= bytes.size()
               ? QByteArrayView(bytes).sliced(m_nameStart, m_nameLength)
               : QByteArrayView();
}

void FrameScanner::Reset() {
    m_position = 0;
    m_nameStart = 0;
    m_nameLength = 0;
    m_decodedBytes = 0;
    m_item = 0;
    m_items = 4;
    m_textsLeft = 0;
}

} // namespace sysadmin::wire
