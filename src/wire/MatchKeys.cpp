#include "wire/MatchKeys.h"

#include <QRegularExpression>

namespace sysadmin::wire::matching {

namespace {

QString PlainText(const QString& text) {
    QString plain;
    for (const QChar letter : text.normalized(QString::NormalizationForm_KD)) {
        if (letter.isLetterOrNumber())
            plain += letter.toLower();
        else if (!letter.isMark() && !plain.isEmpty() && plain.back() != u' ')
            plain += u' ';
    }
    return plain.trimmed();
}

/// The number that the text begins with; what stands behind it says of which binding it is.
QString StandardNumber(const QString& text) {
    static const QRegularExpression begin("^[0-9][0-9 -]*[Xx]?");
    const QString number = begin.match(text.trimmed()).captured().toUpper().remove(' ').remove('-');
    if (number.size() != 10)
        return number;
    const QString isbn = "978" + number.left(9);
    int sum = 0;
    for (int i = 0; i < isbn.size(); ++i)
        sum += isbn[i].digitValue() * (i % 2 == 0 ? 1 : 3);
    return isbn + QString::number((10 - sum % 10) % 10);
}

/// Without blanks and what stands behind a slash; the digits behind a hyphen are six.
QString ControlNumber(const QString& text) {
    const QString number = QString(text).remove(' ').section('/', 0, 0);
    return number.contains('-') ? number.section('-', 0, 0) + number.section('-', 1).rightJustified(6, '0')
                                : number;
}

QString SystemNumber(const QString& text) {
    static const QRegularExpression front("^\\s*(\\([^)]*\\))?\\s*[A-Za-z]*0*");
    return QString(text).remove(front).trimmed();
}

} // namespace

bool IsNormalisation(const QString& code) {
    return code.size() == 1 && QString("NTSLC").contains(code);
}

QString Normalised(const QString& text, const QString& normalisation) {
    if (normalisation == normal::Text)
        return PlainText(text);
    if (normalisation == normal::StandardNumber)
        return StandardNumber(text);
    if (normalisation == normal::ControlNumber)
        return ControlNumber(text);
    if (normalisation == normal::SystemNumber)
        return SystemNumber(text);
    return text.trimmed();
}

} // namespace sysadmin::wire::matching
