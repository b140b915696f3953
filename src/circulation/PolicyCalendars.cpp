#include "circulation/PolicyCalendars.h"

#include "circulation/CalendarForm.h"
#include "core/Prompter.h"
#include "core/data/RequestChannel.h"

#include <QDate>

#include <algorithm>

namespace sysadmin {

namespace {

namespace column {
constexpr int Name = 0;
constexpr int Begin = 1;
constexpr int End = 2;
} // namespace column

QList<GridColumn> DateColumns(const QString& endCaption) {
    return {{.caption = Form::tr("Begin Date"), .width = 80, .tag = "SD", .dateFormat = CalendarDateFormat},
            {.caption = endCaption, .width = 80, .tag = "ED", .dateFormat = CalendarDateFormat},
            {.caption = Form::tr("Status"), .width = 60}};
}

/// A calendar without an end goes on for ever.
QString Ending(const GridRow& row) {
    const QString end = row.cells.value(column::End).trimmed();
    return end.isEmpty() ? QString("99991230") : end;
}

bool Overlap(const GridRow& one, const GridRow& other) {
    return one.cells.value(column::Begin) <= Ending(other) && other.cells.value(column::Begin) <= Ending(one);
}

QString Described(const GridRow& row) {
    return row.cells.value(column::Name) + "  " +
           ShownDate(row.cells.value(column::Begin), CalendarDateFormat) + " - " +
           ShownDate(row.cells.value(column::End), CalendarDateFormat);
}

QString StatusOf(const GridRow& row) {
    const QString today = QDate::currentDate().toString(CalendarDateFormat);
    return Ending(row) < today                      ? Form::tr("Past")
           : row.cells.value(column::Begin) > today ? Form::tr("Future")
                                                    : Form::tr("Current");
}

} // namespace

PolicyCalendarsField::PolicyCalendarsField(Form& form)
    : PickedField(
          form, {.name = "movCalendars"},
          {.availableGrid = "vsfAvailableCalendars",
           .availableCaption = Form::tr("Available"),
           .selectedGrid = "vsfSelectedCalendars",
           .selectedCaption = Form::tr("Selected"),
           .select = "cmdSelectCalendar",
           .selectAll = "cmdSelectAllCalendars",
           .discard = "cmdDiscardCalendar",
           .discardAll = "cmdDiscardAllCalendars"},
          {.more = DateColumns(Form::tr("End Date")), .availableMore = DateColumns(Form::tr("End date"))}) {
    Behaviour().admit = [this](const QList<GridRow>& rows, bool toSelected, Prompter& prompter,
                               QWidget* parent) { return TellOverlaps(rows, toSelected, prompter, parent); };
}

void PolicyCalendarsField::Load(RequestChannel& channel) {
    const auto read = [&](const QString& idTag, const QString& otherTag) {
        QList<GridRow> rows = ReadRows(channel, idTag, {}, {"CN", "SD", "ED"}, otherTag);
        for (GridRow& row : rows)
            row.cells.Own().append(StatusOf(row));
        return rows;
    };
    LoadLists(read("ACI", "SCI"), read("SCI", "ACI"));
}

void PolicyCalendarsField::Put(RequestChannel& channel) const {
    const RowCodes codes;
    const auto put = [&](const QString& list, const QList<GridRow>& rows, const QString& state) {
        channel.PutField(list, QString());
        for (const GridRow& row : rows) {
            channel.PutField("CS", state);
            channel.PutField("SCI", row.key);
        }
    };
    put("A", Lists().Removed(), codes.removed);
    put("S", Lists().Added(), codes.added);
}

// Of several calendars each one is compared with those that are there when its turn comes.
QStringList PolicyCalendarsField::TellOverlaps(const QList<GridRow>& rows, bool toSelected,
                                               Prompter& prompter, QWidget* parent) const {
    QList<GridRow> selected = Lists().Selected();
    QStringList keys;
    QStringList refusals;
    for (const GridRow& row : rows) {
        const auto other = std::find_if(selected.cbegin(), selected.cend(),
                                        [&](const GridRow& each) { return Overlap(row, each); });
        if (!toSelected || other == selected.cend()) {
            keys.append(row.key);
            selected.append(row);
            continue;
        }
        refusals.append(QStringList{Form::tr("Calendar dates for:"), Described(row),
                                    Form::tr("overlap dates for calendar:"), Described(*other),
                                    Form::tr("which is already in the selected list.")}
                            .join("\r\n"));
    }
    if (!refusals.isEmpty())
        prompter.ShowBox(
            parent, {.text = refusals.join("\r\n\r\n"), .title = Form::tr("Overlapping Calendar Dates")});
    return keys;
}

} // namespace sysadmin
