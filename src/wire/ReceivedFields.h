#pragma once

#include "wire/Message.h"

#include <QByteArray>
#include <QHash>

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
    mutable QStringList m_blocks; ///< the texts of so many fields each, as far as they were asked for
    QStringList m_tags;
    QHash<QString, int> m_numbers; ///< of the tags, where they are many
};

/// Reads the same tags of one record of a message after the other.
class RecordReader {
public:
    RecordReader() = default;
    RecordReader(const ReceivedFields& fields, const QStringList& tags);

    const QStringList& Tags() const { return m_tags; }
    /// The first value of each tag in the fields from `begin` up to `end` of the same message, in the tags'
    /// order; an empty text where there is none.
    QStringList Read(const ReceivedFields& fields, qsizetype begin, qsizetype end) const;

private:
    QStringList m_tags;
    QList<int> m_placeOf;              ///< among the tags, by the number of a tag; -1: not asked for
    QList<std::pair<int, int>> m_same; ///< places of tags that are asked for again, and of the first ones
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
