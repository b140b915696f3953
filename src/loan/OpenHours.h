#pragma once

#include "loan/Policy.h"

#include <QDateTime>

namespace sysadmin::loan {

/// A moment by the clock on the wall, in minutes. Days have 24 hours.
using Moment = qint64;
inline constexpr Moment MinutesOfDay = 24 * 60;

Moment ToMoment(const QDateTime& time);
Moment StartOf(QDate date);
QDate DateOf(Moment moment);
QDateTime ToDateTime(Moment moment);

/// When a policy group's desks are open, by its calendars. A day that no calendar covers counts as open
/// around the clock.
class OpenHours {
public:
    explicit OpenHours(const QList<Calendar>& calendars)
        : m_calendars(calendars) {}

    /// From opening to closing, which may be on the next day. Both moments belong to it.
    struct Day {
        QDate date;
        Moment opens = 0;
        Moment closes = 0;
        std::optional<Moment> due = {}; ///< of overnight loans
        std::optional<Moment> inEffect = {};
    };

    const QList<Calendar>& Calendars() const { return m_calendars; }
    const Calendar* CalendarOn(QDate date) const;
    /// The hours of a date; none when it is closed.
    std::optional<Day> On(QDate date) const;
    /// The open day in which the moment lies: its own, or the one before where that is open past midnight.
    std::optional<Day> Around(Moment moment) const;
    bool IsOpen(Moment moment) const { return Around(moment).has_value(); }
    /// The first open day that begins on the date or later; none when there is none within ten years.
    std::optional<Day> NextDay(QDate date) const;
    /// The moment, or the next opening while it is closed then.
    Moment NextOpen(Moment moment) const;
    /// The moment that is so many open minutes later.
    Moment AddOpen(Moment moment, qint64 minutes) const;
    /// How many minutes it is open between the two.
    qint64 OpenBetween(Moment from, Moment to) const;
    /// The first overnight due time at or after the moment.
    std::optional<Moment> NextFixedTime(Moment moment) const;

private:
    const QList<Calendar>& m_calendars;
};

} // namespace sysadmin::loan
