#include "cataloging/ImportTrialSteps.h"

#include <QRegularExpression>

namespace sysadmin::importtrial {

namespace bulkimport = wire::bulkimport;

namespace {

bool IsBlankIndicator(const QString& wanted) {
    return wanted.trimmed().isEmpty() || wanted == bulkimport::BlankIndicator;
}

bool FitsIndicator(QChar is, const QString& wanted) {
    return IsBlankIndicator(wanted) ? is == u' ' : is.toLower() == wanted[0].toLower();
}

} // namespace

bool FitsPlace(const marc::Field& field, const TriedPlace& place) {
    return field.tag == place.field &&
           (field.IsControl() || (FitsIndicator(field.indicator1, place.indicator1) &&
                                  FitsIndicator(field.indicator2, place.indicator2)));
}

QString ValueIn(const marc::Field& field, const QString& subfield) {
    if (field.IsControl())
        return field.value.trimmed();
    if (!subfield.isEmpty())
        return field.First(subfield[0]).trimmed();
    return field.subfields.isEmpty() ? QString() : field.subfields.first().value.trimmed();
}

/// "949 $t", and with indicators "949 1_ $t".
QString NameOf(const TriedPlace& place) {
    const auto shown = [](const QString& indicator) {
        return IsBlankIndicator(indicator) ? QString("_") : indicator;
    };
    QString name = place.field;
    if (!IsBlankIndicator(place.indicator1) || !IsBlankIndicator(place.indicator2))
        name += ' ' + shown(place.indicator1) + shown(place.indicator2);
    return place.subfield.isEmpty() ? name : name + " $" + place.subfield;
}

TriedPlace PlaceOf(const QHash<QString, QString>& settings, const bulkimport::Place& names) {
    return {settings.value(names.field), settings.value(names.subfield), settings.value(names.indicator1),
            settings.value(names.indicator2)};
}

bool IsSame(const QString& one, const QString& other) {
    return one.trimmed().compare(other.trimmed(), Qt::CaseInsensitive) == 0;
}

/// An amount in a text such as "$12.50", "12,50 EUR" or "1,234.00"; none when there is none.
std::optional<QString> AmountIn(const QString& text) {
    static const QRegularExpression number("\\d[\\d.,]*");
    QString digits = number.match(text).captured();
    while (!digits.isEmpty() && !digits.back().isDigit())
        digits.chop(1);
    // The last mark is the decimal one where one or two digits follow it.
    const qsizetype mark = std::max(digits.lastIndexOf('.'), digits.lastIndexOf(','));
    const bool hasDecimals = mark >= 0 && digits.size() - mark - 1 <= 2;
    const QString whole = QString(hasDecimals ? digits.left(mark) : digits).remove('.').remove(',');
    if (whole.isEmpty())
        return std::nullopt;
    return whole + '.' + (hasDecimals ? digits.mid(mark + 1) : QString()).leftJustified(2, '0');
}

} // namespace sysadmin::importtrial
