#pragma once

#include "loan/Loan.h"

#include <QCoreApplication>

#include <functional>

namespace sysadmin::loan {

/// What the reckoning says, for its translations.
struct Loan {
    Q_DECLARE_TR_FUNCTIONS(Loan)
};

/// Finds due dates by a rule of a policy group and says step by step how.
class DueDate {
public:
    using Say = std::function<void(const QString&)>;

    DueDate(const Group& group, const Rule& rule, const OpenHours& hours, Say say);

    /// When something lent at the moment for so long is due; none when it has no due date.
    std::optional<Moment> Of(Moment start, double period, Unit unit) const;
    /// The end of a period without overnight times, terms and fixed due dates.
    Moment After(Moment start, double period, Unit unit) const;

private:
    Moment AfterDays(Moment start, int days) const;
    Moment AfterMinutes(Moment start, qint64 minutes) const;
    std::optional<Moment> AfterTerms(Moment start, int terms) const;
    Moment Overnight(Moment start, Moment due) const;
    Moment NotAfterFixedDate(Moment start, Moment due) const;

    const Group& m_group;
    const Rule& m_rule;
    const OpenHours& m_hours;
    Say m_say;
};

/// The date whose opening hours hold the moment: the day before for one after midnight that belongs to it.
QDate LibraryDate(const OpenHours& hours, Moment moment);

/// A date or moment as people read it.
QString Words(QDate date);
QString Words(Moment moment);
/// "2 hours"
QString Words(double count, Unit unit);

} // namespace sysadmin::loan
