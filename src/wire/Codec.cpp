#include "wire/Codec.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>

#include <array>
#include <limits>

namespace sysadmin::wire {

namespace {

// Enough for a header of either kind of text and most texts' content.
constexpr qsizetype SpareBytesPerText = 4;

template <typename Second>
QByteArray EncodeMessage(quint64 number, const Second& second, const Fields& fields,
                         const QStringList& changed = {}) {
    QByteArray bytes;
    qsizetype size = 128;
    for (const Field& field : fields)
        size += field.tag.size() + field.value.size() + 2 * SpareBytesPerText;
    bytes.reserve(size);
    QCborStreamWriter writer(&bytes);
    writer.startArray(changed.isEmpty() ? 3 : 4);
    writer.append(number);
    writer.append(second);
    writer.startArray(quint64(fields.size()) * 2);
    for (const Field& field : fields) {
        writer.append(QStringView(field.tag));
        writer.append(QStringView(field.value));
    }
    writer.endArray();
    if (!changed.isEmpty()) {
        writer.startArray(quint64(changed.size()));
        for (const QString& word : changed)
            writer.append(QStringView(word));
        writer.endArray();
    }
    writer.endArray();
    return bytes;
}

// Unlike Qt's own function it keeps a byte order mark: it is part of the text here.
QString FromUtf8(const QByteArray& bytes) {
    const bool hasMark = bytes.startsWith("\xef\xbb\xbf");
    const QString text = QString::fromUtf8(bytes);
    return hasMark ? QChar(QChar::ByteOrderMark) + text : text;
}

// Reads the texts of one message. A list repeats the same few tags in every record: they share their text.
class TextReader {
public:
    explicit TextReader(const QByteArray& message)
        : m_reader(message) {}

    QCborStreamReader& Reader() { return m_reader; }

    // Copies the next text's bytes to Bytes(); false when there is none or it is not UTF-8.
    bool ReadBytes() {
        if (!m_reader.isString() || !m_reader.isLengthKnown())
            return false;
        m_bytes.resize(qsizetype(m_reader.length()));
        QCborStreamReader::StringResult<qsizetype> chunk =
            m_reader.readStringChunk(m_bytes.data(), m_bytes.size());
        if (chunk.status != QCborStreamReader::Ok || chunk.data != m_bytes.size())
            return false;
        char none = 0;
        chunk = m_reader.readStringChunk(&none, 1);
        return chunk.status == QCborStreamReader::EndOfString && QByteArrayView(m_bytes).isValidUtf8();
    }

    bool ReadText(QString& text) {
        if (!ReadBytes())
            return false;
        text = FromUtf8(m_bytes);
        return true;
    }

    bool ReadTag(QString& tag) {
        if (!ReadBytes())
            return false;
        KnownTag& known = m_tags[Slot()];
        if (known.bytes != m_bytes) {
            known.bytes = QByteArray(m_bytes.constData(), m_bytes.size());
            known.text = FromUtf8(m_bytes);
        }
        tag = known.text;
        return true;
    }

private:
    struct KnownTag {
        QByteArray bytes;
        QString text = "";
    };

    size_t Slot() const {
        return m_bytes.isEmpty() ? 0 : (m_bytes.front() * 7 + m_bytes.back() + m_bytes.size()) % TagSlots;
    }

    static constexpr size_t TagSlots = 64;
    QCborStreamReader m_reader;
    QByteArray m_bytes;
    std::array<KnownTag, TagSlots> m_tags;
};

bool ReadNumber(QCborStreamReader& reader, quint64& number) {
    if (!reader.isUnsignedInteger())
        return false;
    number = reader.toUnsignedInteger();
    return reader.next();
}

bool ReadStatus(QCborStreamReader& reader, qint16& status) {
    if (!reader.isInteger())
        return false;
    constexpr quint64 highest = std::numeric_limits<qint16>::max();
    if (reader.isUnsignedInteger()) {
        if (reader.toUnsignedInteger() > highest)
            return false;
    } else {
        // The reader tells a negative number by its size; zero stands for one that does not fit.
        const auto size = quint64(reader.toNegativeInteger());
        if (size == 0 || size > highest + 1)
            return false;
    }
    status = qint16(reader.toInteger());
    return reader.next();
}

bool ReadFields(TextReader& texts, Fields& fields) {
    QCborStreamReader& reader = texts.Reader();
    if (!reader.isArray() || !reader.isLengthKnown())
        return false;
    const auto count = qsizetype(reader.length()) / 2;
    if (!reader.enterContainer())
        return false;
    fields.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        Field field;
        if (!texts.ReadTag(field.tag) || !texts.ReadText(field.value))
            return false;
        fields.append(std::move(field));
    }
    return reader.leaveContainer();
}

bool ReadChanged(TextReader& texts, QStringList& changed) {
    QCborStreamReader& reader = texts.Reader();
    const auto count = qsizetype(reader.length());
    if (!reader.enterContainer())
        return false;
    for (qsizetype i = 0; i < count; ++i) {
        QString word;
        if (!texts.ReadText(word))
            return false;
        changed.append(std::move(word));
    }
    return reader.leaveContainer();
}

// The scanner has checked the structure and every limit when this answers true.
bool IsOneMessage(const QByteArray& message, const Limits& limits) {
    FrameScanner scanner(limits);
    return scanner.Scan(message) == FrameScanner::Result::Complete && scanner.Length() == message.size();
}

} // namespace

QByteArray Encode(const Request& request) {
    return EncodeMessage(request.number, QStringView(request.name), request.fields);
}

QByteArray Encode(const Reply& reply) {
    return EncodeMessage(reply.number, qint64(reply.status), reply.fields, reply.changed);
}

std::optional<Request> DecodeRequest(const QByteArray& message, const Limits& limits) {
    if (!IsOneMessage(message, limits))
        return {};
    TextReader texts(message);
    Request request;
    if (texts.Reader().length() != 3 || !texts.Reader().enterContainer() ||
        !ReadNumber(texts.Reader(), request.number) || !texts.ReadText(request.name) ||
        !ReadFields(texts, request.fields))
        return {};
    return request;
}

std::optional<Reply> DecodeReply(const QByteArray& message, const Limits& limits) {
    if (!IsOneMessage(message, limits))
        return {};
    TextReader texts(message);
    Reply reply;
    const bool hasChanged = texts.Reader().length() == 4;
    if (!texts.Reader().enterContainer() || !ReadNumber(texts.Reader(), reply.number) ||
        !ReadStatus(texts.Reader(), reply.status) || !ReadFields(texts, reply.fields) ||
        (hasChanged && !ReadChanged(texts, reply.changed)))
        return {};
    return reply;
}

} // namespace sysadmin::wire
