#include "wire/FieldOrder.h"

#include <QRegularExpression>

namespace sysadmin::wire::fieldorder {

namespace {

constexpr int TagLength = 3;

bool IsDigits(const QString& text) {
    static const QRegularExpression digits("^[0-9]+\\z");
    return digits.match(text).hasMatch();
}

bool IsIndicatorValue(QChar letter) {
    return letter > u' ' && letter < QChar(0x7f) && letter != QChar(AnyIndicator);
}

} // namespace

const QList<Option>& Options() {
    static const QList<Option> options{
        {1, "Field Tag", false, false, "", "", Sorts::Tag},
        {2, "Field Tag Descending", false, false, "", "", Sorts::TagDescending},
        {3, SpecificField, true, true, SpecificField, "3C", Sorts::Field},
        {4, SpecificIndicator1, true, true, SpecificIndicator1, "1C", Sorts::Indicator1},
        {5, SpecificIndicator2, true, true, SpecificIndicator2, "1C", Sorts::Indicator2},
        {6, "Indicator 1 Value", false, false, "", "", Sorts::FirstIndicator},
        {7, "Indicator 2 Value", false, false, "", "", Sorts::SecondIndicator},
        {8, "Alphabetical", false, false, "", "", Sorts::Text},
        {9, "Subfield", true, true, "Subfield Code", "1C", Sorts::Subfield},
        {10, "Heading Source", true, true, "Source Code", "20C", Sorts::Source},
        {11, "Containing Text", true, true, "Text", "", Sorts::Contains},
    };
    return options;
}

const Option* FindOption(int id) {
    for (const Option& option : Options())
        if (option.id == id)
            return &option;
    return nullptr;
}

bool IsPattern(const QString& pattern) {
    static const QRegularExpression form("^(\\*|[0-9]{3}|[0-9]{2}X|[0-9]XX|([0-9]{3})-([0-9]{3}))\\z");
    const auto match = form.match(pattern);
    return match.hasMatch() && match.captured(2) <= match.captured(3);
}

bool Takes(const QString& pattern, const QString& tag) {
    if (pattern == "*")
        return true;
    if (pattern.contains('-'))
        return tag >= pattern.section('-', 0, 0) && tag <= pattern.section('-', 1, 1);
    const QString fixed = pattern.left(pattern.indexOf('X'));
    return fixed.size() < pattern.size() ? tag.size() == TagLength && tag.startsWith(fixed) : tag == pattern;
}

QString TagPrefix(const QString& pattern) {
    return pattern == "*" || pattern.contains('-') ? AnyTag : pattern;
}

bool IsParameter(const Option& option, const QString& pattern, const QString& parameter) {
    const auto at = [&](int place) { return parameter.size() == TagLength + 2 ? parameter[place] : QChar(); };
    const QChar any(AnyIndicator);
    switch (option.sorts) {
    case Sorts::Field:
        return at(3) == any && at(4) == any && IsDigits(parameter.left(TagLength));
    case Sorts::Indicator1:
        return IsIndicatorValue(at(3)) && at(4) == any && parameter.left(TagLength) == TagPrefix(pattern);
    case Sorts::Indicator2:
        return at(3) == any && IsIndicatorValue(at(4)) && parameter.left(TagLength) == TagPrefix(pattern);
    default:
        break;
    }
    if (!option.takesParameter)
        return parameter.isEmpty();
    const QString type = option.type;
    const int most = type.endsWith('C') ? type.chopped(1).toInt() : ParameterLength;
    return !parameter.trimmed().isEmpty() && parameter.size() <= most;
}

} // namespace sysadmin::wire::fieldorder
