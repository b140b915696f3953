#pragma once

#include "core/data/EventList.h"
#include "framework/forms/RowsField.h"

class QWidget;

namespace sysadmin {

class Application;

/// A calendar with what it says of the days in its range.
struct CalendarDays {
    QString id;
    QString clusterId;
    QString name; ///< with its cluster's, where there are several
    QDate first;
    QDate last; ///< invalid: it has no end
    struct Day {
        bool isOpen = false;
        QString openTime; ///< "HH:mm"
        QString closeTime;
        bool operator==(const Day&) const = default;
    };
    QHash<QDate, Day> exceptions;
};

/// An exception date that an event means for a calendar.
struct ProposedException {
    QString calendarId;
    QString event;
    QDate date;
    CalendarDays::Day day;
    /// Another exception, or another event's, stands on the date: it is replaced only when the operator says
    /// so.
    std::optional<CalendarDays::Day> now;
};

/// What the events mean for the calendar from a day on; dates that it has already are left out. A calendar
/// without an end is looked at for two years.
QList<ProposedException> ProposeExceptions(const CalendarDays& calendar, const QList<Event>& events,
                                           QDate from);

/// Shows what the events mean for the calendars of all clusters, and writes what is chosen. True when
/// anything was written.
bool OpenApplyEvents(Application& application, QWidget* parent);

} // namespace sysadmin
