#include "loan/DueDate.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

namespace sysadmin::loan {

QDate LibraryDate(const OpenHours& hours, Moment moment) {
    const auto day = hours.Around(moment);
    return day ? day->date : DateOf(moment);
}

QString Words(QDate date) {
    QString format = QLocale().dateFormat(QLocale::ShortFormat);
    if (!format.contains("yyyy"))
        format.replace("yy", "yyyy");
    return QLocale().toString(date, format);
}

QString Words(Moment moment) {
    const QDateTime time = ToDateTime(moment);
    return Words(time.date()) + ' ' + QLocale().toString(time.time(), QLocale::ShortFormat);
}

QString Words(double count, Unit unit) {
    const QString number = QString::number(count);
    const bool isOne = count == 1;
    switch (unit) {
    case Unit::Minute:
        return isOne ? Loan::tr("1 minute") : Loan::tr("%1 minutes").arg(number);
    case Unit::Hour:
        return isOne ? Loan::tr("1 hour") : Loan::tr("%1 hours").arg(number);
    case Unit::Day:
        return isOne ? Loan::tr("1 day") : Loan::tr("%1 days").arg(number);
    case Unit::Term:
        return isOne ? Loan::tr("1 term") : Loan::tr("%1 terms").arg(number);
    case Unit::Indefinite:
        break;
    }
    return Loan::tr("without end");
}

DueDate::DueDate(const Group& group, const Rule& rule, const OpenHours& hours, Say say)
    : m_group(group)
    , m_rule(rule)
    , m_hours(hours)
    , m_say(std::move(say)) {}

Moment DueDate::AfterDays(Moment start, int days) const {
    const QDate from = LibraryDate(m_hours, start);
    QDate date = from;
    if (m_group.countsClosedForLoan) {
        date = from.addDays(days);
        int closed = 0;
        for (QDate day = from.addDays(1); day <= date; day = day.addDays(1))
            closed += m_hours.On(day) ? 0 : 1;
        if (closed > 0)
            m_say(Loan::tr("Closed days count, too: %1 of the period.").arg(Words(closed, Unit::Day)));
    } else {
        for (int counted = 0; counted < days; ++counted) {
            const auto next = m_hours.NextDay(date.addDays(1));
            date = next ? next->date : date.addDays(1);
        }
        if (const int passed = int(from.daysTo(date)) - days; passed > 0)
            m_say(Loan::tr("Closed days do not count: %1 passed over.").arg(Words(passed, Unit::Day)));
    }
    const auto day = m_hours.NextDay(date);
    if (!day)
        return StartOf(date) + MinutesOfDay;
    if (day->date != date)
        m_say(Loan::tr("%1 is a closed day: the next open day is %2.").arg(Words(date), Words(day->date)));
    return day->closes;
}

Moment DueDate::AfterMinutes(Moment start, qint64 minutes) const {
    if (!m_group.countsClosedForLoan) {
        const Moment due = m_hours.AddOpen(start, minutes);
        if (due != start + minutes)
            m_say(Loan::tr("Closed hours do not count: the time goes on until %1.").arg(Words(due)));
        return due;
    }
    if (m_hours.OpenBetween(start, start + minutes) < minutes)
        m_say(Loan::tr("Closed hours count."));
    const Moment due = m_hours.NextOpen(start + minutes);
    if (due != start + minutes)
        m_say(Loan::tr("It is closed on %1: the next opening is on %2.")
                  .arg(Words(start + minutes), Words(due)));
    return due;
}

Moment DueDate::After(Moment start, double period, Unit unit) const {
    switch (unit) {
    case Unit::Minute:
        return AfterMinutes(start, qint64(std::ceil(period)));
    case Unit::Hour:
        return AfterMinutes(start, qint64(std::ceil(period * 60)));
    default:
        return AfterDays(start, int(std::ceil(period)));
    }
}

/// A term that has fewer than its lead days left counts no more.
std::optional<Moment> DueDate::AfterTerms(Moment start, int terms) const {
    QMap<QDate, int> all;
    const QDate from = LibraryDate(m_hours, start);
    for (const Calendar& calendar : m_hours.Calendars())
        all.insert(calendar.terms);
    for (auto term = all.lowerBound(from); term != all.end(); ++term) {
        const qint64 left = from.daysTo(term.key());
        if (left < term.value()) {
            m_say(Loan::tr("The term that ends on %1 has only %2 left, fewer than its lead days (%3): the "
                           "next one counts.")
                      .arg(Words(term.key()), Words(double(left), Unit::Day))
                      .arg(term.value()));
            continue;
        }
        if (--terms > 0)
            continue;
        m_say(Loan::tr("The term ends on %1.").arg(Words(term.key())));
        const auto day = m_hours.NextDay(term.key());
        if (!day)
            return StartOf(term.key()) + MinutesOfDay;
        if (day->date != term.key())
            m_say(Loan::tr("%1 is a closed day: the next open day is %2.")
                      .arg(Words(term.key()), Words(day->date)));
        return day->closes;
    }
    m_say(Loan::tr("No calendar of the group has an end of term that is late enough: there is no due date."));
    return std::nullopt;
}

/// A loan made when overnight loans are in effect is due at the overnight due time of the next open day,
/// unless its own period ends later.
Moment DueDate::Overnight(Moment start, Moment due) const {
    const auto day = m_hours.Around(start);
    if (!m_group.fixedTimeForOvernight || !day || !day->inEffect || start < *day->inEffect)
        return due;
    const auto fixed = m_hours.NextFixedTime(day->closes);
    if (!fixed || *fixed <= due)
        return due;
    m_say(Loan::tr("Overnight loans are in effect from %1: it is due at the overnight due time, %2.")
              .arg(Words(*day->inEffect), Words(*fixed)));
    return *fixed;
}

Moment DueDate::NotAfterFixedDate(Moment start, Moment due) const {
    const QDate date = LibraryDate(m_hours, start);
    const Calendar* calendar = m_hours.CalendarOn(date);
    if (!calendar || !calendar->fixedDue.isValid() || calendar->fixedDue < date)
        return due;
    const auto day = m_hours.NextDay(calendar->fixedDue);
    if (!day || due <= day->closes)
        return due;
    m_say(Loan::tr("The calendar \"%1\" has the fixed due date %2: nothing is due later.")
              .arg(calendar->name, Words(calendar->fixedDue)));
    return day->closes;
}

std::optional<Moment> DueDate::Of(Moment start, double period, Unit unit) const {
    if (unit == Unit::Indefinite) {
        m_say(Loan::tr("The loan is indefinite: it has no due date."));
        return std::nullopt;
    }
    if (!m_hours.CalendarOn(DateOf(start)))
        m_say(Loan::tr("No calendar of the group covers %1: days without one count as open around the clock.")
                  .arg(Words(DateOf(start))));
    std::optional<Moment> due;
    if (unit == Unit::Term) {
        due = AfterTerms(start, qMax(1, int(std::ceil(period))));
    } else {
        due = After(start, period, unit);
        if (unit != Unit::Day)
            due = Overnight(start, *due);
    }
    if (!due)
        return due;
    if (m_rule.dueAtNextFixedTime && m_group.IsShortLoan(m_rule.itemType))
        if (const auto fixed = m_hours.NextFixedTime(*due); fixed && *fixed != *due) {
            m_say(Loan::tr("Short loans are due at the next fixed due time: %1.").arg(Words(*fixed)));
            due = fixed;
        }
    return NotAfterFixedDate(start, *due);
}

} // namespace sysadmin::loan
