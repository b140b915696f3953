#pragma once

#include "wire/CborHeader.h"

#include <QByteArray>
#include <QStringView>

namespace sysadmin::wire {

/// Writes the items of a message one behind the other.
class CborWriter {
public:
    explicit CborWriter(qsizetype expected = 0) { m_bytes.reserve(expected); }

    void Header(CborHeader::Major major, quint64 value);
    void Number(quint64 number) { Header(CborHeader::Unsigned, number); }
    void Number(qint16 number);
    void Text(QStringView text);
    /// Items that are encoded already.
    void Append(const QByteArray& items) { m_bytes += items; }
    /// The same, and behind them a text that is UTF-8 already.
    void AppendWithText(const QByteArray& items, QByteArrayView utf8);

    const QByteArray& Bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

} // namespace sysadmin::wire
