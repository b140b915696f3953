#include "marc/Record.h"

#include <QRegularExpression>

namespace sysadmin::marc {

namespace {

/// A value as it stands in a line: what would read as the beginning of a subfield there is written out.
QString Escaped(QString value) {
    static const QRegularExpression mark(R"((^|\s)\$(?=\S(\s|$)))");
    return value.replace(mark, "\\1{dollar}");
}

} // namespace

QString Field::First(QChar code) const {
    for (const Subfield& subfield : subfields)
        if (subfield.code == code)
            return subfield.value;
    return {};
}

QStringList Field::All(QChar code) const {
    QStringList values;
    for (const Subfield& subfield : subfields)
        if (subfield.code == code)
            values << subfield.value;
    return values;
}

const Field* Record::First(const QString& tag) const {
    for (const Field& field : fields)
        if (field.tag == tag)
            return &field;
    return nullptr;
}

QString Record::Title() const {
    if (const Field* title = First("245"))
        return QStringList(title->All('a') + title->All('b')).join(' ');
    for (const Field& field : fields)
        if (field.tag.startsWith('1'))
            return field.First('a');
    const Field* number = First("001");
    return number ? number->value : QString();
}

QString ToText(const Field& field) {
    if (field.IsControl())
        return field.tag + "    " + field.value;
    QString line = field.tag + ' ' + field.indicator1 + field.indicator2;
    for (const Subfield& subfield : field.subfields)
        line += " $" + QString(subfield.code) + ' ' + Escaped(subfield.value);
    return line;
}

QString ToText(const Record& record) {
    QString text;
    if (!record.leader.isEmpty())
        text += "LDR    " + record.leader + '\n';
    for (const Field& field : record.fields)
        text += ToText(field) + '\n';
    return text;
}

} // namespace sysadmin::marc
