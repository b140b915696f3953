#include "circulation/CalendarForm.h"

#include "circulation/CalendarDialogs.h"
#include "core/data/RequestChannel.h"
#include "framework/forms/Rules.h"

#include <QLocale>

namespace sysadmin {

namespace {

constexpr int MinutesOfDay = 24 * 60;

/// Minutes from midnight; none for anything but a time.
std::optional<int> Minutes(const QString& text) {
    const QTime time = QTime::fromString(text, "HH:mm");
    return time.isValid() ? std::optional(time.hour() * 60 + time.minute()) : std::nullopt;
}

/// When an open day closes, in minutes from its own midnight.
int ClosesAt(const Hours& hours) {
    const int open = Minutes(hours.open).value_or(0);
    const int close = Minutes(hours.close).value_or(0);
    return close <= open ? close + MinutesOfDay : close;
}

QString WeekdayName(int day) {
    return QLocale(QLocale::English).standaloneDayName(day == 0 ? 7 : day);
}

HoursTags WeekdayTags(int day) {
    if (day == 0)
        return {"SnOpn", "SnOpnTm", "SnClsTm", "SnDTm", "SnETm"};
    const QString tag = QStringList{"", "Mn", "Tu", "Wd", "Th", "Fr", "St"}[day];
    return {tag + "Opn", tag + "OTm", tag + "CTm", tag + "DTm", tag + "ETm"};
}

RowsSpec ExceptionsSpec(const QString& role, const DateRange& range,
                        const std::shared_ptr<QDate>& suggested) {
    RowsSpec spec{
        .marker = "ExDt",
        .keyColumn = ExceptionColumn::Date,
        .puts = {PutCell("ExDt", ExceptionColumn::Date), PutCell("ExOpn", ExceptionColumn::IsOpen),
                 PutCell("ExOTm", ExceptionColumn::Open), PutCell("ExCTm", ExceptionColumn::Close),
                 PutCell("ExDTm", ExceptionColumn::Due), PutCell("ExETm", ExceptionColumn::InEffect)},
        .add = {"cmdAddException" + role, Form::tr("&Add")},
        .modify = {"cmdUpdateException" + role, Form::tr("&Update")},
        .remove = {"cmdRemoveException" + role, Form::tr("&Remove")},
        .ask = AskException(range, suggested),
        .several = true,
        .spread = SpreadException,
        .removeQuestion = Form::tr("You will delete the selected Exception Dates.\r\nAre you sure?"),
        .removeTitle = Form::tr("Delete the selected Exception Dates")};
    const auto time = [](int column) {
        return [column](const GridRow& row) {
            if (row.cells.value(ExceptionColumn::IsOpen) != u"Y")
                return column == ExceptionColumn::Open || column == ExceptionColumn::Close ? ClosedWord()
                                                                                           : QString();
            return ShownTime(row.cells.value(column));
        };
    };
    for (const int column :
         {ExceptionColumn::Open, ExceptionColumn::Close, ExceptionColumn::Due, ExceptionColumn::InEffect})
        spec.shown.insert(column, time(column));
    return spec;
}

RowsSpec TermsSpec(const QString& role, const DateRange& range) {
    return {.marker = "ETrm",
            .keyColumn = 0,
            .puts = {PutCell("ETrm", 0), PutCell("LDay", 1)},
            .add = {"cmdAddTerm" + role, Form::tr("&Add")},
            .modify = {"cmdUpdateTerm" + role, Form::tr("&Update")},
            .remove = {"cmdRemoveTerm" + role, Form::tr("&Remove")},
            .ask = AskTerm(range),
            .several = true,
            .removeQuestion = Form::tr("You will delete the selected Term Loans.\r\nAre you sure?"),
            .removeTitle = Form::tr("Delete the selected Term Loans")};
}

} // namespace

QString ClosedWord() {
    return Form::tr("Closed");
}

bool Hours::IsOpen() const {
    return Minutes(open).has_value();
}

bool Hours::ClosesNextDay() const {
    return IsOpen() && Minutes(close) && ClosesAt(*this) >= MinutesOfDay;
}

void OpenFlag::Put(RequestChannel& channel) const {
    channel.PutField(Tag(), m_open.Time().isValid() ? "Y" : "N");
}

DayHours::DayHours(Form& form, const QString& role, const QString& day, const HoursTags& tags)
    : flag(form, tags.flag, open)
    , open(form, {.name = "txtOpenTime" + role,
                  .tag = tags.open,
                  .initial = ClosedWord(),
                  .accessible = day + " " + Form::tr("open time"),
                  .words = {ClosedWord()}})
    , close(form, {.name = "txtCloseTime" + role,
                   .tag = tags.close,
                   .initial = ClosedWord(),
                   .accessible = day + " " + Form::tr("close time"),
                   .words = {ClosedWord()}})
    , inEffect(form, {.name = "txtInEffectTime" + role,
                      .tag = tags.inEffect,
                      .accessible = day + " " + Form::tr("overnight loans in effect time")})
    , due(form, {.name = "txtDueTime" + role,
                 .tag = tags.due,
                 .accessible = day + " " + Form::tr("overnight loans due time")}) {
    form.WhenLeft(open, [this] { PairLeft(open, close); });
    form.WhenLeft(close, [this] { PairLeft(close, open); });
    form.When([this] { return !open.IsClosed(); }).Enable(due, inEffect);
}

void DayHours::PairLeft(OpeningTimeField& left, OpeningTimeField& other) {
    if (left.IsBlank() || left.IsClosed()) {
        left.SetDraft(ClosedWord());
        other.SetDraft(ClosedWord());
        due.SetDraft({});
        inEffect.SetDraft({});
    } else if (other.IsClosed()) {
        other.SetDraft({});
    }
}

Hours DayHours::Drafts() const {
    return {open.Draft(), close.Draft(), due.Draft(), inEffect.Draft()};
}

std::optional<Form::Finding> DayHours::Problem() {
    if (open.IsClosed() && close.IsClosed())
        return {};
    if (!open.Time().isValid() || !close.Time().isValid()) {
        OpeningTimeField& missing = open.Time().isValid() ? close : open;
        return Form::Finding{&missing, Form::tr("Please enter both the open and the close time of a day, or "
                                                "choose that it is closed.")};
    }
    bool dueIsWrong = false;
    if (const QString problem = OvernightProblem(Drafts(), dueIsWrong); !problem.isEmpty())
        return Form::Finding{dueIsWrong ? &due : &inEffect, problem};
    return {};
}

bool OverlapsYesterday(const Hours& today, const Hours& yesterday) {
    const std::optional<int> opens = Minutes(today.open);
    return opens && yesterday.ClosesNextDay() && *opens < ClosesAt(yesterday) - MinutesOfDay;
}

QString OvernightProblem(const Hours& hours, bool& dueIsWrong) {
    const std::optional<int> opens = Minutes(hours.open);
    const auto isBetween = [&](const QString& text) {
        const std::optional<int> time = Minutes(text);
        return !time || !opens || (*time < *opens ? *time + MinutesOfDay : *time) <= ClosesAt(hours);
    };
    dueIsWrong = !isBetween(hours.due);
    if (dueIsWrong)
        return Form::tr(
            "Overnight Loans Due time should be between Open and Close time, please set it again.");
    if (!isBetween(hours.inEffect))
        return Form::tr("Overnight Loans In Effect time should be between Open\r\nand Close time, please set "
                        "it again.");
    return {};
}

CalendarLists::CalendarLists(Form& form, const QString& role, std::function<std::pair<QDate, QDate>()> range)
    : exceptions(form, {.name = "vsfExceptionDates" + role, .accessible = Form::tr("Exception dates")},
                 ExceptionColumns(), ExceptionsSpec(role, range, suggestedDate))
    , terms(form, {.name = "vsfTerms" + role, .accessible = Form::tr("Term loans")}, TermColumns(),
            TermsSpec(role, range)) {
    terms.Behaviour().check = [this](const GridRow& row, const GridRow* former) {
        if (!(former && former->key == row.cells[0]) && terms.FindRow(row.cells[0]))
            return Form::tr("Term date already exists in list.\r\nPlease select it for Editing.");
        return QString();
    };
}

std::optional<Hours> CalendarLists::ExceptionOn(QDate date) const {
    const GridRow* row = exceptions.FindRow(date.toString(CalendarDateFormat));
    if (!row)
        return {};
    const auto cell = [&](int column) { return row->cells.value(column); };
    if (cell(ExceptionColumn::IsOpen) != u"Y")
        return Hours{ClosedWord(), ClosedWord()};
    return Hours{cell(ExceptionColumn::Open), cell(ExceptionColumn::Close), cell(ExceptionColumn::Due),
                 cell(ExceptionColumn::InEffect)};
}

bool CalendarLists::IsTermEnd(QDate date) const {
    return terms.FindRow(date.toString(CalendarDateFormat));
}

CalendarForm::CalendarForm()
    : week{{{*this, "Sn", WeekdayName(0), WeekdayTags(0)},
            {*this, "Mn", WeekdayName(1), WeekdayTags(1)},
            {*this, "Tu", WeekdayName(2), WeekdayTags(2)},
            {*this, "Wd", WeekdayName(3), WeekdayTags(3)},
            {*this, "Th", WeekdayName(4), WeekdayTags(4)},
            {*this, "Fr", WeekdayName(5), WeekdayTags(5)},
            {*this, "St", WeekdayName(6), WeekdayTags(6)}}}
    , lists(*this, "", [this] { return std::pair(txtStartDate.Date(), txtEndDate.Date()); }) {
    for (size_t day = 0; day < week.size(); ++day)
        TellWhenLeft(week[day].open,
                     [this, day] { return OverlappingDay() == int(day) ? FormProblem()->text : QString(); });
}

std::optional<Hours> CalendarForm::HoursOn(QDate date) const {
    const QDate begin = txtStartDate.Date();
    const QDate end = txtEndDate.Date();
    if (!begin.isValid() || date < begin || (end.isValid() && date > end))
        return {};
    if (const std::optional<Hours> exception = lists.ExceptionOn(date))
        return exception;
    return week[size_t(date.dayOfWeek() % 7)].Drafts();
}

std::optional<int> CalendarForm::OverlappingDay() const {
    for (size_t day = 0; day < week.size(); ++day)
        if (OverlapsYesterday(week[day].Drafts(), week[(day + 6) % 7].Drafts()))
            return int(day);
    return {};
}

std::optional<Form::Finding> CalendarForm::FormProblem() {
    for (DayHours& day : week)
        if (const std::optional<Finding> problem = day.Problem())
            return problem;
    if (const std::optional<int> day = OverlappingDay())
        return Finding{&week[size_t(*day)].open,
                       tr("Open Time Today may not overlap Close Time Yesterday, please set it again.")};
    if (txtEndDate.Date().isValid() && txtEndDate.Date() < txtStartDate.Date())
        return Finding{&txtEndDate, tr("The end date is before the start date.")};
    return {};
}

SeveralCalendarsForm::SeveralCalendarsForm()
    : vsfSelected(*this, {.name = "vsfSelected", .accessible = tr("Calendars to be changed")},
                  {{.caption = "", .width = 40, .yesNo = true}, {.caption = tr("Names")}},
                  {.edits = {{0, {.kind = CellEdit::Kind::Check}}}})
    , lists(*this, "Multiple", [this] { return std::pair(txtStartDate.Date(), txtEndDate.Date()); }) {}

} // namespace sysadmin
