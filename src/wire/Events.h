#pragma once

#include <QDate>
#include <QList>
#include <QString>

namespace sysadmin::wire::events {

/// How the dates of an event are found, as it travels.
namespace kind {
inline const QString EachYear = "D";   ///< the same day of the same month
inline const QString Weekday = "W";    ///< a weekday of a month, such as its fourth Thursday
inline const QString FromEaster = "E"; ///< so many days after Easter Sunday, before it when negative
inline const QString Once = "1";       ///< one date
} // namespace kind

inline constexpr int LastWeek = 5; ///< the last such weekday of the month, the fourth or the fifth
inline constexpr int MostFromEaster = 100;
inline const QString DateFormat = "yyyyMMdd";

/// On which dates something takes place. What the kind does not name is not looked at.
struct Rule {
    QString kind = kind::EachYear;
    int month = 0;   ///< 1 to 12
    int day = 0;     ///< of the month
    int week = 0;    ///< 1 to 4, or `LastWeek`
    int weekday = 0; ///< 0 is Sunday
    int fromEaster = 0;
    QDate date = {};
};

/// Easter Sunday of the western churches, for years from 1583 on.
QDate EasterSunday(int year);
/// The date in the year; invalid when there is none, as on 29 February of most years.
QDate DateIn(const Rule& rule, int year);
/// All dates from the first to the last day, in order.
QList<QDate> DatesBetween(const Rule& rule, QDate first, QDate last);
/// Whether there is any date of which the rule speaks.
bool IsPossible(const Rule& rule);

} // namespace sysadmin::wire::events
