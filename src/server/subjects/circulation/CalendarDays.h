#pragma once

#include "server/SubjectField.h"
#include "server/store/Records.h"

namespace sysadmin::server {

/// A weekday's (or an exception's) columns and tags: open flag, open and close time, overnight due time and
/// the time from which it is in effect.
struct DayFields {
    SubjectField open;
    SubjectField opens;
    SubjectField closes;
    SubjectField due;
    SubjectField inEffect;

    QList<SubjectField> All() const { return {open, opens, closes, due, inEffect}; }
};

/// The weekdays, Sunday first.
const QList<DayFields>& Weekdays();
/// The fields of an exception date besides the date.
const DayFields& ExceptionDay();

/// Whether a day's times are in order: an open day has an open and a close time, and overnight times lie
/// between them. A time earlier than the open time counts on the next day. A closed day has no times.
bool IsDayInOrder(const Row& row, const DayFields& day);
/// Whether all weekdays are in order, and none opens before the day before has closed.
bool IsWeekInOrder(const Row& calendar);

} // namespace sysadmin::server
