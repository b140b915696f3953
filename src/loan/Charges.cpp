#include "loan/Charges.h"

#include <algorithm>

namespace sysadmin::loan {

namespace {

Unit DayUnit(Unit unit) {
    return unit == Unit::Minute || unit == Unit::Hour ? unit : Unit::Day;
}

} // namespace

FineTerms TermsOf(const Rule& rule, bool isRecalled) {
    if (isRecalled && rule.recallFineRate > 0)
        return {rule.recallFineRate, rule.recallFineUnit, rule.mostRecallFine, rule.recallGrace};
    return {rule.fineRate, rule.fineUnit, rule.mostFine, isRecalled ? rule.recallGrace : rule.grace};
}

qint64 OverdueUnits(const Group& group, const OpenHours& hours, Moment due, Moment at, Unit unit) {
    if (at <= due)
        return 0;
    if (DayUnit(unit) == Unit::Day) {
        const QDate from = LibraryDate(hours, due);
        const QDate to = LibraryDate(hours, at);
        qint64 days = 0;
        for (QDate date = from.addDays(1); date <= to; date = date.addDays(1))
            days += group.countsClosedForFine || hours.On(date) ? 1 : 0;
        return days;
    }
    const qint64 minutes = group.countsClosedForFine ? at - due : hours.OpenBetween(due, at);
    return unit == Unit::Minute ? minutes : (minutes + 59) / 60;
}

bool IsWithinGrace(const Group& group, const OpenHours& hours, const Rule& rule, const FineTerms& terms,
                   Moment due, Moment at) {
    return OverdueUnits(group, hours, due, at, rule.unit) <= terms.grace;
}

void ReckonFines(const Group& group, const OpenHours& hours, const Rule& rule, const FineTerms& terms,
                 Moment due, Moment end, Answer& answer) {
    if (terms.rate <= 0 || IsWithinGrace(group, hours, rule, terms, due, end))
        return;
    for (QDate date = DateOf(due); date <= DateOf(end) && !answer.reachesMost; date = date.addDays(1)) {
        const Moment until = qMin(end, StartOf(date) + MinutesOfDay - 1);
        Amount total = OverdueUnits(group, hours, due, until, terms.unit) * terms.rate;
        if (terms.most && total >= *terms.most) {
            answer.reachesMost = true;
            total = *terms.most;
        }
        if (total > answer.fine) {
            answer.fines.append({date, total - answer.fine, total});
            answer.fine = total;
        }
    }
}

void ReckonNotices(const Rule& rule, const PatronRule& patron, bool isShortLoan, Moment start, Moment due,
                   std::optional<Moment> recalled, Moment until, QList<Notice>& notices) {
    const auto send = [&](Notice::Kind kind, Moment at) {
        if (at <= until)
            notices.append({kind, ToDateTime(at)});
    };
    const auto days = [](int count) { return count * MinutesOfDay; };
    if (isShortLoan && rule.warning > 0) {
        const Moment unit = rule.warningUnit == Unit::Minute ? 1
                            : rule.warningUnit == Unit::Hour ? 60
                                                             : MinutesOfDay;
        send(Notice::Kind::Warning, qMax(start, due - rule.warning * unit));
    }
    const Moment courtesy = due - days(rule.courtesy);
    if (patron.courtesyNoticesApply && rule.courtesy > 0 && courtesy > start &&
        due - start >= days(rule.leastLoanForCourtesy) && (!recalled || courtesy < *recalled))
        send(Notice::Kind::Courtesy, courtesy);
    if (recalled)
        send(Notice::Kind::Recall, *recalled);
    if (patron.overdueNoticesApply && recalled) {
        for (int i = 1; i <= rule.recallNoticeCount && rule.recallNoticeInterval > 0; ++i)
            send(Notice::Kind::OverdueRecall, due + days(i * rule.recallNoticeInterval));
    } else if (patron.overdueNoticesApply && rule.firstOverdue > 0) {
        send(Notice::Kind::Overdue, due + days(rule.firstOverdue));
        for (int i = 1; i <= rule.overdueCount && rule.overdueInterval > 0; ++i)
            send(Notice::Kind::OtherOverdue, due + days(rule.firstOverdue + i * rule.overdueInterval));
    }
    std::stable_sort(notices.begin(), notices.end(),
                     [](const Notice& one, const Notice& other) { return one.at < other.at; });
}

} // namespace sysadmin::loan
