#pragma once

#include <QList>
#include <QString>

namespace sysadmin::marc {

inline constexpr int LeaderLength = 24;
inline constexpr int TagLength = 3;

struct Subfield {
    QChar code;
    QString value;
    bool operator==(const Subfield&) const = default;
};

/// A control field (001 to 009: a value) or a data field (indicators and subfields).
struct Field {
    QString tag;
    QString value = {}; ///< of a control field
    QChar indicator1 = u' ';
    QChar indicator2 = u' ';
    QList<Subfield> subfields = {};

    bool IsControl() const { return tag.startsWith("00"); }
    /// The value of the first subfield with this code; empty when there is none.
    QString First(QChar code) const;
    /// The values of all subfields with this code, in order.
    QStringList All(QChar code) const;
    bool operator==(const Field&) const = default;
};

/// A record as it was read, its fields in their order.
struct Record {
    int number = 0;      ///< its place among the records that were looked at, from 1
    QString leader = {}; ///< 24 characters, or empty where the text had none
    QList<Field> fields = {};

    /// The first field with this tag; null when there is none.
    const Field* First(const QString& tag) const;
    /// The type of record of its leader ('z' an authority, 'u', 'v', 'x', 'y' holdings); language material
    /// where it has none.
    QChar Type() const { return leader.size() > 6 ? leader[6] : QChar(u'a'); }
    bool IsAuthority() const { return Type() == u'z'; }
    bool IsHoldings() const { return QStringView(u"uvxy").contains(Type()); }
    /// What a list calls it: its title (245), else its heading (1xx), else its control number; may be empty.
    QString Title() const;
};

/// One line of the text form: "245 10 $a Title $b rest"; control fields "001    value".
QString ToText(const Field& field);
/// The lines of a record, leader first.
QString ToText(const Record& record);

} // namespace sysadmin::marc
