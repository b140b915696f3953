#include "circulation/LoanAnswer.h"

#include "framework/forms/ShownDate.h"
#include "loan/OpenHours.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace sysadmin {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(LoanAnswer)
};

/// So many days are looked at for closed ones.
constexpr int MostDays = 800;

QString DayAndDate(QDate date) {
    return QLocale().toString(date, "ddd") + ' ' + ShownDate(date);
}

/// Collects the parts of the answer.
class Describer {
public:
    Describer(const loan::Policy& policy, const loan::Request& request, const loan::Answer& answer)
        : m_policy(policy)
        , m_request(request)
        , m_answer(answer) {}

    LoanAnswer Run() {
        AddHeadline();
        AddSteps();
        if (m_answer.problem.isEmpty()) {
            AddEvents();
            AddNotices();
            AddFines();
            AddLost();
            AddMarks();
            AddSpans();
        }
        return m_shown;
    }

private:
    QString Money(loan::Amount amount) const {
        return m_policy.usesDemerits ? loan::AmountText(amount, 0)
                                     : loan::AmountText(amount, m_policy.decimals);
    }
    void AddHeadline();
    void AddSteps();
    void AddEvents();
    void AddNotices();
    void AddFines();
    void AddLost();
    void AddMarks();
    void AddSpans();

    const loan::Policy& m_policy;
    const loan::Request& m_request;
    const loan::Answer& m_answer;
    LoanAnswer m_shown;
};

void Describer::AddHeadline() {
    if (!m_answer.problem.isEmpty()) {
        m_shown.headline = m_answer.problem;
        return;
    }
    if (!m_answer.due.isValid()) {
        m_shown.headline = Words::tr("It has no due date.");
        return;
    }
    QStringList parts{Words::tr("Due on %1").arg(ShownMoment(m_answer.due))};
    if (m_answer.fine > 0 && !m_answer.isFineRemoved)
        parts << (m_policy.usesDemerits ? Words::tr("%1 demerits") : Words::tr("fine %1"))
                     .arg(Money(m_answer.fine));
    if (m_answer.lost)
        parts << Words::tr("lost on %1").arg(ShownMoment(*m_answer.lost));
    m_shown.headline = parts.join(", ");
}

void Describer::AddSteps() {
    LoanSection steps{Words::tr("Step by step"), {}, {}};
    QDateTime before;
    for (const loan::Step& step : m_answer.steps) {
        steps.rows.append({step.at == before ? QString() : ShownMoment(step.at), step.text});
        before = step.at;
    }
    m_shown.sections.append(steps);
}

void Describer::AddEvents() {
    LoanSection events{Words::tr("Renewals and recall"),
                       {Words::tr("Date"), Words::tr("What"), Words::tr("Due from then on")},
                       {}};
    for (const loan::Event& event : m_answer.events) {
        const bool isRecall = event.kind == loan::Event::Kind::Recall;
        const QString what = isRecall ? event.isAllowed ? Words::tr("Recalled") : Words::tr("Not recalled")
                             : event.isAllowed ? Words::tr("Renewed")
                                               : Words::tr("Not renewed");
        events.rows.append({ShownMoment(event.at), what,
                            event.due.isValid() ? ShownMoment(event.due) : Words::tr("no due date")});
    }
    // What nobody asked about, but everybody wants to know.
    if (!m_request.recalled && m_answer.rule->allowsRecalls) {
        loan::Request recalled = m_request;
        recalled.recalled = m_request.charged.addDays(1);
        recalled.renewals.clear();
        recalled.renewsAlways = false;
        recalled.returned.reset();
        const QDateTime due = loan::Reckon(m_policy, recalled).due;
        events.rows.append({ShownMoment(*recalled.recalled), Words::tr("If it were recalled then"),
                            due.isValid() ? ShownMoment(due) : Words::tr("no due date")});
    }
    if (!events.rows.isEmpty())
        m_shown.sections.append(events);
}

void Describer::AddNotices() {
    LoanSection notices{Words::tr("Notices"), {}, {}};
    for (const loan::Notice& notice : m_answer.notices)
        notices.rows.append({ShownMoment(notice.at), loan::NoticeText(notice.kind)});
    if (!notices.rows.isEmpty())
        m_shown.sections.append(notices);
}

void Describer::AddFines() {
    if (m_answer.fines.isEmpty())
        return;
    LoanSection fines{m_policy.usesDemerits ? Words::tr("Demerits day by day") : Words::tr("Fine day by day"),
                      {Words::tr("Date"), Words::tr("Of this day"), Words::tr("All together")},
                      {}};
    for (const loan::FineDay& day : m_answer.fines)
        fines.rows.append({DayAndDate(day.date), Money(day.amount), Money(day.total)});
    m_shown.sections.append(fines);
    m_shown.fines = m_answer.fines;
    m_shown.mostFine = m_answer.fine;
}

void Describer::AddLost() {
    if (m_answer.lostCharges.isEmpty())
        return;
    LoanSection lost{Words::tr("What the lost item costs"), {}, {}};
    for (const loan::LostCharge& charge : m_answer.lostCharges)
        lost.rows.append({loan::LostChargeText(charge.kind),
                          loan::AmountText(charge.amount, m_policy.decimals),
                          charge.isRemoved ? Words::tr("removed by the return") : QString()});
    lost.rows.append(
        {Words::tr("All together"), loan::AmountText(m_answer.LostCost(), m_policy.decimals), {}});
    m_shown.sections.append(lost);
}

void Describer::AddMarks() {
    using Kind = LoanMark::Kind;
    QList<LoanMark>& marks = m_shown.marks;
    marks.append({Kind::Lent, m_request.charged, LoanWord(Kind::Lent)});
    for (const loan::Event& event : m_answer.events) {
        const bool isRecall = event.kind == loan::Event::Kind::Recall;
        if (!event.isAllowed)
            marks.append({Kind::NotRenewed, event.at,
                          isRecall ? Words::tr("Not recalled") : LoanWord(Kind::NotRenewed)});
        else
            marks.append({isRecall ? Kind::Recalled : Kind::Renewed, event.at,
                          (isRecall ? Words::tr("Recalled, due on %1") : Words::tr("Renewed, due on %1"))
                              .arg(ShownMoment(event.due))});
    }
    if (m_answer.due.isValid())
        marks.append({Kind::Due, m_answer.due, LoanWord(Kind::Due)});
    for (const loan::Notice& notice : m_answer.notices)
        marks.append({Kind::Notice, notice.at, loan::NoticeText(notice.kind)});
    if (m_answer.reachesMost)
        marks.append({Kind::Most, qMax(m_answer.due, m_answer.fines.last().date.startOfDay()),
                      Words::tr("Maximum of %1 reached").arg(Money(m_answer.fine))});
    if (m_answer.lost)
        marks.append({Kind::Lost, *m_answer.lost, LoanWord(Kind::Lost)});
    if (m_request.returned)
        marks.append({Kind::Back, *m_request.returned, LoanWord(Kind::Back)});
    if (m_answer.suspendedUntil)
        marks.append({Kind::FreeAgain, *m_answer.suspendedUntil, Words::tr("The suspension ends")});
    if (m_answer.onShelfUntil)
        marks.append({Kind::FreeAgain, *m_answer.onShelfUntil, Words::tr("Off the hold shelf")});
    std::stable_sort(marks.begin(), marks.end(),
                     [](const LoanMark& one, const LoanMark& other) { return one.at < other.at; });
}

void Describer::AddSpans() {
    using Kind = LoanSpan::Kind;
    const auto add = [this](Kind kind, const QDateTime& from, const QDateTime& to) {
        if (from.isValid() && to.isValid() && from < to)
            m_shown.spans.append({kind, from, to});
    };
    const QDateTime end = m_shown.marks.last().at;
    const QDateTime back = m_request.returned.value_or(end);
    add(Kind::Lent, m_request.charged, m_answer.due.isValid() ? qMin(m_answer.due, back) : back);
    QDateTime late = m_answer.lost ? qMin(*m_answer.lost, back) : back;
    if (!m_request.returned && !m_answer.fines.isEmpty())
        late = qMax(late, m_answer.fines.last().date.startOfDay());
    if (m_answer.due.isValid())
        add(Kind::Overdue, m_answer.due, late);
    if (m_answer.onShelfUntil)
        add(Kind::Shelf, back, *m_answer.onShelfUntil);
    if (m_answer.suspendedUntil)
        add(Kind::Suspended, m_answer.lost.value_or(back), *m_answer.suspendedUntil);
    const loan::OpenHours hours(m_answer.group->calendars);
    QDate date = m_request.charged.date();
    for (int i = 0; i < MostDays && date <= end.date(); ++i, date = date.addDays(1))
        if (!hours.On(date))
            m_shown.closedDays << date;
}

QString Row(const QStringList& cells, const QString& tag) {
    QString row = "<tr>";
    for (const QString& cell : cells)
        row += '<' + tag + " align=\"left\" style=\"padding-right: 16px\">" + cell.toHtmlEscaped() + "</" +
               tag + '>';
    return row + "</tr>";
}

} // namespace

LoanAnswer Describe(const loan::Policy& policy, const loan::Request& request, const loan::Answer& answer) {
    return Describer(policy, request, answer).Run();
}

QString LoanAnswer::Html() const {
    QString html;
    for (const LoanSection& section : sections) {
        html += "<h3>" + section.title.toHtmlEscaped() + "</h3><table cellpadding=\"2\">";
        if (!section.headings.isEmpty())
            html += Row(section.headings, "th");
        for (const QStringList& row : section.rows)
            html += Row(row, "td");
        html += "</table>";
    }
    return html;
}

QString LoanAnswer::PlainText() const {
    QStringList lines{headline};
    for (const LoanSection& section : sections) {
        lines << QString() << section.title;
        if (!section.headings.isEmpty())
            lines << section.headings.join('\t');
        for (const QStringList& row : section.rows)
            lines << row.join('\t');
    }
    return lines.join('\n') + '\n';
}

QString LoanWord(LoanMark::Kind kind) {
    switch (kind) {
    case LoanMark::Kind::Lent:
        return Words::tr("Lent");
    case LoanMark::Kind::Renewed:
        return Words::tr("Renewed");
    case LoanMark::Kind::NotRenewed:
        return Words::tr("Not renewed");
    case LoanMark::Kind::Recalled:
        return Words::tr("Recalled");
    case LoanMark::Kind::Due:
        return Words::tr("Due");
    case LoanMark::Kind::Notice:
        return Words::tr("Notice");
    case LoanMark::Kind::Most:
        return Words::tr("Maximum reached");
    case LoanMark::Kind::Lost:
        return Words::tr("Counts as lost");
    case LoanMark::Kind::Back:
        return Words::tr("Back");
    case LoanMark::Kind::FreeAgain:
        return Words::tr("Over");
    }
    Q_UNREACHABLE();
}

QString LoanWord(LoanSpan::Kind kind) {
    switch (kind) {
    case LoanSpan::Kind::Lent:
        return Words::tr("lent");
    case LoanSpan::Kind::Overdue:
        return Words::tr("overdue");
    case LoanSpan::Kind::Shelf:
        return Words::tr("on the hold shelf");
    case LoanSpan::Kind::Suspended:
        return Words::tr("patron suspended");
    }
    Q_UNREACHABLE();
}

QString ShownMoment(const QDateTime& at) {
    return DayAndDate(at.date()) + ' ' + QLocale().toString(at.time(), QLocale::ShortFormat);
}

} // namespace sysadmin
