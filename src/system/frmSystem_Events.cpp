#include "system/frmSystem_Events.h"

#include "core/Application.h"
#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"
#include "framework/forms/ShownDate.h"
#include "system/frmSystem_ApplyEvents.h"

#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace sysadmin {

namespace events = wire::events;

namespace {

constexpr int YearsAhead = 10; ///< in which the next dates are looked for
constexpr qsizetype NextShown = 5;

const QString WhenColumn = "When";
const QString NextColumn = "Next";
const QString HoursColumn = "Hours";

QList<PickItem> Kinds() {
    return {{events::kind::EachYear, Form::tr("The same day each year")},
            {events::kind::Weekday, Form::tr("A weekday of a month")},
            {events::kind::FromEaster, Form::tr("Days from Easter")},
            {events::kind::Once, Form::tr("One date")}};
}

QList<PickItem> Months() {
    QList<PickItem> months;
    for (int month = 1; month <= 12; ++month)
        months.append({QString::number(month), QLocale().standaloneMonthName(month)});
    return months;
}

QList<PickItem> Weeks() {
    return {{"1", Form::tr("First")},
            {"2", Form::tr("Second")},
            {"3", Form::tr("Third")},
            {"4", Form::tr("Fourth")},
            {QString::number(events::LastWeek), Form::tr("Last")}};
}

/// Qt's Sunday is 7, that of the wire 0.
QString WeekdayName(int weekday) {
    return QLocale().standaloneDayName(weekday == 0 ? 7 : weekday);
}

QList<PickItem> Weekdays() {
    QList<PickItem> days;
    for (int weekday = 0; weekday < 7; ++weekday)
        days.append({QString::number(weekday), WeekdayName(weekday)});
    return days;
}

QList<QDate> NextDates(const events::Rule& rule) {
    const QDate today = QDate::currentDate();
    return events::DatesBetween(rule, today, today.addYears(YearsAhead));
}

QString HoursOf(const Event& event) {
    return event.isOpen ? ShownTime(event.openTime) + " - " + ShownTime(event.closeTime) : Form::tr("Closed");
}

} // namespace

QString InWords(const events::Rule& rule) {
    if (rule.kind == events::kind::EachYear)
        return Form::tr("%1 %2 each year").arg(QLocale().monthName(qBound(1, rule.month, 12))).arg(rule.day);
    if (rule.kind == events::kind::Weekday)
        return Form::tr("%1 %2 of %3")
            .arg(Weeks().value(rule.week - 1).text, WeekdayName(rule.weekday),
                 QLocale().monthName(qBound(1, rule.month, 12)));
    if (rule.kind == events::kind::Once)
        return ShownDate(rule.date);
    if (rule.fromEaster == 0)
        return Form::tr("Easter Sunday");
    const int days = qAbs(rule.fromEaster);
    return rule.fromEaster > 0 ? (days == 1 ? Form::tr("The day after Easter Sunday")
                                            : Form::tr("%1 days after Easter Sunday"))
                                     .replace("%1", QString::number(days))
                               : (days == 1 ? Form::tr("The day before Easter Sunday")
                                            : Form::tr("%1 days before Easter Sunday"))
                                     .replace("%1", QString::number(days));
}

EventForm::EventForm()
    : cboRule(*this, {.name = "cboRule",
                      .tag = "K",
                      .caption = tr("Falls On:"),
                      .initial = events::kind::EachYear,
                      .options = Kinds()})
    , cboMonth(*this,
               {.name = "cboMonth", .tag = "M", .caption = tr("Month:"), .initial = "1", .options = Months()})
    , cboWeek(*this,
              {.name = "cboWeek", .tag = "Wk", .caption = tr("Week:"), .initial = "1", .options = Weeks()})
    , cboWeekday(*this, {.name = "cboWeekday",
                         .tag = "Wd",
                         .caption = tr("Weekday:"),
                         .initial = "1",
                         .options = Weekdays()}) {
    const auto is = [this](const QString& kind) { return [this, kind] { return cboRule.Draft() == kind; }; };
    When([this] {
        return cboRule.Draft() == events::kind::EachYear || cboRule.Draft() == events::kind::Weekday;
    }).Enable(cboMonth);
    When(is(events::kind::EachYear)).Enable(txtDay);
    When(is(events::kind::Weekday)).Enable(cboWeek, cboWeekday);
    When(is(events::kind::FromEaster)).Enable(txtFromEaster);
    When(is(events::kind::Once)).Enable(txtDate);
    When([this] { return chkOpen.IsOn(); }).Enable(txtOpenTime, txtCloseTime);
}

std::optional<Form::Finding> EventForm::FormProblem() {
    if (events::IsPossible(Entered().rule))
        return {};
    return Finding{&txtDay,
                   tr("There is no %1 %2 in any year.").arg(cboMonth.DisplayText()).arg(txtDay.Value())};
}

Event EventForm::Entered() const {
    return {.id = {},
            .name = txtName.Draft(),
            .rule = {.kind = cboRule.Draft(),
                     .month = cboMonth.Draft().toInt(),
                     .day = txtDay.Value(),
                     .week = cboWeek.Draft().toInt(),
                     .weekday = cboWeekday.Draft().toInt(),
                     .fromEaster = txtFromEaster.Value(),
                     .date = txtDate.Date()},
            .isOpen = chkOpen.IsOn(),
            .openTime = txtOpenTime.Draft(),
            .closeTime = txtCloseTime.Draft()};
}

frmSystem_Events::frmSystem_Events(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmSystem_Events", tr("System Events"), Area::System, parent) {
    AddTable({.subject = tr("Event"),
              .word = "Evt",
              .plural = "System Events",
              .listAfterChange = true, // the list shows what follows from the rule
              .columns =
                  {{.caption = tr("Names"), .width = 128, .tag = "Nm"},
                   {.caption = tr("Falls On"), .width = 165, .tag = WhenColumn},
                   {.caption = tr("Next"), .width = 96, .tag = NextColumn, .dateFormat = events::DateFormat},
                   {.caption = tr("Hours"), .width = 92, .tag = HoursColumn}}},
             m_form,
             Below({m_form.txtName, m_form.cboRule, Beside({m_form.cboMonth, m_form.txtDay}),
                    Beside({m_form.cboWeek, m_form.cboWeekday}), m_form.txtFromEaster, m_form.txtDate,
                    m_form.chkOpen, Beside({m_form.txtOpenTime, m_form.txtCloseTime}), Slot("lblNext")}),
             {}, [this](const QString& name) {
                 lblNext = new QLabel(this);
                 lblNext->setObjectName(name);
                 lblNext->setTextFormat(Qt::PlainText);
                 return lblNext;
             });
    cmdApply = MakeButton("cmdApply", tr("&Apply to Calendars..."));
    AddListButton(cmdApply);
    Finish();
    connect(cmdApply, &QPushButton::clicked, this, &frmSystem_Events::ApplyToCalendars);
    ShowNext();
}

GridRow frmSystem_Events::ReadRow(const Table&) {
    const Event event = ReadEvent(App().channel);
    const QList<QDate> next = NextDates(event.rule);
    return {event.id,
            {event.name, InWords(event.rule),
             next.isEmpty() ? QString() : next.first().toString(events::DateFormat), HoursOf(event)},
            {}};
}

void frmSystem_Events::RefreshOwnControls() {
    cmdApply->setVisible(App().profile.MayEdit(Area::Circulation));
    cmdApply->setEnabled(GetState() == State::List && !Current().grid->Model().Rows().isEmpty());
    ShowNext();
}

/// The next dates of what is entered, while it is entered.
void frmSystem_Events::ShowNext() {
    if (!lblNext)
        return; // not built yet
    const QList<QDate> next = NextDates(m_form.Entered().rule);
    QStringList words;
    for (const QDate& date : next.mid(0, NextShown))
        words.append(QLocale().toString(date, QLocale::LongFormat));
    lblNext->setText(GetState() == State::List ? QString()
                     : words.isEmpty()         ? tr("No date in the next %1 years.").arg(YearsAhead)
                                               : tr("Next dates:") + "\n" + words.join("\n"));
}

void frmSystem_Events::ApplyToCalendars() {
    OpenApplyEvents(App(), this);
}

} // namespace sysadmin

#include "moc_frmSystem_Events.cpp"
