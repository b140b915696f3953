#pragma once

#include "wire/Message.h"

#include <QByteArray>
#include <QHash>

namespace sysadmin::wire {

class EncodedFields;

/// The fields of a message that has arrived: its bytes, and where in them the fields stand. A value becomes a
/// text when it is asked for, a tag once for all fields that have it. Copies share everything.
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

    QByteArray m_message;
    QList<Place> m_places;
    QStringList m_tags;
    QHash<QString, int> m_numbers; ///< of the tags, where they are many
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
