#include "wire/CborWriter.h"

#include "wire/Utf8.h"

#include <algorithm>

namespace sysadmin::wire {

void CborWriter::Header(CborHeader::Major major, quint64 value) {
    char header[CborHeader::MostBytes];
    m_bytes.append(header, CborHeader::Write(header, major, value) - header);
}

void CborWriter::Number(qint16 number) {
    if (number < 0)
        Header(CborHeader::Negative, quint64(-1 - number));
    else
        Header(CborHeader::Unsigned, quint64(number));
}

void CborWriter::Text(QStringView text) {
    if (!IsAscii(text)) {
        const QByteArray bytes = text.toUtf8();
        Header(CborHeader::Text, quint64(bytes.size()));
        m_bytes += bytes;
        return;
    }
    const qsizetype begin = m_bytes.size();
    m_bytes.resize(begin + CborHeader::MostBytes + text.size());
    char* end = CborHeader::Write(m_bytes.data() + begin, CborHeader::Text, quint64(text.size()));
    end = std::transform(text.begin(), text.end(), end,
                         [](QChar character) { return char(character.unicode()); });
    m_bytes.resize(end - m_bytes.constData());
}

void CborWriter::AppendWithText(const QByteArray& items, QByteArrayView utf8) {
    const qsizetype begin = m_bytes.size();
    m_bytes.resize(begin + items.size() + CborHeader::MostBytes + utf8.size());
    char* end = std::copy(items.begin(), items.end(), m_bytes.data() + begin);
    end = CborHeader::Write(end, CborHeader::Text, quint64(utf8.size()));
    end = std::copy(utf8.begin(), utf8.end(), end);
    m_bytes.resize(end - m_bytes.constData());
}

} // namespace sysadmin::wire
