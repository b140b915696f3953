#include "wire/Codec.h"

#include "wire/CborWriter.h"
#include "wire/Utf8.h"

#include <array>
#include <limits>

// Texts are written and read here and not by Qt's stream classes, which go through a device for each of them:
// a list has hundreds of thousands.
namespace sysadmin::wire {

namespace {

// Enough for a header of either kind of text and most texts' content.
constexpr qsizetype SpareBytesPerText = 4;

qsizetype ExpectedSize(const Fields& fields) {
    qsizetype size = 128;
    for (const Field& field : fields)
        size += field.tag.size() + field.value.size() + 2 * SpareBytesPerText;
    return size;
}

void WriteFields(CborWriter& writer, const Fields& fields) {
    writer.Header(CborHeader::Array, quint64(fields.size()) * 2);
    for (const Field& field : fields) {
        writer.Text(field.tag);
        writer.Text(field.value);
    }
}

// Reads the items of one message of which the scanner has checked the structure and every limit. Fields
// with the same tag share its text where they follow each other closely: what a request takes is bounded, and
// so no tag is kept in mind for longer.
class MessageReader {
public:
    explicit MessageReader(const QByteArray& message)
        : m_message(message)
        , m_at(message.constData())
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

    bool ReadFields(ReceivedFields& fields) {
        const auto count = qsizetype(Next().value) / 2;
        qsizetype end = 0;
        const bool isRead = fields.Read(m_message, m_at - m_message.constData(), count, end);
        m_at = m_message.constData() + end;
        return isRead;
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
    const QByteArray& m_message;
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
    CborWriter writer(ExpectedSize(request.fields));
    writer.Header(CborHeader::Array, 3);
    writer.Number(request.number);
    writer.Text(request.name);
    WriteFields(writer, request.fields);
    return writer.Bytes();
}

namespace {

void BeginReply(CborWriter& writer, quint64 number, qint16 status, const QStringList& changed) {
    writer.Header(CborHeader::Array, changed.isEmpty() ? 3 : 4);
    writer.Number(number);
    writer.Number(status);
}

void EndReply(CborWriter& writer, const QStringList& changed) {
    if (changed.isEmpty())
        return;
    writer.Header(CborHeader::Array, quint64(changed.size()));
    for (const QString& word : changed)
        writer.Text(word);
}

} // namespace

QByteArray Encode(const Reply& reply) {
    CborWriter writer(ExpectedSize(reply.fields));
    BeginReply(writer, reply.number, reply.status, reply.changed);
    WriteFields(writer, reply.fields);
    EndReply(writer, reply.changed);
    return writer.Bytes();
}

QByteArray Encode(quint64 number, qint16 status, const EncodedFields& fields, const QStringList& changed) {
    constexpr qsizetype expectedOfOthers = 1024;
    CborWriter writer(fields.Bytes().size() + expectedOfOthers);
    BeginReply(writer, number, status, changed);
    writer.Header(CborHeader::Array, quint64(fields.Count()) * 2);
    writer.Append(fields.Bytes());
    EndReply(writer, changed);
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

std::optional<ReceivedReply> ReadReply(const QByteArray& message, const Limits& limits) {
    if (!IsOneMessage(message, limits))
        return {};
    MessageReader reader(message);
    const bool hasChanged = reader.Next().value == 4;
    ReceivedReply reply;
    reply.number = reader.Next().value;
    if (!ReadStatus(reader.Next(), reply.status) || !reader.ReadFields(reply.fields) ||
        (hasChanged && !reader.ReadTexts(reply.changed)))
        return {};
    return reply;
}

std::optional<Reply> DecodeReply(const QByteArray& message, const Limits& limits) {
    const std::optional<ReceivedReply> reply = ReadReply(message, limits);
    if (!reply)
        return {};
    return Reply{reply->number, reply->status, reply->fields.All(), reply->changed};
}

} // namespace sysadmin::wire
