#pragma once

#include "wire/Message.h"

#include <QByteArray>
#include <QHash>

#include <memory>

namespace sysadmin::wire {

class EncodedFields;

/// The fields of a message that has arrived: its bytes, and where in them the fields stand. A value becomes a
/// text when it is asked for, a tag once for all fields that have it. Copies share everything. Texts share
/// one piece of memory with those of the fields around them, so that a list costs next to nothing per text;
/// for use by one thread at a time.
class ReceivedFields {
public:
    static constexpr int NoTag = -1;

    ReceivedFields() = default;
    /// Fields that did not arrive, as if they had.
    ReceivedFields(const Fields& fields);
    explicit ReceivedFields(const EncodedFields& fields);

    /// Takes the fields that stand in a message from `begin` on; a scanner has checked its structure and
    /// every limit. False when something is no text or not UTF-8. `end` is where they end.
    bool Read(const QByteArray& message, qsizetype begin, qsizetype count, qsizetype& end);

    qsizetype Count() const { return m_places.size(); }
    bool IsEmpty() const { return m_places.isEmpty(); }
    /// The number of a tag, from 0 to one less than `CountTags`; `NoTag` when no field has it.
    int FindTag(const QString& tag) const;
    int CountTags() const { return int(m_tags.size()); }
    /// The number of a field's tag.
    int TagAt(qsizetype field) const { return m_places[field].tag; }
    QString ValueAt(qsizetype field) const;
    /// All as texts.
    Fields All() const;

private:
    struct Place {
        quint32 begin = 0;
        quint32 size : 31 = 0;
        quint32 isAscii : 1 = 0;
        int tag = 0;
    };

    QByteArrayView BytesAt(const Place& place) const {
        return {m_message.constData() + place.begin, place.size};
    }
    QString MakeBlock(qsizetype block) const;

    QByteArray m_message;
    QList<Place> m_places;
    /// The texts of so many fields each, as far as they were asked for.
    std::shared_ptr<QStringList> m_blocks;
    QStringList m_tags;
    QHash<QString, int> m_numbers; ///< of the tags, where they are many
};

/// Of which tags records are read, one record of a message after the other.
struct RecordTags {
    RecordTags(const ReceivedFields& fields, const QStringList& tags);

    ReceivedFields fields;
    QStringList tags;
    QList<int> numbers; ///< of the tags; `NoTag` where no field has it
};

/// What a record of a message has under some tags. Its values stay in the message, which is kept for that,
/// and become texts when they are asked for.
class ReceivedRecord {
public:
    /// Of no record: it has no tags.
    ReceivedRecord() = default;
    /// The record has the fields from `begin` up to `end`.
    ReceivedRecord(const std::shared_ptr<const RecordTags>& tags, qsizetype begin, qsizetype end)
        : m_tags(tags)
        , m_begin(quint32(begin))
        , m_end(quint32(end)) {}

    qsizetype Count() const { return m_tags ? m_tags->tags.size() : 0; }
    /// The first value under the tag in this place among the tags; an empty text where there is none.
    QString Value(qsizetype place) const;
    /// Whether both are the same record of one message, read in one go.
    bool IsSame(const ReceivedRecord& other) const {
        return m_tags == other.m_tags && m_begin == other.m_begin;
    }

private:
    std::shared_ptr<const RecordTags> m_tags;
    quint32 m_begin = 0;
    quint32 m_end = 0;
};

/// The value of the first field with this tag, or an empty text.
QString FirstValue(const ReceivedFields& fields, const QString& tag);

/// A reply as it has arrived.
struct ReceivedReply {
    quint64 number = 0;
    qint16 status = 0;
    ReceivedFields fields;
    QStringList changed = {}; ///< see `Reply`
};

} // namespace sysadmin::wire
