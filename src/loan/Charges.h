#pragma once

#include "loan/DueDate.h"

namespace sysadmin::loan {

/// How fines grow: an ordinary rate, or the one for recalled items.
struct FineTerms {
    Amount rate = 0;
    Unit unit = Unit::Day;
    std::optional<Amount> most = {};
    int grace = 0; ///< in the loan's unit
};

/// The fine's terms by the rule; those for recalled items where the rule has a rate for them.
FineTerms TermsOf(const Rule& rule, bool isRecalled);

/// How long something is overdue, in whole units begun. Closed days or hours count only where the group
/// counts them for fines.
qint64 OverdueUnits(const Group& group, const OpenHours& hours, Moment due, Moment at, Unit unit);
/// Whether it is no later than the grace period allows.
bool IsWithinGrace(const Group& group, const OpenHours& hours, const Rule& rule, const FineTerms& terms,
                   Moment due, Moment at);

/// Reckons the fine of each date up to the end, at most to the maximum. Within the grace period there is
/// none; past it the fine counts from the due date.
void ReckonFines(const Group& group, const OpenHours& hours, const Rule& rule, const FineTerms& terms,
                 Moment due, Moment end, Answer& answer);

/// When notices go out, none after `until`.
void ReckonNotices(const Rule& rule, const PatronRule& patron, bool isShortLoan, Moment start, Moment due,
                   std::optional<Moment> recalled, Moment until, QList<Notice>& notices);

} // namespace sysadmin::loan
