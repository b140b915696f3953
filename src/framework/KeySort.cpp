#include "framework/KeySort.h"

#include <QString>

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace sysadmin {

namespace {

/// From 1 to 255: signs, then digits, then letters.
unsigned RankOf(QChar letter) {
    static constexpr char Signs[] = " _-,;:!?.'\"()[]{}@*/\\&#%`^+<=>|~$";
    constexpr unsigned FirstDigit = 64;
    constexpr unsigned FirstLetter = 128;
    constexpr unsigned Others = 255;
    if (letter.unicode() >= 0x80)
        if (const QString parts = letter.decomposition(); !parts.isEmpty())
            letter = parts.front();
    const char16_t code = letter.toCaseFolded().unicode();
    if (code >= u'a' && code <= u'z')
        return FirstLetter + (code - u'a');
    if (code >= u'0' && code <= u'9')
        return FirstDigit + (code - u'0');
    for (unsigned i = 0; i + 1 < sizeof Signs; ++i)
        if (code == char16_t(Signs[i]))
            return 1 + i;
    return Others;
}

bool IsDigit(QChar letter) {
    return letter >= u'0' && letter <= u'9';
}

} // namespace

quint64 GuessKeyOf(QStringView text) {
    constexpr int Room = 8;
    constexpr unsigned Lengths = 100; // of numbers, behind the ranks of digits
    quint64 key = 0;
    int used = 0;
    const auto add = [&](unsigned rank) {
        if (used++ < Room)
            key = key << 8 | rank;
    };
    for (qsizetype i = 0; i < text.size() && used < Room; ++i) {
        if (!IsDigit(text[i])) {
            add(RankOf(text[i]));
            continue;
        }
        while (i + 1 < text.size() && text[i] == u'0' && IsDigit(text[i + 1]))
            ++i;
        qsizetype end = i;
        while (end < text.size() && IsDigit(text[end]))
            ++end;
        add(Lengths + unsigned(std::min(end - i, qsizetype(20))));
        for (; i < end; ++i)
            add(RankOf(text[i]));
        --i;
    }
    return used == 0 ? 0 : used < Room ? key << 8 * (Room - used) : key;
}

quint64 KeyOf(double number) {
    constexpr quint64 Sign = quint64(1) << 63;
    const auto bits = std::bit_cast<quint64>(number + 0.0); // the negative zero becomes the other one
    return bits & Sign ? ~bits : bits | Sign;
}

// Digit by digit from the lowest, each time into as many heaps as a digit has values. Digits in which the
// keys do not differ are left out: with days there are two or three that count.
void SortByKey(std::vector<KeyedPlace>& keyed) {
    constexpr int DigitBits = 11;
    constexpr size_t Digits = size_t(1) << DigitBits;
    if (keyed.size() < 2)
        return;
    quint64 differing = 0;
    for (const KeyedPlace& each : keyed)
        differing |= each.key ^ keyed.front().key;
    std::vector<KeyedPlace> other(keyed.size());
    while (differing != 0) {
        const int shift = std::countr_zero(differing);
        const auto digitOf = [shift](const KeyedPlace& each) { return (each.key >> shift) % Digits; };
        std::array<quint32, Digits> starts{};
        for (const KeyedPlace& each : keyed)
            ++starts[digitOf(each)];
        quint32 start = 0;
        for (quint32& each : starts)
            each = std::exchange(start, start + each);
        for (const KeyedPlace& each : keyed)
            other[starts[digitOf(each)]++] = each;
        keyed.swap(other);
        differing &= ~(quint64(Digits - 1) << shift);
    }
}

} // namespace sysadmin
