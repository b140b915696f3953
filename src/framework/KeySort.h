#pragma once

#include <QStringView>

#include <vector>

namespace sysadmin {

/// A number by which something is sorted, and the place of what it belongs to. They are sorted together: keys
/// that lie elsewhere would have to be fetched from there again and again.
struct KeyedPlace {
    quint64 key = 0;
    int place = 0;
};

/// The number as a key: keys are in the same order as finite and infinite numbers are.
quint64 KeyOf(double number);

/// A text as a key that is mostly in the order in which people sort texts: whatever the case and the accents,
/// digits by value, the first few letters. A guess: which order counts, a collator knows.
quint64 GuessKeyOf(QStringView text);

/// Sorts by key; equal keys stay in the order in which they came. Takes time in proportion to the length.
void SortByKey(std::vector<KeyedPlace>& keyed);

} // namespace sysadmin
