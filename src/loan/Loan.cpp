#include "loan/Loan.h"

#include "loan/Charges.h"

#include <QCoreApplication>

#include <algorithm>

namespace sysadmin::loan {

namespace {

/// How far the fine of an item is followed that never comes back and never counts as lost.
constexpr Moment MostOverdue = 365 * MinutesOfDay;
/// How many renewals are followed where it is always renewed.
constexpr int MostRenewals = 100;

/// Follows one loan from its beginning to its end.
class Reckoning {
public:
    Reckoning(const Policy& policy, const Request& request)
        : m_policy(policy)
        , m_request(request) {}

    Answer Run();

private:
    void Say(const QString& text) { m_answer.steps.append({ToDateTime(m_now), text}); }
    QString Money(Amount amount) const {
        return m_policy.usesDemerits ? Loan::tr("%1 demerits").arg(AmountText(amount, 0))
                                     : AmountText(amount, m_policy.decimals);
    }
    bool FindRule();
    QString WhyNotRenewed() const;
    void Renew(const OpenHours& hours, const DueDate& dates);
    void Recall(const DueDate& dates);
    void FollowOverdue(const OpenHours& hours);
    void Lose(Moment lost);
    void Fine(const OpenHours& hours, const FineTerms& terms, Moment end);
    void FollowEvents(const OpenHours& hours, const DueDate& dates);
    bool RenewsAt(std::optional<Moment> next) const;
    void Suspend(Moment from);
    void PutOnShelf(const DueDate& dates);
    void SayBooking();

    const Policy& m_policy;
    const Request& m_request;
    Answer m_answer;
    Moment m_now = 0;
    Moment m_start = 0;
    std::optional<Moment> m_due;
    std::optional<Moment> m_recalled;
    int m_renewals = 0;
};

bool Reckoning::FindRule() {
    for (const Group& group : m_policy.groups)
        for (const Location& location : group.locations)
            if (location.id == m_request.location) {
                m_answer.group = &group;
                Say(Loan::tr("\"%1\" belongs to the policy group \"%2\".").arg(location.name, group.name));
            }
    if (!m_answer.group) {
        m_answer.problem = Loan::tr("The location belongs to no circulation policy group. Select it in one: "
                                    "its rules then apply.");
        return false;
    }
    const QString patrons = m_policy.patronGroups.value(m_request.patronGroup);
    const QString items = m_policy.itemTypes.value(m_request.itemType);
    for (const Rule& rule : m_answer.group->rules)
        if (rule.patronGroup == m_request.patronGroup && rule.itemType == m_request.itemType)
            m_answer.rule = &rule;
    if (!m_answer.rule) {
        m_answer.problem = Loan::tr("The policy group \"%1\" has no matrix entry for %2 - %3. Add one to its "
                                    "matrix.")
                               .arg(m_answer.group->name, patrons, items);
        return false;
    }
    Say(Loan::tr("Its matrix entry for %1 - %2 applies.").arg(patrons, items));
    if (!m_answer.rule->mayCharge) {
        m_answer.problem = Loan::tr("The matrix entry for %1 - %2 does not allow to charge. Check "
                                    "\"Charge/Renew\" in it.")
                               .arg(patrons, items);
        return false;
    }
    return true;
}

QString Reckoning::WhyNotRenewed() const {
    const Rule& rule = *m_answer.rule;
    const Group& group = *m_answer.group;
    if (!m_due)
        return Loan::tr("It has no due date: there is nothing to renew.");
    if (m_renewals >= rule.mostRenewals)
        return Loan::tr("Not renewed: the most renewals that the rule allows is %1.").arg(rule.mostRenewals);
    if (m_recalled && !group.renewsIfRecalled)
        return Loan::tr("Not renewed: it is recalled.");
    if (m_request.hasHold && !group.renewsIfHeld)
        return Loan::tr("Not renewed: there is a hold on it.");
    if (m_now > *m_due && !group.renewsIfOverdue)
        return Loan::tr("Not renewed: it is overdue since %1.").arg(Words(*m_due));
    return {};
}

void Reckoning::Renew(const OpenHours& hours, const DueDate& dates) {
    const Rule& rule = *m_answer.rule;
    const QString refused = WhyNotRenewed();
    if (!refused.isEmpty()) {
        Say(refused);
        m_answer.events.append(
            {Event::Kind::Renewal, ToDateTime(m_now), false, m_due ? ToDateTime(*m_due) : QDateTime()});
        return;
    }
    ++m_renewals;
    Moment from = rule.renewsFromRenewal ? m_now : *m_due;
    // Past the end of the term up to which it was lent.
    if (rule.renewalUnit == Unit::Term && !rule.renewsFromRenewal)
        from = StartOf(LibraryDate(hours, from).addDays(1));
    Say((rule.renewsFromRenewal ? Loan::tr("Renewal %1: %2 from the renewal.")
                                : Loan::tr("Renewal %1: %2 from the date on which it was due."))
            .arg(m_renewals)
            .arg(Words(rule.renewalPeriod, rule.renewalUnit)));
    const auto due = dates.Of(from, rule.renewalPeriod, rule.renewalUnit);
    if (due && *due > *m_due)
        m_due = due;
    else if (due)
        Say(Loan::tr("That is not later than it was due: it stays so."));
    Say(Loan::tr("It is due on %1.").arg(Words(*m_due)));
    m_answer.events.append({Event::Kind::Renewal, ToDateTime(m_now), true, ToDateTime(*m_due)});
}

void Reckoning::Recall(const DueDate& dates) {
    const Rule& rule = *m_answer.rule;
    if (!rule.allowsRecalls) {
        Say(Loan::tr("Not recalled: the rule does not allow recalls."));
        m_answer.events.append(
            {Event::Kind::Recall, ToDateTime(m_now), false, m_due ? ToDateTime(*m_due) : QDateTime()});
        return;
    }
    const Moment least = dates.After(m_start, rule.leastLoanWhenRecalled, rule.unit);
    const Moment back = dates.After(m_now, rule.recallReturn, Unit::Day);
    Moment due = qMax(least, back);
    Say(Loan::tr("Recalled: it is to be back on %1 at the earliest (%2 after the recall, and not before its "
                 "minimum loan period ends on %3).")
            .arg(Words(due), Words(rule.recallReturn, Unit::Day), Words(least)));
    if (m_due && due > *m_due && !m_answer.group->extendsRecallDue) {
        due = *m_due;
        Say(Loan::tr("It was due before that: a recall does not extend the loan."));
    }
    m_recalled = m_now;
    m_due = due;
    Say(Loan::tr("It is due on %1.").arg(Words(due)));
    m_answer.events.append({Event::Kind::Recall, ToDateTime(m_now), true, ToDateTime(due)});
}

/// What a lost item costs.
void Reckoning::Lose(Moment lost) {
    const Group& group = *m_answer.group;
    m_now = lost;
    m_answer.lost = ToDateTime(lost);
    Say(Loan::tr("It counts as lost, %1 after it was due.").arg(Words(m_answer.rule->lost, Unit::Day)));
    const auto charge = [&](LostCharge::Kind kind, Amount amount, bool removes) {
        if (amount <= 0)
            return;
        m_answer.lostCharges.append({kind, amount, removes && m_request.returned.has_value()});
        Say(LostChargeText(kind) + ": " + Money(amount));
    };
    charge(LostCharge::Kind::Replacement, group.items.value(m_request.itemType).replacementCost,
           group.returnRemovesReplacement);
    if (group.includesLostFee)
        charge(LostCharge::Kind::Fee, group.lostFee, group.returnRemovesFee);
    if (group.includesMostFineForLost)
        charge(LostCharge::Kind::MostFine, TermsOf(*m_answer.rule, m_recalled.has_value()).most.value_or(0),
               group.returnRemovesFines);
    m_answer.isFineRemoved = m_request.returned && group.returnRemovesFines;
}

/// Demerits count from the moment at which it comes back or is lost.
void Reckoning::Suspend(Moment from) {
    const DemeritRule rule = m_policy.demerits.value(m_request.patronGroup);
    if (!m_policy.usesDemerits || rule.most <= 0 || rule.suspensionDays <= 0 || m_answer.isFineRemoved ||
        m_answer.fine < rule.most * AmountUnit)
        return;
    m_now = from;
    const Moment until = from + rule.suspensionDays * MinutesOfDay;
    m_answer.suspendedUntil = ToDateTime(until);
    Say(Loan::tr(
            "That is the maximum of %1 demerits of the patron group or more: the patron is suspended for "
            "%2, until %3.")
            .arg(rule.most)
            .arg(Words(rule.suspensionDays, Unit::Day), Words(until)));
}

/// What comes back while somebody waits for it stands on the hold shelf, as long as the rule says for such
/// patrons.
void Reckoning::PutOnShelf(const DueDate& dates) {
    const Rule& rule = *m_answer.rule;
    if (!m_request.hasHold || !m_request.returned || rule.holdShelf <= 0)
        return;
    m_now = ToMoment(*m_request.returned);
    const Moment until = dates.After(m_now, rule.holdShelf, rule.holdShelfUnit);
    m_answer.onShelfUntil = ToDateTime(until);
    Say(Loan::tr(
            "It stands on the hold shelf for %1, until %2, if whoever waits is of the same patron group.")
            .arg(Words(rule.holdShelf, rule.holdShelfUnit), Words(until)));
}

void Reckoning::SayBooking() {
    const Group& group = *m_answer.group;
    if (!group.IsShortLoan(m_answer.rule->itemType) || (group.earlyPickup <= 0 && group.unclaimed <= 0))
        return;
    const Moment from = m_start - group.earlyPickup;
    const Moment until = m_start + group.unclaimed;
    m_answer.booking = {ToDateTime(from), ToDateTime(until)};
    Say(Loan::tr(
            "Booked for that moment, it can be fetched from %1 (early pickup window) and is free again on "
            "%2 if nobody comes (unclaimed interval).")
            .arg(Words(from), Words(until)));
}

void Reckoning::Fine(const OpenHours& hours, const FineTerms& terms, Moment end) {
    const Rule& rule = *m_answer.rule;
    if (m_policy.usesDemerits && !m_policy.demerits.value(m_request.patronGroup).apply) {
        Say(Loan::tr("Demerits do not apply to this patron group."));
        return;
    }
    if (m_policy.usesDemerits && !m_policy.demerits.value(m_request.patronGroup).isKnown)
        Say(Loan::tr("What demerits mean to this patron group is not known: you may not see patron groups."));
    ReckonFines(*m_answer.group, hours, rule, terms, *m_due, end, m_answer);
    if (terms.rate <= 0)
        Say(Loan::tr("The rule has no fine."));
    else if (m_answer.fines.isEmpty())
        Say(Loan::tr("It comes back within the grace period of %1: there is no fine.")
                .arg(Words(terms.grace, rule.unit)));
    else if (terms.grace > 0)
        Say(Loan::tr("The grace period of %1 is over: the fine counts from the due date.")
                .arg(Words(terms.grace, rule.unit)));
    if (!m_answer.fines.isEmpty())
        Say((m_answer.reachesMost ? Loan::tr("The fine comes to %1, the most that the rule allows.")
                                  : Loan::tr("The fine comes to %1."))
                .arg(Money(m_answer.fine)));
}

void Reckoning::FollowOverdue(const OpenHours& hours) {
    const Rule& rule = *m_answer.rule;
    const Group& group = *m_answer.group;
    const PatronRule patron = group.patrons.value(m_request.patronGroup);
    const FineTerms terms = TermsOf(rule, m_recalled.has_value());
    const bool isBack = m_request.returned.has_value();
    const Moment returned = isBack ? ToMoment(*m_request.returned) : 0;
    const Moment lostAt = *m_due + rule.lost * MinutesOfDay;
    const bool isLost = rule.lost > 0 && !(isBack && returned <= lostAt);
    const Moment end = isLost ? lostAt : isBack ? returned : *m_due + MostOverdue;
    ReckonNotices(rule, patron, group.IsShortLoan(rule.itemType), m_start, *m_due, m_recalled, end,
                  m_answer.notices);
    if (isBack && returned <= *m_due) {
        m_now = returned;
        Say(Loan::tr("It comes back in time."));
        return;
    }
    m_now = end;
    if (!patron.finesApply) {
        Say(Loan::tr("Fines and fees for lost items do not apply to these patrons."));
    } else {
        Fine(hours, terms, end);
    }
    if (isLost && patron.finesApply)
        Lose(lostAt);
    else if (isLost)
        m_answer.lost = ToDateTime(lostAt);
    if (isLost && isBack) {
        m_now = returned;
        Say(m_answer.isFineRemoved ? Loan::tr("It comes back after all: its overdue fine is removed.")
                                   : Loan::tr("It comes back after all."));
    }
    if (isLost || isBack)
        Suspend(isLost ? lostAt : returned);
}

/// Whether it is renewed when it is due, before the next event.
bool Reckoning::RenewsAt(std::optional<Moment> next) const {
    return m_request.renewsAlways && m_due && m_renewals < qMin(m_answer.rule->mostRenewals, MostRenewals) &&
           (!next || *m_due < *next) && (!m_request.returned || *m_due < ToMoment(*m_request.returned));
}

void Reckoning::FollowEvents(const OpenHours& hours, const DueDate& dates) {
    QList<QPair<Moment, bool>> events; // whether it is a recall
    for (const QDateTime& renewal : m_request.renewals)
        events.append({ToMoment(renewal), false});
    if (m_request.recalled)
        events.append({ToMoment(*m_request.recalled), true});
    std::stable_sort(events.begin(), events.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    for (bool maysRenew = true;;) {
        const auto next = events.isEmpty() ? std::optional<Moment>() : events.first().first;
        if (maysRenew && RenewsAt(next)) {
            const Moment before = *m_due;
            m_now = before;
            Renew(hours, dates);
            maysRenew = m_due != before;
        } else if (next) {
            m_now = *next;
            const bool isRecall = events.takeFirst().second;
            if (m_now < m_start || (m_request.returned && m_now > ToMoment(*m_request.returned)))
                Say(Loan::tr("It is not lent at that moment: nothing happens."));
            else if (isRecall)
                Recall(dates);
            else
                Renew(hours, dates);
        } else {
            return;
        }
    }
}

Answer Reckoning::Run() {
    m_start = m_now = ToMoment(m_request.charged);
    if (m_request.returned && ToMoment(*m_request.returned) < m_start)
        m_answer.problem = Loan::tr("The return lies before the loan.");
    if (!m_answer.problem.isEmpty() || !FindRule())
        return m_answer;
    const Rule& rule = *m_answer.rule;
    const OpenHours hours(m_answer.group->calendars);
    const DueDate dates(*m_answer.group, rule, hours, [this](const QString& text) { Say(text); });
    SayBooking();
    if (!hours.IsOpen(m_start))
        Say(Loan::tr("It is closed at that moment; the loan is reckoned from it all the same."));
    if (rule.unit != Unit::Indefinite)
        Say(Loan::tr("The loan period is %1.").arg(Words(rule.period, rule.unit)));
    m_due = dates.Of(m_start, rule.period, rule.unit);
    if (m_due) {
        m_answer.firstDue = ToDateTime(*m_due);
        Say(Loan::tr("It is due on %1.").arg(Words(*m_due)));
    }
    FollowEvents(hours, dates);
    if (m_due) {
        m_answer.due = ToDateTime(*m_due);
        if (m_answer.booking) {
            m_answer.nextBooking = ToDateTime(*m_due + m_policy.bookingBuffer);
            Say(Loan::tr("Another booking may begin on %1 (time buffer of %2).")
                    .arg(Words(*m_due + m_policy.bookingBuffer),
                         Words(m_policy.bookingBuffer, Unit::Minute)));
        }
        FollowOverdue(hours);
    }
    PutOnShelf(dates);
    return m_answer;
}

} // namespace

Amount Answer::LostCost() const {
    Amount cost = 0;
    for (const LostCharge& charge : lostCharges)
        cost += charge.isRemoved ? 0 : charge.amount;
    return cost;
}

QString NoticeText(Notice::Kind kind) {
    switch (kind) {
    case Notice::Kind::Warning:
        return Loan::tr("Warning before a short loan is due");
    case Notice::Kind::Courtesy:
        return Loan::tr("Courtesy notice");
    case Notice::Kind::Overdue:
        return Loan::tr("Overdue notice");
    case Notice::Kind::OtherOverdue:
        return Loan::tr("Other overdue notice");
    case Notice::Kind::Recall:
        return Loan::tr("Recall notice");
    case Notice::Kind::OverdueRecall:
        return Loan::tr("Overdue recall notice");
    }
    Q_UNREACHABLE();
}

QString LostChargeText(LostCharge::Kind kind) {
    switch (kind) {
    case LostCharge::Kind::Replacement:
        return Loan::tr("Replacement cost");
    case LostCharge::Kind::Fee:
        return Loan::tr("Lost item processing fee");
    case LostCharge::Kind::MostFine:
        return Loan::tr("Maximum fine for lost items");
    }
    Q_UNREACHABLE();
}

Answer Reckon(const Policy& policy, const Request& request) {
    return Reckoning(policy, request).Run();
}

} // namespace sysadmin::loan
