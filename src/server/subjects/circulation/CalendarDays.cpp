#include "server/subjects/circulation/CalendarDays.h"

#include "server/DateTexts.h"

namespace sysadmin::server {

namespace {

constexpr int MinutesOfDay = 24 * 60;

DayFields MakeDay(const QString& column, const QStringList& tags) {
    const auto time = [&](int tag, const QString& what) {
        return SubjectField::Text(tags[tag], column + what, 5).Checked(IsTimeOfDay);
    };
    return {SubjectField::Flag(tags[0], column + "open"), time(1, "opens"), time(2, "closes"), time(3, "due"),
            time(4, "in_effect")};
}

/// A time in minutes from midnight; -1 when there is none.
int Minutes(const Row& row, const SubjectField& field) {
    const QTime time = QTime::fromString(row[field.column].toString(), "HH:mm");
    return time.isValid() ? time.hour() * 60 + time.minute() : -1;
}

/// When an open day closes, in minutes from its own midnight: after it where it is open past midnight.
int ClosesAt(const Row& row, const DayFields& day) {
    const int closes = Minutes(row, day.closes);
    return closes <= Minutes(row, day.opens) ? closes + MinutesOfDay : closes;
}

bool IsOpen(const Row& row, const DayFields& day) {
    return row[day.open.column].toString() == u"Y";
}

} // namespace

const QList<DayFields>& Weekdays() {
    static const QList<DayFields> days = [] {
        QList<DayFields> all{MakeDay("sunday_", {"SnOpn", "SnOpnTm", "SnClsTm", "SnDTm", "SnETm"})};
        const QList<QPair<QString, QString>> others{{"Mn", "monday_"},    {"Tu", "tuesday_"},
                                                    {"Wd", "wednesday_"}, {"Th", "thursday_"},
                                                    {"Fr", "friday_"},    {"St", "saturday_"}};
        for (const auto& [tag, column] : others)
            all << MakeDay(column, {tag + "Opn", tag + "OTm", tag + "CTm", tag + "DTm", tag + "ETm"});
        return all;
    }();
    return days;
}

const DayFields& ExceptionDay() {
    static const DayFields day = MakeDay("", {"ExOpn", "ExOTm", "ExCTm", "ExDTm", "ExETm"});
    return day;
}

bool IsDayInOrder(const Row& row, const DayFields& day) {
    const int opens = Minutes(row, day.opens);
    if (!IsOpen(row, day))
        return opens < 0 && Minutes(row, day.closes) < 0 && Minutes(row, day.due) < 0 &&
               Minutes(row, day.inEffect) < 0;
    if (opens < 0 || Minutes(row, day.closes) < 0)
        return false;
    const auto isBetween = [&](const SubjectField& field) {
        const int time = Minutes(row, field);
        return time < 0 || (time < opens ? time + MinutesOfDay : time) <= ClosesAt(row, day);
    };
    return isBetween(day.due) && isBetween(day.inEffect);
}

bool IsWeekInOrder(const Row& calendar) {
    const QList<DayFields>& days = Weekdays();
    for (qsizetype i = 0; i < days.size(); ++i) {
        if (!IsDayInOrder(calendar, days[i]))
            return false;
        const DayFields& before = days[(i + days.size() - 1) % days.size()];
        if (IsOpen(calendar, days[i]) && IsOpen(calendar, before) &&
            Minutes(calendar, days[i].opens) < ClosesAt(calendar, before) - MinutesOfDay)
            return false;
    }
    return true;
}

} // namespace sysadmin::server
