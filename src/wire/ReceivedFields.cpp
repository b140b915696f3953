#include "wire/ReceivedFields.h"

#include "wire/CborHeader.h"
#include "wire/EncodedFields.h"
#include "wire/Utf8.h"

#include <algorithm>
#include <array>

namespace sysadmin::wire {

namespace {

/// From so many different tags on they are found by their hashes.
constexpr qsizetype FewTags = 12;
constexpr int NoTag = ReceivedFields::NoTag;
/// Few enough that a text that outlives its list keeps little memory with it.
constexpr qsizetype FieldsOfBlock = 512;

/// Numbers the tags of a message, which must outlive this. A list repeats the same few in every record: most
/// are found by a look at one place.
class TagNumbers {
public:
    /// The number of a tag, which counts from 0; `NoTag` when it is not UTF-8.
    int Of(QByteArrayView bytes) {
        Known& slot = m_slots[SlotOf(bytes)];
        if (slot.bytes != bytes || slot.number == NoTag) {
            const auto known = m_numbers.constFind(bytes);
            const int number = known != m_numbers.constEnd() ? *known : Add(bytes);
            if (number == NoTag)
                return number;
            slot = {bytes, number};
        }
        return slot.number;
    }

    /// The tags by their numbers.
    const QStringList& Tags() const { return m_tags; }

private:
    struct Known {
        QByteArrayView bytes;
        int number = NoTag;
    };

    int Add(QByteArrayView bytes) {
        if (!IsAscii(bytes) && !bytes.isValidUtf8())
            return NoTag;
        const int number = int(m_tags.size());
        m_tags << FromUtf8(bytes);
        m_numbers.insert(bytes, number);
        return number;
    }

    static size_t SlotOf(QByteArrayView tag) {
        return tag.isEmpty() ? 0 : size_t(uchar(tag.front()) * 7 + uchar(tag.back()) + tag.size()) % Slots;
    }

    static constexpr size_t Slots = 64;
    std::array<Known, Slots> m_slots;
    QHash<QByteArrayView, int> m_numbers;
    QStringList m_tags;
};

/// A part of a text, in the same piece of memory. A NUL has to follow it, as everywhere behind a text.
QString PartOf(const QString& text, qsizetype begin, qsizetype size) {
    QString::DataPointer part = text.data_ptr();
    part.setBegin(part.data() + begin);
    part.size = size;
    return QString(std::move(part));
}

} // namespace

ReceivedFields::ReceivedFields(const Fields& fields) {
    EncodedFields encoded;
    for (const Field& field : fields)
        encoded.Append(field.tag, field.value);
    *this = ReceivedFields(encoded);
}

ReceivedFields::ReceivedFields(const EncodedFields& fields) {
    qsizetype end = 0;
    Read(fields.Bytes(), 0, fields.Count(), end);
}

bool ReceivedFields::Read(const QByteArray& message, qsizetype begin, qsizetype count, qsizetype& end) {
    *this = {};
    m_message = message;
    m_places.reserve(count);
    const char* const bytes = message.constData();
    TagNumbers tags;
    qsizetype at = begin;
    CborHeader header;
    const auto text = [&] { // the next one
        header.Read(bytes + at, message.size() - at);
        at += header.size;
        const QByteArrayView content(bytes + at, qsizetype(header.value));
        at += content.size();
        return content;
    };
    for (qsizetype i = 0; i < count; ++i) {
        const int tag = tags.Of(text());
        const QByteArrayView value = text();
        const bool isAscii = IsAscii(value);
        if (tag == NoTag || (!isAscii && !value.isValidUtf8()))
            return false;
        m_places.append({quint32(value.data() - bytes), quint32(value.size()), isAscii, tag});
    }
    m_tags = tags.Tags();
    m_blocks = std::make_shared<QStringList>(count / FieldsOfBlock + 1);
    if (m_tags.size() > FewTags)
        for (qsizetype number = 0; number < m_tags.size(); ++number)
            m_numbers.insert(m_tags[number], int(number));
    end = at;
    return true;
}

int ReceivedFields::FindTag(const QString& tag) const {
    return m_tags.size() > FewTags ? m_numbers.value(tag, NoTag) : int(m_tags.indexOf(tag));
}

QString ReceivedFields::ValueAt(qsizetype field) const {
    const Place& place = m_places.at(field);
    if (!place.isAscii || place.size == 0)
        return FromUtf8(BytesAt(place));
    const qsizetype number = field / FieldsOfBlock;
    if (m_blocks->at(number).isNull())
        (*m_blocks)[number] = MakeBlock(number);
    return PartOf(m_blocks->at(number), place.begin - m_places.at(number * FieldsOfBlock).begin, place.size);
}

/// All that stands in the message from the block's first value on to its last one. Behind a value there is
/// the header of the next tag, which nobody needs as a text.
QString ReceivedFields::MakeBlock(qsizetype block) const {
    const qsizetype first = block * FieldsOfBlock;
    const qsizetype last = std::min(first + FieldsOfBlock, Count()) - 1;
    const quint32 begin = m_places.at(first).begin;
    const quint32 end = m_places.at(last).begin + m_places.at(last).size;
    QString text = QString::fromLatin1(m_message.constData() + begin, qsizetype(end - begin));
    QChar* const letters = text.data();
    for (qsizetype i = first; i < last; ++i)
        letters[m_places.at(i).begin + m_places.at(i).size - begin] = QChar::Null;
    return text;
}

Fields ReceivedFields::All() const {
    Fields fields;
    fields.reserve(Count());
    for (qsizetype i = 0; i < Count(); ++i)
        fields.append({m_tags[TagAt(i)], ValueAt(i)});
    return fields;
}

RecordTags::RecordTags(const ReceivedFields& fields, const QStringList& tags)
    : fields(fields)
    , tags(tags) {
    for (const QString& tag : tags)
        numbers.append(fields.FindTag(tag));
}

QString ReceivedRecord::Value(qsizetype place) const {
    const int number = m_tags->numbers.at(place);
    for (qsizetype i = m_begin; i < m_end && number != NoTag; ++i)
        if (m_tags->fields.TagAt(i) == number)
            return m_tags->fields.ValueAt(i);
    return {};
}

QString FirstValue(const ReceivedFields& fields, const QString& tag) {
    const int number = fields.FindTag(tag);
    for (qsizetype i = 0; number != ReceivedFields::NoTag && i < fields.Count(); ++i)
        if (fields.TagAt(i) == number)
            return fields.ValueAt(i);
    return {};
}

} // namespace sysadmin::wire
