#pragma once

#include "framework/forms/RowsField.h"
#include "framework/forms/ValueFields.h"

#include <array>

namespace sysadmin {

/// Dates of calendars travel in this form.
inline const QString CalendarDateFormat = "yyyyMMdd";

/// Stands in the opening times of a day without any.
QString ClosedWord();

/// The opening hours of one day, as texts "HH:mm"; blank or the word for closed where there is no time.
struct Hours {
    QString open;
    QString close;
    QString due{};      ///< of overnight loans
    QString inEffect{}; ///< from when on loans are overnight loans

    bool IsOpen() const;
    /// The day ends after midnight.
    bool ClosesNextDay() const;
};

/// An opening or closing time: a closed day has none, and says so.
class OpeningTimeField : public TimeField {
public:
    using TimeField::TimeField;
    bool IsClosed() const { return Draft() == ClosedWord(); }

protected:
    QString FromWire(const QString& value) const override { return value.isEmpty() ? ClosedWord() : value; }
    QString ToWire() const override { return IsClosed() ? QString() : Draft(); }
};

/// The tag that says whether a day is open: it follows from the opening time.
class OpenFlag : public Field {
public:
    OpenFlag(Form& form, const QString& tag, const OpeningTimeField& open)
        : Field(form, Kind::Own, {.tag = tag})
        , m_open(open) {}
    void Load(RequestChannel&) override {}
    void Put(RequestChannel& channel) const override;
    void Clear() override {}
    bool IsChanged() const override { return false; } // the opening time tells
    bool IsBlank() const override { return false; }
    void Accept() override {}
    void Revert() override {}
    QStringList Words() const override { return {}; }

private:
    const OpeningTimeField& m_open;
};

/// The tags of a day's hours in the order in which they travel.
struct HoursTags {
    QString flag;
    QString open;
    QString close;
    QString due;
    QString inEffect;
};

/// The fields of one day's hours, with the rules between them: an emptied or closed time closes the day, and
/// a closed day has no overnight times.
struct DayHours {
    /// `role` ends the names of the fields; `day` is what a screen reader says in front of them.
    DayHours(Form& form, const QString& role, const QString& day, const HoursTags& tags);
    DayHours(const DayHours&) = delete;
    DayHours& operator=(const DayHours&) = delete;

    Hours Drafts() const;
    /// The times that do not fit together, with the message for it: a time is missing, or an overnight time
    /// is not between open and close.
    std::optional<Form::Finding> Problem();

    OpenFlag flag; // the first: it travels in front of the times
    OpeningTimeField open;
    OpeningTimeField close;
    TimeField inEffect;
    TimeField due;

private:
    void PairLeft(OpeningTimeField& left, OpeningTimeField& other);
};

/// Whether yesterday's hours run past midnight beyond today's opening.
bool OverlapsYesterday(const Hours& today, const Hours& yesterday);
/// The message for an overnight time that is not between open and close; empty when both are. A time earlier
/// than the opening counts on the next day, as the close time does.
QString OvernightProblem(const Hours& hours, bool& dueIsWrong);

/// Exceptions and terms of a calendar, as the edit of one calendar and that of several hold them.
struct CalendarLists {
    /// `range` answers the dates between which exceptions and terms must lie; invalid dates are no bounds.
    CalendarLists(Form& form, const QString& role, std::function<std::pair<QDate, QDate>()> range);

    /// The hours of an exception on the date, if there is one.
    std::optional<Hours> ExceptionOn(QDate date) const;
    bool IsTermEnd(QDate date) const;

    /// The date with which the next new exception begins; invalid: none.
    std::shared_ptr<QDate> suggestedDate = std::make_shared<QDate>();
    RowsField exceptions;
    RowsField terms;
};

/// One circulation calendar.
struct CalendarForm : Form {
    CalendarForm();

    /// The hours of a date: an exception's, or its weekday's. None outside the calendar.
    std::optional<Hours> HoursOn(QDate date) const;
    /// The week, and the dates against each other.
    std::optional<Finding> FormProblem() override;
    /// The weekday (0 is Sunday) whose opening time overlaps the day before; none when that is not so.
    std::optional<int> OverlappingDay() const;

    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Calendar Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")}}};
    DateField txtStartDate{*this,
                           {.name = "txtStartDate",
                            .tag = "StDt",
                            .caption = tr("Start Date:"),
                            .required = true,
                            .format = CalendarDateFormat}};
    DateField txtEndDate{
        *this,
        {.name = "txtEndDate", .tag = "EDt", .caption = tr("End Date:"), .format = CalendarDateFormat}};
    DateField txtFixedDueDate{*this,
                              {.name = "txtFixedDueDate",
                               .tag = "FDDt",
                               .caption = tr("Fixed Due Date:"),
                               .format = CalendarDateFormat}};
    std::array<DayHours, 7> week; ///< Sunday first
    CalendarLists lists;
};

/// What several calendars get at once: only what is entered is written.
struct SeveralCalendarsForm : Form {
    SeveralCalendarsForm();

    RowsField vsfSelected; ///< the calendars, with a mark for those that are changed
    DateField txtStartDate{*this,
                           {.name = "txtStartDateMultiple",
                            .tag = "StDt",
                            .caption = tr("Start Date:"),
                            .format = CalendarDateFormat}};
    DateField txtEndDate{*this,
                         {.name = "txtEndDateMultiple",
                          .tag = "EDt",
                          .caption = tr("End Date:"),
                          .format = CalendarDateFormat}};
    DateField txtFixedDueDate{*this,
                              {.name = "txtFixedDueDateMultiple",
                               .tag = "FDDt",
                               .caption = tr("Fixed Due Date:"),
                               .format = CalendarDateFormat}};
    CalendarLists lists;
};

} // namespace sysadmin
