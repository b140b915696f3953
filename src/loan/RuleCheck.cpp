#include "loan/RuleCheck.h"

#include "loan/DueDate.h"

#include <QCoreApplication>

#include <algorithm>

namespace sysadmin::loan {

namespace {

struct Check {
    Q_DECLARE_TR_FUNCTIONS(RuleCheck)
};

/// How long a period is in minutes; none where that depends on the day.
std::optional<double> Length(double period, Unit unit) {
    switch (unit) {
    case Unit::Minute:
        return period;
    case Unit::Hour:
        return period * 60;
    case Unit::Day:
        return period * MinutesOfDay;
    default:
        return std::nullopt;
    }
}

class GroupCheck {
public:
    GroupCheck(const Policy& policy, const Group& group, QList<Finding>& findings)
        : m_policy(policy)
        , m_group(group)
        , m_findings(findings) {}

    void Run(QDate today) {
        CheckPairs();
        for (const Rule& rule : m_group.rules)
            CheckRule(rule);
        CheckCalendars(today);
        for (const Location& location : m_group.locations) {
            if (!location.isDesk || location.isPickup)
                continue;
            Finding& finding =
                Add(Finding::Kind::DeskWithoutPickup, Check::tr("The desk is no pickup location."));
            finding.location = location.id;
            finding.place = location.name;
        }
    }

private:
    Finding& Add(Finding::Kind kind, const QString& text) {
        m_findings.append({.kind = kind, .group = m_group.id, .text = text});
        return m_findings.last();
    }
    void AddTo(const Rule& rule, Finding::Kind kind, const QString& text) {
        Finding& finding = Add(kind, text);
        finding.rule = rule.id;
        SetPair(finding, rule.patronGroup, rule.itemType);
    }
    void SetPair(Finding& finding, qint64 patronGroup, qint64 itemType) const {
        finding.patronGroup = patronGroup;
        finding.itemType = itemType;
        finding.place = m_policy.patronGroups.value(patronGroup) + " - " + m_policy.itemTypes.value(itemType);
    }
    void CheckPairs();
    void CheckRule(const Rule& rule);
    void CheckNotices(const Rule& rule);
    void CheckCalendars(QDate today);

    const Policy& m_policy;
    const Group& m_group;
    QList<Finding>& m_findings;
};

/// An item type that is lent to some patron groups is to have an entry for each of them, even if it says that
/// nothing is lent.
void GroupCheck::CheckPairs() {
    QSet<QPair<qint64, qint64>> pairs;
    QMap<qint64, bool> patronGroups; // in the order of their ids
    QMap<qint64, bool> itemTypes;
    for (const Rule& rule : m_group.rules) {
        pairs.insert({rule.patronGroup, rule.itemType});
        patronGroups[rule.patronGroup] = true;
        if (rule.mayCharge)
            itemTypes[rule.itemType] = true;
    }
    if (pairs.isEmpty())
        Add(Finding::Kind::NoRules, Check::tr("The policy group has no matrix entry: it lends nothing."));
    for (auto patrons = patronGroups.begin(); patrons != patronGroups.end(); ++patrons)
        for (auto items = itemTypes.begin(); items != itemTypes.end(); ++items) {
            if (pairs.contains({patrons.key(), items.key()}))
                continue;
            SetPair(
                Add(Finding::Kind::NoEntry, Check::tr("Others borrow such items; this pair has no entry.")),
                patrons.key(), items.key());
        }
}

void GroupCheck::CheckRule(const Rule& rule) {
    const auto loan = Length(rule.period, rule.unit);
    if (rule.mayCharge && rule.unit != Unit::Indefinite && rule.period <= 0)
        AddTo(rule, Finding::Kind::NoLoanPeriod, Check::tr("The loan period is 0, and charging is allowed."));
    if (loan && *loan > 0 && rule.grace > rule.period)
        AddTo(rule, Finding::Kind::GraceTooLong, Check::tr("The grace period is longer than the loan."));
    if (rule.allowsRecalls && loan && *loan > 0 && *Length(rule.recallReturn, Unit::Day) > *loan)
        AddTo(rule, Finding::Kind::RecallTooLong,
              Check::tr("The recall return interval is longer than the loan."));
    if (rule.fineRate > 0 && rule.mostFine && *rule.mostFine < rule.fineRate)
        AddTo(rule, Finding::Kind::MostBelowRate, Check::tr("The maximum fine is below the fine rate."));
    if (rule.recallFineRate > 0 && rule.mostRecallFine && *rule.mostRecallFine < rule.recallFineRate)
        AddTo(rule, Finding::Kind::MostBelowRate,
              Check::tr("The maximum fine for recalls is below the recall fine rate."));
    CheckNotices(rule);
    const bool isShortLoan = m_group.IsShortLoan(rule.itemType);
    if (!isShortLoan && (rule.dueAtNextFixedTime || rule.booksOverdue || rule.warning > 0))
        AddTo(rule, Finding::Kind::NotAShortLoan,
              Check::tr("It has settings of short loans, but the item type is none in this group."));
    if (!AreUnitsAllowed(rule, isShortLoan))
        AddTo(rule, Finding::Kind::WrongUnit,
              Check::tr("The unit of the renewal or of a fine does not suit the unit of the loan."));
}

void GroupCheck::CheckNotices(const Rule& rule) {
    if (rule.lost <= 0)
        return;
    const int last = rule.firstOverdue > 0 ? rule.firstOverdue + rule.overdueCount * rule.overdueInterval : 0;
    if (last > rule.lost)
        AddTo(rule, Finding::Kind::NoticeAfterLost,
              Check::tr("The last overdue notice is for day %1, but the item counts as lost on day %2.")
                  .arg(last)
                  .arg(rule.lost));
    const int lastRecall = rule.recallNoticeCount * rule.recallNoticeInterval;
    if (rule.allowsRecalls && lastRecall > rule.lost)
        AddTo(rule, Finding::Kind::NoticeAfterLost,
              Check::tr("The last overdue recall notice is for day %1, but the item counts as lost on day "
                        "%2.")
                  .arg(lastRecall)
                  .arg(rule.lost));
}

void GroupCheck::CheckCalendars(QDate today) {
    QList<const Calendar*> calendars;
    for (const Calendar& calendar : m_group.calendars)
        calendars << &calendar;
    std::sort(calendars.begin(), calendars.end(),
              [](const Calendar* one, const Calendar* other) { return one->begin < other->begin; });
    for (int i = 0; i <= DaysAhead; ++i) {
        const QDate date = today.addDays(i);
        if (std::any_of(calendars.begin(), calendars.end(),
                        [&](const Calendar* calendar) { return calendar->Covers(date); }))
            continue;
        Add(Finding::Kind::NoCalendar, Check::tr("No calendar covers %1.").arg(Words(date)));
        break;
    }
    for (qsizetype i = 1; i < calendars.size(); ++i) {
        const Calendar& before = *calendars[i - 1];
        const QDate next = calendars[i]->begin;
        if (!before.end.isValid() || before.end.addDays(1) >= next)
            continue;
        Finding& finding = Add(Finding::Kind::CalendarGap,
                               Check::tr("No calendar covers %1 to %2, after \"%3\".")
                                   .arg(Words(before.end.addDays(1)), Words(next.addDays(-1)), before.name));
        finding.calendar = before.id;
        finding.place = before.name;
    }
}

} // namespace

bool AreUnitsAllowed(const Rule& rule, bool isShortLoan) {
    const auto suits = [](Unit unit, std::initializer_list<Unit> allowed) {
        return std::find(allowed.begin(), allowed.end(), unit) != allowed.end();
    };
    const auto fines = [&](std::initializer_list<Unit> allowed) {
        return suits(rule.fineUnit, allowed) && suits(rule.recallFineUnit, allowed);
    };
    const bool toTheTerm = rule.renewalUnit == Unit::Term && !isShortLoan;
    switch (rule.unit) {
    case Unit::Day:
        return suits(rule.renewalUnit, {Unit::Day, Unit::Hour}) && fines({Unit::Day});
    case Unit::Hour:
        return (toTheTerm || suits(rule.renewalUnit, {Unit::Hour, Unit::Minute})) &&
               fines({Unit::Hour, Unit::Minute});
    case Unit::Minute:
        return (toTheTerm || rule.renewalUnit == Unit::Minute) && fines({Unit::Minute});
    case Unit::Term:
        return suits(rule.renewalUnit, {Unit::Day, Unit::Term}) && fines({Unit::Day});
    case Unit::Indefinite:
        break;
    }
    return rule.renewalUnit == Unit::Day;
}

QString FindingText(Finding::Kind kind) {
    switch (kind) {
    case Finding::Kind::NoEntry:
        return Check::tr("No entry");
    case Finding::Kind::NoRules:
        return Check::tr("No rules");
    case Finding::Kind::NoLoanPeriod:
        return Check::tr("Loan period 0");
    case Finding::Kind::GraceTooLong:
        return Check::tr("Grace too long");
    case Finding::Kind::RecallTooLong:
        return Check::tr("Recall too long");
    case Finding::Kind::MostBelowRate:
        return Check::tr("Maximum below rate");
    case Finding::Kind::NoticeAfterLost:
        return Check::tr("Notice after lost");
    case Finding::Kind::NotAShortLoan:
        return Check::tr("Not a short loan");
    case Finding::Kind::WrongUnit:
        return Check::tr("Unit not allowed");
    case Finding::Kind::NoCalendar:
        return Check::tr("No calendar");
    case Finding::Kind::CalendarGap:
        return Check::tr("Gap of calendars");
    case Finding::Kind::DeskWithoutPickup:
        return Check::tr("No pickup location");
    }
    Q_UNREACHABLE();
}

QList<Finding> CheckRules(const Policy& policy, QDate today) {
    QList<Finding> findings;
    for (const Group& group : policy.groups)
        GroupCheck(policy, group, findings).Run(today);
    return findings;
}

} // namespace sysadmin::loan
