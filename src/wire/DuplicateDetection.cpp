#include "wire/DuplicateDetection.h"

#include <algorithm>

namespace sysadmin::wire::duplicates {

namespace {

bool IsOneOf(const QString& value, const QString& letters) {
    return value.size() == 1 && letters.contains(value);
}

bool IsDigit(QChar letter) {
    return letter >= u'0' && letter <= u'9';
}

} // namespace

bool IsRecordType(const QString& value) {
    return value == Bibliographic || value == Authority;
}

bool IsHandling(const QString& value) {
    return IsOneOf(value, "ARDMB");
}

bool IsCancellation(const QString& value) {
    return IsOneOf(value, "NOR");
}

bool IsProfileCode(const QString& value) {
    return std::all_of(value.begin(), value.end(),
                       [](QChar letter) { return CodeCharacters.contains(letter); });
}

bool IsField(const QString& value) {
    return value.size() == 3 && std::all_of(value.begin(), value.end(), IsDigit);
}

} // namespace sysadmin::wire::duplicates
