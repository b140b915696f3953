#include "wire/CborHeader.h"
#include "wire/Codec.h"

namespace sysadmin::wire {

namespace {

constexpr quint64 MostChanged = 1000;

bool IsArrayOf(const CborHeader& header, quint64 count) {
    return header.major == CborHeader::Array && header.value == count;
}

/// What a text takes apart from its place in a field: two bytes a character, and what the memory's own
/// bookkeeping adds.
qint64 DecodedText(qint64 bytes) {
    return bytes == 0 ? 0 : 2 * bytes + 32;
}

bool IsText(const CborHeader& header, qint64 limit) {
    return header.major == CborHeader::Text && header.value <= quint64(limit);
}

} // namespace

FrameScanner::Result FrameScanner::Scan(const QByteArray& bytes) {
    while (m_item != m_items || m_textsLeft > 0) {
        CborHeader header;
        const qint64 available = bytes.size() - m_position;
        switch (header.Read(bytes.constData() + qMin<qint64>(m_position, bytes.size()), available)) {
        case CborHeader::Result::Broken:
            return Result::Broken;
        case CborHeader::Result::Incomplete:
            return m_position < m_limits.message ? Result::Incomplete : Result::Broken;
        case CborHeader::Result::Complete:
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
                if (header.major != CborHeader::Unsigned)
                    return Result::Broken;
                break;
            case 2:
                // A request has its name here, a reply its status.
                if (IsText(header, m_limits.name)) {
                    content = qint64(header.value);
                    m_nameStart = m_position + header.size;
                    m_nameLength = content;
                } else if (header.major != CborHeader::Unsigned && header.major != CborHeader::Negative)
                    return Result::Broken;
                break;
            case 3:
                if (header.major != CborHeader::Array || header.value % 2 != 0 ||
                    header.value / 2 > quint64(m_limits.fields))
                    return Result::Broken;
                m_textsLeft = qint64(header.value);
                m_decodedBytes += m_textsLeft / 2 * qint64(sizeof(Field));
                break;
            default:
                if (header.major != CborHeader::Array || header.value > MostChanged)
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
