#include "cataloging/SameRecords.h"

#include "core/data/Tr.h"

#include <QRegularExpression>

namespace sysadmin {

namespace {

/// An ISBN in its form of thirteen digits, without marks; empty for what is none.
QString IsbnIn(const QString& text) {
    static const QRegularExpression form("^[\\s]*([0-9][0-9Xx -]{8,16})");
    QString digits = form.match(text).captured(1).toUpper().remove(' ').remove('-');
    if (digits.size() == 13)
        return digits;
    if (digits.size() != 10)
        return {};
    digits = "978" + digits.left(9);
    int sum = 0;
    for (int i = 0; i < digits.size(); ++i)
        sum += digits[i].digitValue() * (i % 2 == 0 ? 1 : 3);
    return digits + QString::number((10 - sum % 10) % 10);
}

struct Identifier {
    QString key;
    QString name;
};

QList<Identifier> IdentifiersOf(const marc::Record& record) {
    // Authority records have numbers of their own.
    const QString kind = record.IsAuthority() ? "z" : "a";
    QList<Identifier> identifiers;
    const auto add = [&](const QString& field, const QString& what, const QString& value,
                         const QString& more = {}) {
        if (!value.isEmpty())
            identifiers.append({kind + field + more.toLower() + '/' + value.toLower(), what + ' ' + value});
    };
    const marc::Field* number = record.First("001");
    const marc::Field* agency = record.First("003");
    if (number)
        add("001", Tr("control number"), number->value.trimmed(),
            agency ? agency->value.trimmed() : QString());
    for (const marc::Field& field : record.fields) {
        const QString text = field.First('a').trimmed();
        if (field.tag == u"010")
            add("010", Tr("LC control number"), QString(text).remove(' '));
        else if (field.tag == u"020")
            add("020", Tr("ISBN"), IsbnIn(text));
        else if (field.tag == u"022")
            add("022", Tr("ISSN"), text.left(9));
        else if (field.tag == u"035")
            add("035", Tr("system number"), text);
    }
    return identifiers;
}

} // namespace

void SameRecords::Add(const marc::Record& record, const QString& name) {
    for (const Identifier& identifier : IdentifiersOf(record))
        if (!m_names.contains(identifier.key))
            m_names.insert(identifier.key, name);
}

QString SameRecords::Find(const marc::Record& record) const {
    for (const Identifier& identifier : IdentifiersOf(record))
        if (const auto found = m_names.constFind(identifier.key); found != m_names.constEnd())
            return QString("%1 (%2)").arg(*found, identifier.name);
    return {};
}

} // namespace sysadmin
