#pragma once

#include "loan/Policy.h"

namespace sysadmin::loan {

/// Something in the rules that nobody can have meant, with its place.
struct Finding {
    enum class Kind {
        NoEntry,           ///< a pair that others of its patron group and of its item type have
        NoRules,           ///< a policy group without any entry
        NoLoanPeriod,      ///< may be charged, for no time at all
        GraceTooLong,      ///< longer than the loan
        RecallTooLong,     ///< a recall gives more time than the loan
        MostBelowRate,     ///< the maximum of a fine is less than its rate
        NoticeAfterLost,   ///< a notice that would go out when the item counts as lost
        NotAShortLoan,     ///< settings of short loans for an item type that is none
        WrongUnit,         ///< a unit that the loan's unit does not allow
        NoCalendar,        ///< no calendar for today or one of the next 90 days
        CalendarGap,       ///< days between two calendars that have none
        DeskWithoutPickup, ///< a desk that is no pickup location
    };
    Kind kind = Kind::NoEntry;
    qint64 group = 0;
    qint64 rule = 0; ///< 0 where it is not about one entry, as the ids below
    qint64 patronGroup = 0;
    qint64 itemType = 0;
    qint64 calendar = 0; ///< the one before the gap
    qint64 location = 0;
    QString place =
        {};            ///< in words: the patron group and item type, the calendar, the desk; empty: the group
    QString text = {}; ///< a sentence about it
};

/// How far ahead every policy group is to have a calendar.
inline constexpr int DaysAhead = 90;

/// A kind of finding as people call it.
QString FindingText(Finding::Kind kind);

/// Looks over all rules. The findings come by policy group, within it by kind.
QList<Finding> CheckRules(const Policy& policy, QDate today);

/// Whether the units of an entry suit the one in which it counts its loans.
bool AreUnitsAllowed(const Rule& rule, bool isShortLoan);

} // namespace sysadmin::loan
