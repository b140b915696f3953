#include "circulation/CalendarDialogs.h"

#include "circulation/CalendarForm.h"
#include "framework/FormDialog.h"
#include "framework/forms/Rules.h"

namespace sysadmin {

namespace {

bool IsWithin(QDate date, const std::pair<QDate, QDate>& range) {
    return (!range.first.isValid() || date >= range.first) &&
           (!range.second.isValid() || date <= range.second);
}

struct ExceptionForm : RowForm {
    DateField txtXcptnDateFrom{*this,
                               {.name = "txtXcptnDateFrom",
                                .tag = "ExDt",
                                .caption = tr("Exception Date"),
                                .format = CalendarDateFormat}};
    DateField txtXcptnDateTo{*this,
                             {.name = "txtXcptnDateTo",
                              .tag = "To",
                              .caption = tr("to"),
                              .accessible = tr("Exception end date"),
                              .format = CalendarDateFormat}};
    LetterField optOpen{*this,
                        {.name = "optOpen",
                         .tag = "ExOpn",
                         .initial = "Y",
                         .accessible = tr("Exception"),
                         .options = {{"Y", tr("&Open")}, {"N", tr("C&losed")}}}};
    TimeField txtOpenTime{*this, {.name = "txtOpenTime", .tag = "ExOTm", .caption = tr("Open Time")}};
    TimeField txtCloseTime{*this, {.name = "txtCloseTime", .tag = "ExCTm", .caption = tr("Close Time")}};
    TimeField txtInEffectTime{*this, {.name = "txtInEffectTime", .tag = "ExETm", .caption = tr("In Effect")}};
    TimeField txtDueTime{*this, {.name = "txtDueTime", .tag = "ExDTm", .caption = tr("Due Time")}};

    ExceptionForm(const DateRange& calendar, const std::shared_ptr<QDate>& suggested)
        : m_calendar(calendar)
        , m_suggested(suggested) {
        When([this] {
            return optOpen.Draft() == u"Y";
        }).Enable(txtOpenTime, txtCloseTime, txtInEffectTime, txtDueTime);
        When([this] { return optOpen.Draft() != u"Y"; })
            .Clear(txtOpenTime)
            .Clear(txtCloseTime)
            .Clear(txtInEffectTime)
            .Clear(txtDueTime);
    }

    Layout Draw() override {
        return Below({Beside({txtXcptnDateFrom, txtXcptnDateTo}), optOpen,
                      Beside({txtOpenTime, txtCloseTime}),
                      Frame("fraOvernight", tr("Overnight Loans"), {Beside({txtInEffectTime, txtDueTime})})});
    }

    void TakeRow(const GridRow* row, const QList<GridColumn>& columns) override {
        RowForm::TakeRow(row, columns);
        if (!row && m_suggested->isValid())
            txtXcptnDateFrom.SetStored(m_suggested->toString(CalendarDateFormat));
        txtXcptnDateTo.SetStored(txtXcptnDateFrom.Draft());
    }

    QString Refusal() override {
        const QDate begin = txtXcptnDateFrom.Date();
        const QDate end = txtXcptnDateTo.IsBlank() ? begin : txtXcptnDateTo.Date();
        if (!begin.isValid() || !end.isValid())
            return tr("The date you entered is invalid");
        if (!IsWithin(begin, m_calendar()))
            return tr("Exception Begin Date must fall within the calendar dates.");
        if (!IsWithin(end, m_calendar()))
            return tr("Exception End Date must fall within the calendar dates.");
        if (end < begin)
            return tr("The exception's end date is before its begin date.");
        if (optOpen.Draft() != u"Y")
            return {};
        if (!txtOpenTime.Time().isValid() || !txtCloseTime.Time().isValid())
            return tr("Please enter both the open and the close time of a day, or choose that it is closed.");
        bool dueIsWrong = false;
        return OvernightProblem(
            {txtOpenTime.Draft(), txtCloseTime.Draft(), txtDueTime.Draft(), txtInEffectTime.Draft()},
            dueIsWrong);
    }

private:
    DateRange m_calendar;
    std::shared_ptr<QDate> m_suggested;
};

struct TermForm : RowForm {
    DateField txtEndOfTerm{*this,
                           {.name = "txtEndOfTerm",
                            .tag = "ETrm",
                            .caption = tr("End of Term  Date:"),
                            .required = true,
                            .format = CalendarDateFormat}};
    NumberField txtLeadDays{*this,
                            {.name = "txtLeadDays",
                             .tag = "LDay",
                             .caption = tr("Number of Lead Days:"),
                             .required = true,
                             .initial = "0",
                             .most = 366}};

    explicit TermForm(const DateRange& calendar)
        : m_calendar(calendar) {}

    Layout Draw() override { return Below({txtEndOfTerm, txtLeadDays}); }
    QString Refusal() override {
        return IsWithin(txtEndOfTerm.Date(), m_calendar())
                   ? QString()
                   : tr("The end of the term must fall within the calendar dates.");
    }

private:
    DateRange m_calendar;
};

} // namespace

QList<GridColumn> ExceptionColumns() {
    return {{.caption = Form::tr("Exception Date"),
             .width = 110,
             .tag = "ExDt",
             .dateFormat = CalendarDateFormat},
            {.caption = Form::tr("Open Time"), .width = 90, .tag = "ExOTm"},
            {.caption = Form::tr("Close Time"), .width = 90, .tag = "ExCTm"},
            {.caption = Form::tr("In Effect"), .width = 90, .tag = "ExETm"},
            {.caption = Form::tr("Due Time"), .tag = "ExDTm"},
            {.caption = "ExOpn", .hidden = true, .tag = "ExOpn"},
            {.caption = "To", .hidden = true, .tag = "To"}};
}

QList<GridColumn> TermColumns() {
    return {{.caption = Form::tr("End of Term  Date"),
             .width = 140,
             .tag = "ETrm",
             .dateFormat = CalendarDateFormat},
            {.caption = Form::tr("Number of Lead Days"), .tag = "LDay"}};
}

RowAsker AskException(const DateRange& calendar, const std::shared_ptr<QDate>& suggested) {
    return AskInForm({.name = "frmCirculation_CalendarExceptionSettings",
                      .title = Form::tr("Exception Date Settings"),
                      .helpContext = 50521,
                      .okName = "cmdSave",
                      .focus = "txtXcptnDateFrom",
                      .okCaption = Form::tr("&Update"),
                      .newCaption = Form::tr("&Add")},
                     ExceptionColumns(), std::make_shared<ExceptionForm>(calendar, suggested));
}

QList<GridRow> SpreadException(const GridRow& entered) {
    const auto dateIn = [&](int column) {
        return QDate::fromString(entered.cells.value(column), CalendarDateFormat);
    };
    const QDate begin = dateIn(ExceptionColumn::Date);
    const QDate end = dateIn(ExceptionColumn::LastDate);
    QList<GridRow> rows{entered};
    rows.first().cells[ExceptionColumn::LastDate].clear();
    for (QDate date = begin.addDays(1); end.isValid() && date <= end; date = date.addDays(1)) {
        GridRow row = rows.first();
        row.key = row.cells[ExceptionColumn::Date] = date.toString(CalendarDateFormat);
        rows.append(row);
    }
    return rows;
}

RowAsker AskTerm(const DateRange& calendar) {
    return AskInForm({.name = "frmCirculation_CalendarTermSettings",
                      .title = Form::tr("Circulation Calendar Term Settings"),
                      .helpContext = 50522,
                      .okName = "cmdSave",
                      .okCaption = Form::tr("&Update"),
                      .newCaption = Form::tr("&Add"),
                      .refusalTitle = Form::tr("Duplicate Term")},
                     TermColumns(), std::make_shared<TermForm>(calendar));
}

} // namespace sysadmin
