#include "system/frmSystem_ApplyEvents.h"

#include "core/Application.h"
#include "core/data/RequestChannel.h"
#include "framework/FormDialog.h"
#include "framework/Utility.h"
#include "framework/forms/ReadList.h"
#include "framework/forms/ShownDate.h"
#include "wire/Status.h"

#include <QLocale>

#include <algorithm>

namespace sysadmin {

namespace {

constexpr int YearsWithoutEnd = 2;
constexpr int HelpTopic = 50818;

namespace column {
constexpr int Apply = 0;
} // namespace column

QString InWords(const CalendarDays::Day& day) {
    return day.isOpen ? ShownTime(day.openTime) + " - " + ShownTime(day.closeTime) : Form::tr("Closed");
}

struct ApplyEventsForm : Form {
    RowsField vsfProposed{*this,
                          {.name = "vsfProposed", .accessible = tr("Exception dates that the events mean")},
                          {{.caption = "", .width = 40, .yesNo = true},
                           {.caption = tr("Calendar"), .width = 220},
                           {.caption = tr("Date"), .width = 190, .dateFormat = wire::events::DateFormat},
                           {.caption = tr("Event"), .width = 180},
                           {.caption = tr("Hours"), .width = 120},
                           {.caption = tr("Instead Of")}},
                          {.edits = {{column::Apply, {.kind = CellEdit::Kind::Check}}}, .several = true}};

    void MarkAll(const QString& mark) {
        QStringList keys;
        for (const GridRow& row : vsfProposed.Rows())
            keys.append(row.key);
        vsfProposed.SetCells(keys, column::Apply, mark);
    }
};

CalendarDays ReadCalendar(RequestChannel& channel, CalendarDays calendar) {
    const auto date = [&](const QString& tag) {
        return QDate::fromString(channel.GetField(tag), wire::events::DateFormat);
    };
    calendar.first = date("StDt");
    calendar.last = date("EDt");
    while (channel.NextRecord("ExDt")) {
        const bool isOpen = channel.GetFlag("ExOpn");
        calendar.exceptions.insert(date("ExDt"), isOpen ? CalendarDays::Day{true, channel.GetField("ExOTm"),
                                                                            channel.GetField("ExCTm")}
                                                        : CalendarDays::Day());
    }
    return calendar;
}

/// The calendars of all clusters; none after a failure, which is reported.
std::optional<QList<CalendarDays>> ReadCalendars(Application& application) {
    RequestChannel& channel = application.channel;
    QList<CalendarDays> calendars;
    for (const auto& [id, cluster] : application.clusters) {
        channel.PutField("CID", id);
        if (const qint16 status = channel.SendRequest("LstCal"); status != wire::status::Ok) {
            application.ReportRequestFailure(status, "Load Circulation Calendars", Form::tr("Event"));
            return {};
        }
        const QString whose = application.clusters.Count() > 1 ? ", " + cluster.sClusterName : QString();
        while (channel.NextRecord("ID"))
            calendars.append({.id = channel.GetField("ID"),
                              .clusterId = id,
                              .name = channel.GetField("Nm") + whose,
                              .first = {},
                              .last = {},
                              .exceptions = {}});
    }
    for (CalendarDays& calendar : calendars) {
        channel.PutField("ID", calendar.id);
        channel.PutField("CID", calendar.clusterId);
        if (const qint16 status = channel.SendRequest("GetCal"); status != wire::status::Ok) {
            application.ReportRequestFailure(status, "Edit Circulation Calendars", Form::tr("Event"));
            return {};
        }
        calendar = ReadCalendar(channel, calendar);
    }
    return calendars;
}

/// Writes the exceptions into one calendar; what it refuses is added to `failures`, a line each. False after
/// a failure of the request, which is reported.
bool Write(Application& application, const CalendarDays& calendar, const QList<ProposedException>& chosen,
           QStringList& failures) {
    RequestChannel& channel = application.channel;
    channel.PutField("CID", calendar.clusterId);
    channel.PutField("ID", calendar.id);
    for (const char* unchanged : {"StDt", "EDt", "FDDt"})
        channel.PutField(unchanged, {});
    channel.PutField("ExRq", "Y");
    for (const ProposedException& exception : chosen) {
        channel.PutField("ExDt", exception.date.toString(wire::events::DateFormat));
        channel.PutField("ExOpn", exception.day.isOpen ? "Y" : "N");
        channel.PutField("ExOTm", exception.day.openTime);
        channel.PutField("ExCTm", exception.day.closeTime);
        channel.PutField("ExDTm", {});
        channel.PutField("ExETm", {});
    }
    if (const qint16 status = channel.SendRequest("UpdMultCal"); status != wire::status::Ok) {
        application.ReportRequestFailure(status, "Save Circulation Calendar", Form::tr("Event"));
        return false;
    }
    while (channel.NextRecord("Nm"))
        failures.append(channel.GetField("Nm") + ": " + channel.GetField("Err"));
    return true;
}

} // namespace

QList<ProposedException> ProposeExceptions(const CalendarDays& calendar, const QList<Event>& events,
                                           QDate from) {
    const QDate first = qMax(calendar.first, from);
    const QDate last = calendar.last.isValid() ? calendar.last : from.addYears(YearsWithoutEnd);
    QList<ProposedException> proposed;
    for (const Event& event : events) {
        const CalendarDays::Day day =
            event.isOpen ? CalendarDays::Day{true, event.openTime, event.closeTime} : CalendarDays::Day();
        for (const QDate& date : wire::events::DatesBetween(event.rule, first, last)) {
            const auto there = calendar.exceptions.constFind(date);
            if (there == calendar.exceptions.constEnd())
                proposed.append({calendar.id, event.name, date, day, {}});
            else if (*there != day)
                proposed.append({calendar.id, event.name, date, day, *there});
        }
    }
    std::stable_sort(proposed.begin(), proposed.end(),
                     [](const auto& a, const auto& b) { return a.date < b.date; });
    // Of two events on one day the second is a clash, or says the same once more.
    for (qsizetype i = 1; i < proposed.size();) {
        const ProposedException& before = proposed[i - 1];
        if (before.date != proposed[i].date) {
            ++i;
        } else if (before.day == proposed[i].day) {
            proposed[i - 1].event += ", " + proposed[i].event;
            proposed.removeAt(i);
        } else {
            proposed[i].now = before.day;
            ++i;
        }
    }
    return proposed;
}

bool OpenApplyEvents(Application& application, QWidget* parent) {
    QList<Event> events;
    if (const qint16 status = ReadEvents(application.channel, events); status != wire::status::Ok) {
        application.ReportRequestFailure(status, "Load System Events", Form::tr("Event"));
        return false;
    }
    const auto calendars = ReadCalendars(application);
    if (!calendars)
        return false;
    QHash<QString, ProposedException> byKey;
    QList<GridRow> rows;
    for (const CalendarDays& calendar : *calendars)
        for (const ProposedException& one : ProposeExceptions(calendar, events, QDate::currentDate())) {
            const QString key = QString::number(rows.size());
            byKey.insert(key, one);
            rows.append({key,
                         {one.now ? "N" : "Y", calendar.name, one.date.toString(wire::events::DateFormat),
                          one.event, InWords(one.day), one.now ? InWords(*one.now) : QString()},
                         {}});
        }
    if (rows.isEmpty()) {
        application.prompter.ShowBox(parent,
                                     {.text = Form::tr("All calendars have the dates of all events already."),
                                      .icon = Box::Icon::Information});
        return false;
    }
    ApplyEventsForm form;
    form.vsfProposed.SetStoredRows(rows);
    FormDialog dialog(
        application.prompter, form,
        Below(
            {Note(Form::tr("The chosen dates become exceptions of the calendars. What stands "
                           "on a date already is replaced only where you choose it.")),
             form.vsfProposed,
             Beside({Button("cmdSelectAll", Form::tr("Select &All"), [&form] { form.MarkAll("Y"); }),
                     Button("cmdUnselectAll", Form::tr("&Unselect All"), [&form] { form.MarkAll("N"); })})}),
        {.name = "frmSystem_ApplyEvents",
         .title = Form::tr("Apply Events to Calendars"),
         .helpContext = HelpTopic,
         .okCaption = Form::tr("A&pply")},
        parent);
    dialog.resize(900, 560);
    if (!application.prompter.RunDialog(dialog))
        return false;
    bool written = false;
    QStringList failures;
    for (const CalendarDays& calendar : *calendars) {
        QList<ProposedException> chosen;
        for (const GridRow& row : form.vsfProposed.Rows())
            if (const ProposedException& one = byKey[row.key];
                row.cells[column::Apply] == u"Y" && one.calendarId == calendar.id)
                chosen.append(one);
        if (chosen.isEmpty())
            continue;
        if (!Write(application, calendar, chosen, failures))
            break;
        written = true;
    }
    if (!failures.isEmpty())
        application.prompter.ShowBox(parent, {.text = failures.join("\r\n")});
    if (written)
        emit application.notices.SubjectChanged("Cal");
    return written;
}

} // namespace sysadmin
