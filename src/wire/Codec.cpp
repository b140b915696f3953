#include "wire/Codec.h"

#include "wire/CborHeader.h"

#include <algorithm>
#include <array>
#include <limits>

// Texts are written and read here and not by Qt's stream classes, which go through a device for each of them:
// a list has hundreds of thousands.
namespace sysadmin::wire {

namespace {

bool IsAscii(QStringView text) {
    char16_t all = 0;
    for (const QChar character : text)
        all |= character.unicode();
    return all < 0x80;
}

bool IsAscii(QByteArrayView text) {
    uchar all = 0;
    for (const char character : text)
        all |= uchar(character);
    return all < 0x80;
}

class MessageWriter {
public:
    explicit MessageWriter(qsizetype expected) { m_bytes.reserve(expected); }

    void Header(CborHeader::Major major, quint64 value) {
        char header[CborHeader::MostBytes];
        m_bytes.append(header, CborHeader::Write(header, major, value) - header);
    }
    void Number(quint64 number) { Header(CborHeader::Unsigned, number); }
    void Number(qint16 number) {
        if (number < 0)
            Header(CborHeader::Negative, quint64(-1 - number));
        else
            Header(CborHeader::Unsigned, quint64(number));
    }
    void Text(QStringView text) {
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
    const QByteArray& Bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

// Enough for a header of either kind of text and most texts' content.
constexpr qsizetype SpareBytesPerText = 4;

qsizetype ExpectedSize(const Fields& fields) {
    qsizetype size = 128;
    for (const Field& field : fields)
        size += field.tag.size() + field.value.size() + 2 * SpareBytesPerText;
    return size;
}

void WriteFields(MessageWriter& writer, const Fields& fields) {
    writer.Header(CborHeader::Array, quint64(fields.size()) * 2);
    for (const Field& field : fields) {
        writer.Text(field.tag);
        writer.Text(field.value);
    }
}

// Unlike Qt's own function it keeps a byte order mark: it is part of the text here.
QString FromUtf8(QByteArrayView bytes) {
    const bool hasMark = bytes.startsWith("\xef\xbb\xbf");
    const QString text = QString::fromUtf8(bytes);
    return hasMark ? QChar(QChar::ByteOrderMark) + text : text;
}

// Reads the items of one message of which the scanner has checked the structure and every limit. A list
// repeats the same few tags in every record: they share their text.
class MessageReader {
public:
    explicit MessageReader(const QByteArray& message)
        : m_at(message.constData())
        , m_end(m_at + message.size()) {}

    CborHeader Next() {
        CborHeader header;
        header.Read(m_at, m_end - m_at);
        m_at += header.size;
        return header;
    }

    // False when it is no text, or not UTF-8.
    bool ReadText(QString& text) {
        const CborHeader header = Next();
        if (header.major != CborHeader::Text)
            return false;
        const QByteArrayView bytes = Content(header);
        if (IsAscii(bytes)) {
            text = QString::fromLatin1(bytes);
            return true;
        }
        text = FromUtf8(bytes);
        return bytes.isValidUtf8();
    }

    bool ReadTag(QString& tag) {
        const char* const begin = m_at;
        const QByteArrayView bytes = Content(Next());
        KnownTag& known = m_tags[Slot(bytes)];
        if (known.bytes != bytes || !known.isKnown) {
            m_at = begin;
            if (!ReadText(known.text))
                return false;
            known.bytes = bytes;
            known.isKnown = true;
        }
        tag = known.text;
        return true;
    }

    bool ReadFields(Fields& fields) {
        const auto count = qsizetype(Next().value) / 2;
        fields.reserve(count);
        for (qsizetype i = 0; i < count; ++i) {
            Field& field = fields.emplace_back();
            if (!ReadTag(field.tag) || !ReadText(field.value))
                return false;
        }
        return true;
    }

    bool ReadTexts(QStringList& texts) {
        const auto count = qsizetype(Next().value);
        for (qsizetype i = 0; i < count; ++i)
            if (!ReadText(texts.emplace_back()))
                return false;
        return true;
    }

private:
    struct KnownTag {
        QByteArrayView bytes;
        QString text;
        bool isKnown = false;
    };

    QByteArrayView Content(const CborHeader& header) {
        const QByteArrayView bytes(m_at, qsizetype(header.value));
        m_at += header.value;
        return bytes;
    }

    static size_t Slot(QByteArrayView tag) {
        return tag.isEmpty() ? 0 : size_t(uchar(tag.front()) * 7 + uchar(tag.back()) + tag.size()) % TagSlots;
    }

    static constexpr size_t TagSlots = 64;
    const char* m_at;
    const char* m_end;
    std::array<KnownTag, TagSlots> m_tags;
};

bool ReadStatus(const CborHeader& header, qint16& status) {
    constexpr quint64 highest = std::numeric_limits<qint16>::max();
    if (header.value > highest ||
        (header.major != CborHeader::Unsigned && header.major != CborHeader::Negative))
        return false;
    status = qint16(header.major == CborHeader::Unsigned ? int(header.value) : -1 - int(header.value));
    return true;
}

// The scanner has checked the structure and every limit when this answers true.
bool IsOneMessage(const QByteArray& message, const Limits& limits) {
    FrameScanner scanner(limits);
    return scanner.Scan(message) == FrameScanner::Result::Complete && scanner.Length() == message.size();
}

} // namespace

QByteArray Encode(const Request& request) {
    MessageWriter writer(ExpectedSize(request.fields));
    writer.Header(CborHeader::Array, 3);
    writer.Number(request.number);
    writer.Text(request.name);
    WriteFields(writer, request.fields);
    return writer.Bytes();
}

QByteArray Encode(const Reply& reply) {
    MessageWriter writer(ExpectedSize(reply.fields));
    writer.Header(CborHeader::Array, reply.changed.isEmpty() ? 3 : 4);
    writer.Number(reply.number);
    writer.Number(reply.status);
    WriteFields(writer, reply.fields);
    if (!reply.changed.isEmpty()) {
        writer.Header(CborHeader::Array, quint64(reply.changed.size()));
        for (const QString& word : reply.changed)
            writer.Text(word);
    }
    return writer.Bytes();
}

std::optional<Request> DecodeRequest(const QByteArray& message, const Limits& limits) {
    if (!IsOneMessage(message, limits))
        return {};
    MessageReader reader(message);
    if (reader.Next().value != 3)
        return {};
    Request request;
    request.number = reader.Next().value;
    if (!reader.ReadText(request.name) || !reader.ReadFields(request.fields))
        return {};
    return request;
}

std::optional<Reply> DecodeReply(const QByteArray& message, const Limits& limits) {
    if (!IsOneMessage(message, limits))
        return {};
    MessageReader reader(message);
    const bool hasChanged = reader.Next().value == 4;
    Reply reply;
    reply.number = reader.Next().value;
    if (!ReadStatus(reader.Next(), reply.status) || !reader.ReadFields(reply.fields) ||
        (hasChanged && !reader.ReadTexts(reply.changed)))
        return {};
    return reply;
}

} // namespace sysadmin::wire
