#include "loan/OpenHours.h"

namespace sysadmin::loan {

namespace {

/// How far ahead anything is looked for: past that no library plans.
constexpr int MostDays = 3660;

qint64 Minutes(QTime time) {
    return time.hour() * 60 + time.minute();
}

} // namespace

Moment StartOf(QDate date) {
    return date.toJulianDay() * MinutesOfDay;
}

Moment ToMoment(const QDateTime& time) {
    return StartOf(time.date()) + Minutes(time.time());
}

QDate DateOf(Moment moment) {
    return QDate::fromJulianDay(moment / MinutesOfDay);
}

QDateTime ToDateTime(Moment moment) {
    return {DateOf(moment), QTime(0, 0).addSecs(int(moment % MinutesOfDay) * 60)};
}

const Calendar* OpenHours::CalendarOn(QDate date) const {
    for (const Calendar& calendar : m_calendars)
        if (calendar.Covers(date))
            return &calendar;
    return nullptr;
}

std::optional<OpenHours::Day> OpenHours::On(QDate date) const {
    const Moment start = StartOf(date);
    const Calendar* calendar = CalendarOn(date);
    if (!calendar)
        return Day{date, start, start + MinutesOfDay};
    const auto exception = calendar->exceptions.constFind(date);
    const DayHours& hours = exception != calendar->exceptions.constEnd()
                                ? *exception
                                : calendar->week[size_t(date.dayOfWeek() % 7)];
    if (!hours.isOpen)
        return std::nullopt;
    const auto at = [&](QTime time) -> std::optional<Moment> {
        if (!time.isValid())
            return std::nullopt;
        return start + Minutes(time) + (time < hours.opens ? MinutesOfDay : 0);
    };
    Day day{date, start + Minutes(hours.opens), *at(hours.closes), at(hours.due), at(hours.inEffect)};
    if (day.closes <= day.opens)
        day.closes += MinutesOfDay;
    return day;
}

std::optional<OpenHours::Day> OpenHours::Around(Moment moment) const {
    const QDate date = DateOf(moment);
    for (const QDate& candidate : {date, date.addDays(-1)})
        if (const auto day = On(candidate); day && day->opens <= moment && moment <= day->closes)
            return day;
    return std::nullopt;
}

std::optional<OpenHours::Day> OpenHours::NextDay(QDate date) const {
    for (int i = 0; i < MostDays; ++i)
        if (auto day = On(date.addDays(i)))
            return day;
    return std::nullopt;
}

Moment OpenHours::NextOpen(Moment moment) const {
    if (IsOpen(moment))
        return moment;
    for (auto day = NextDay(DateOf(moment)); day; day = NextDay(day->date.addDays(1)))
        if (day->opens >= moment)
            return day->opens;
    return moment;
}

Moment OpenHours::AddOpen(Moment moment, qint64 minutes) const {
    Moment at = moment;
    for (auto day = NextDay(DateOf(moment).addDays(-1)); day; day = NextDay(day->date.addDays(1))) {
        if (day->closes < at)
            continue;
        const Moment from = qMax(at, day->opens);
        if (from + minutes <= day->closes)
            return from + minutes;
        minutes -= day->closes - from;
        at = day->closes;
    }
    return at + minutes;
}

qint64 OpenHours::OpenBetween(Moment from, Moment to) const {
    qint64 open = 0;
    Moment counted = from;
    for (auto day = NextDay(DateOf(from).addDays(-1)); day && day->opens < to;
         day = NextDay(day->date.addDays(1))) {
        const Moment begin = qMax(day->opens, counted);
        const Moment end = qMin(day->closes, to);
        if (end > begin) {
            open += end - begin;
            counted = end;
        }
    }
    return open;
}

std::optional<Moment> OpenHours::NextFixedTime(Moment moment) const {
    int without = 0;
    for (auto day = NextDay(DateOf(moment).addDays(-1)); day && without < MostDays;
         day = NextDay(day->date.addDays(1))) {
        if (day->due && *day->due >= moment)
            return day->due;
        ++without;
    }
    return std::nullopt;
}

} // namespace sysadmin::loan
