#include "wire/FieldWeights.h"

#include <algorithm>

namespace sysadmin::wire::weights {

namespace {

constexpr char AnyDigit = 'X';
const QString AllFields = "*";

/// Whether a field can be of both patterns.
bool Meet(const QString& one, const QString& other) {
    return one == AllFields || other == AllFields ||
           std::equal(one.begin(), one.end(), other.begin(), other.end(), [](QChar a, QChar b) {
               return a == b || a == QChar(AnyDigit) || b == QChar(AnyDigit);
           });
}

/// Whether every field of the second pattern is one of the first.
bool Contains(const QString& pattern, const QString& other) {
    return pattern == AllFields ||
           std::equal(pattern.begin(), pattern.end(), other.begin(), other.end(),
                      [](QChar a, QChar b) { return a == b || a == QChar(AnyDigit); });
}

} // namespace

bool Takes(const WordField& word, const Place& place) {
    if (!Meet(word.field, place.field))
        return false;
    return place.subfields.isEmpty() ||
           std::any_of(place.subfields.begin(), place.subfields.end(), [&](QChar subfield) {
               return (word.include.isEmpty() || word.include.contains(subfield)) &&
                      !word.exclude.contains(subfield);
           });
}

bool Cover(const QList<Place>& places, const WordField& word) {
    QString subfields;
    for (const Place& place : places) {
        if (!Contains(place.field, word.field))
            continue;
        if (place.subfields.isEmpty())
            return true;
        subfields += place.subfields;
    }
    return !word.include.isEmpty() &&
           std::all_of(word.include.begin(), word.include.end(), [&](QChar subfield) {
               return subfields.contains(subfield) || word.exclude.contains(subfield);
           });
}

} // namespace sysadmin::wire::weights
