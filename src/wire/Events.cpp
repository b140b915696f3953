#include "wire/Events.h"

namespace sysadmin::wire::events {

namespace {

constexpr int DaysOfWeek = 7;
constexpr int LeapYear = 2000; ///< has every day that any year has

QDate WeekdayIn(const Rule& rule, int year) {
    const QDate first(year, rule.month, 1);
    if (!first.isValid() || rule.week < 1 || rule.week > LastWeek || rule.weekday < 0 ||
        rule.weekday >= DaysOfWeek)
        return {};
    const int toFirst = (rule.weekday - first.dayOfWeek() % DaysOfWeek + DaysOfWeek) % DaysOfWeek;
    QDate date = first.addDays(toFirst + (rule.week - 1) * DaysOfWeek);
    if (date.month() != rule.month) // there is no fifth one: the last is the fourth
        date = date.addDays(-DaysOfWeek);
    return date;
}

} // namespace

QDate EasterSunday(int year) {
    // By the golden number, the century's corrections and the epact.
    const int golden = year % 19;
    const int century = year / 100;
    const int ofCentury = year % 100;
    const int moonCorrection = (8 * century + 13) / 25;
    const int epact = (19 * golden + century - century / 4 - moonCorrection + 15) % 30;
    const int toSunday = (32 + 2 * (century % 4) + 2 * (ofCentury / 4) - epact - ofCentury % 4) % 7;
    const int late = (golden + 11 * epact + 22 * toSunday) / 451;
    const int place = epact + toSunday - 7 * late + 114;
    return {year, place / 31, place % 31 + 1};
}

QDate DateIn(const Rule& rule, int year) {
    if (rule.kind == kind::EachYear)
        return {year, rule.month, rule.day};
    if (rule.kind == kind::Weekday)
        return WeekdayIn(rule, year);
    if (rule.kind == kind::FromEaster)
        return EasterSunday(year).addDays(rule.fromEaster);
    if (rule.kind == kind::Once && rule.date.year() == year)
        return rule.date;
    return {};
}

QList<QDate> DatesBetween(const Rule& rule, QDate first, QDate last) {
    QList<QDate> dates;
    // Days counted from Easter may stand in the year before or behind.
    for (int year = first.year() - 1; year <= last.year() + 1; ++year)
        if (const QDate date = DateIn(rule, year); date.isValid() && date >= first && date <= last)
            dates.append(date);
    return dates;
}

bool IsPossible(const Rule& rule) {
    if (rule.kind == kind::Once)
        return rule.date.isValid();
    return DateIn(rule, LeapYear).isValid() && qAbs(rule.fromEaster) <= MostFromEaster;
}

} // namespace sysadmin::wire::events
