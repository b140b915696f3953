#include "server/DateTexts.h"
#include "server/SubjectRequests.h"
#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/StoredRules.h"
#include "server/subjects/circulation/CalendarDays.h"
#include "server/subjects/circulation/CirculationPolicies.h"

#include <algorithm>

// Circulation calendars: opening hours by weekday, exception dates and terms.

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByGroup = 93;
constexpr qint16 OverlapsInGroup = 56;
constexpr qint16 DateOutsideCalendar = 123;
constexpr qint64 MostLeadDays = 366;

const SubjectField& ExceptionDate() {
    static const SubjectField field = SubjectField::Text("ExDt", "date", 8).Required().Checked(IsDate);
    return field;
}

const SubjectField& TermEnd() {
    static const SubjectField field = SubjectField::Text("ETrm", "date", 8).Required().Checked(IsDate);
    return field;
}

/// The dates of one kind that a calendar has; of each one row.
struct Dates {
    QString table;
    SubjectField date;
    QList<SubjectField> others;

    QList<SubjectField> Fields() const { return QList<SubjectField>{date} + others; }
};

const Dates& Exceptions() {
    static const Dates dates{"calendar_exceptions", ExceptionDate(), ExceptionDay().All()};
    return dates;
}

const Dates& Terms() {
    static const Dates dates{"calendar_terms",
                             TermEnd(),
                             {SubjectField::Whole("LDay", "lead_days", 0, MostLeadDays).Default("0")}};
    return dates;
}

using RowsByDate = QMap<QString, Row>;

/// The rows that a request carries. 3 when one is not in order or a date comes twice.
qint16 ReadDates(Context& context, const Dates& dates, const wire::Fields& request, RowsByDate& rows) {
    QStringList tags;
    for (const SubjectField& field : dates.Fields())
        tags << field.tag;
    QList<wire::Fields> sent;
    for (const wire::Field& field : request) {
        if (field.tag == dates.date.tag)
            sent.append(wire::Fields());
        if (!sent.isEmpty() && tags.contains(field.tag))
            sent.last().append(field);
    }
    for (const wire::Fields& one : sent) {
        Row row;
        if (const qint16 refused = ReadFields(context, dates.Fields(), one, true, row))
            return refused;
        const QString date = row["date"].toString();
        const bool inOrder = dates.table != Exceptions().table || IsDayInOrder(row, ExceptionDay());
        if (!inOrder || rows.contains(date))
            return status::ColumnError;
        rows.insert(date, row);
    }
    return status::Ok;
}

/// The rows that a calendar has, each with its `id`.
RowsByDate StoredDates(Context& context, const Dates& dates, qint64 calendar) {
    RowsByDate rows;
    QStringList columns;
    for (const SubjectField& field : dates.Fields())
        columns << field.column;
    context.database.Each("SELECT id, " + columns.join(", ") + " FROM " + dates.table +
                              " WHERE calendar_id=?",
                          {calendar}, [&](const ResultRow& result) {
                              Row row{{"id", result.value(0)}};
                              for (qsizetype i = 0; i < columns.size(); ++i)
                                  row.insert(columns[i], result.value(int(i) + 1));
                              rows.insert(row["date"].toString(), row);
                          });
    return rows;
}

/// Makes these the calendar's rows.
void StoreDates(Context& context, const Dates& dates, qint64 calendar, const RowsByDate& wanted) {
    const RowsByDate stored = StoredDates(context, dates, calendar);
    for (auto row = stored.begin(); row != stored.end(); ++row)
        if (!wanted.contains(row.key()))
            context.records.Remove(dates.table, (*row)["id"].toLongLong());
    for (Row row : wanted) {
        const QVariant id = stored.value(row["date"].toString()).value("id");
        row.remove("id");
        row.insert("calendar_id", calendar);
        if (id.isValid())
            context.records.Update(dates.table, id.toLongLong(), row);
        else
            context.records.Insert(dates.table, row);
    }
}

/// A calendar as it is to be.
struct Calendar {
    Row row;
    RowsByDate exceptions;
    RowsByDate terms;
};

/// What the calendar's own dates allow: 3 when the end is before the begin or a weekday is not in order, 123
/// for a date outside, 56 when a policy group that has it would have two calendars for a day.
qint16 CheckCalendar(Context& context, qint64 id, const Calendar& calendar) {
    const QString begin = calendar.row["start_date"].toString();
    const QString end = ComparableEnd(calendar.row["end_date"].toString());
    if (end < begin || !IsWeekInOrder(calendar.row))
        return status::ColumnError;
    QStringList dates = calendar.exceptions.keys() + calendar.terms.keys();
    if (const QString due = calendar.row["fixed_due_date"].toString(); !due.isEmpty())
        dates << due;
    if (std::any_of(dates.begin(), dates.end(),
                    [&](const QString& date) { return date < begin || date > end; }))
        return DateOutsideCalendar;
    const CalendarDates own{id, begin, end};
    for (const QVariant& group : context.database.FirstColumn(
             "SELECT group_id FROM circulation_policy_calendars WHERE calendar_id=?", {id}))
        for (const CalendarDates& other : CalendarsOf(context, group.toLongLong()))
            if (other.id != id && other.Overlaps(own))
                return OverlapsInGroup;
    return status::Ok;
}

bool IsCalendarInOrder(const Row& calendar) {
    return ComparableEnd(calendar["end_date"].toString()) >= calendar["start_date"].toString() &&
           IsWeekInOrder(calendar);
}

StoredRule DatesAreInside(const Dates& dates) {
    return FindsNone("SELECT d.id FROM " + dates.table +
                         " d JOIN calendars c ON c.id=d.calendar_id WHERE d.date<c.start_date OR "
                         "(c.end_date<>'' AND d.date>c.end_date)",
                     "The date is outside of its calendar.", {"calendars"});
}

bool Carries(const wire::Fields& request, const QString& tag) {
    return std::any_of(request.begin(), request.end(),
                       [&](const wire::Field& field) { return field.tag == tag; });
}

/// "AddCal" and "UpdCal": terms are all that the request carries, exceptions too where it says "ExRq".
qint16 StoreCalendarLists(Context& context, const wire::Fields& request, qint64 id, bool) {
    Calendar calendar{*context.records.Find("calendars", id), {}, {}};
    if (Carries(request, "ExRq")) {
        if (const qint16 refused = ReadDates(context, Exceptions(), request, calendar.exceptions))
            return refused;
    } else {
        calendar.exceptions = StoredDates(context, Exceptions(), id);
    }
    if (const qint16 refused = ReadDates(context, Terms(), request, calendar.terms))
        return refused;
    if (const qint16 refused = CheckCalendar(context, id, calendar))
        return refused;
    StoreDates(context, Exceptions(), id, calendar.exceptions);
    StoreDates(context, Terms(), id, calendar.terms);
    return status::Ok;
}

void AddToCalendar(Context& context, qint64 id, ReplyFields& reply) {
    for (const Dates* dates : {&Exceptions(), &Terms()})
        for (const Row& row : StoredDates(context, *dates, id))
            for (const SubjectField& field : dates->Fields())
                Put(reply, field.tag, row[field.column].toString());
}

/// What went wrong with one calendar of several, as people read it.
QString ErrorText(qint16 status) {
    switch (status) {
    case UsedByGroup:
        return "This calendar cannot be deleted while it is assigned to a Circ Policy Group.";
    case OverlapsInGroup:
        return "This calendar cannot be saved.  It is being used in more than one Circulation Policy Group "
               "with dates which overlap.";
    case DateOutsideCalendar:
        return "This calendar cannot be saved.  A date is outside the calendar's coverage dates.";
    default:
        return "The end of this calendar would be before its begin.";
    }
}

/// Does the same with several calendars and says with which of them it could not be done. 5, and nothing
/// done, when one is not there.
Answer ForEach(Context& context, const wire::Fields& request,
               const std::function<qint16(qint64 id, const Row& row)>& act) {
    const QString cluster = wire::FirstValue(request, "CID");
    QList<QPair<qint64, Row>> calendars;
    for (const wire::Field& field : request) {
        if (field.tag != u"ID")
            continue;
        bool isNumber = false;
        const qint64 id = field.value.toLongLong(&isNumber);
        const auto row = isNumber ? context.records.Find("calendars", id) : std::nullopt;
        if (!row || (!cluster.isEmpty() && (*row)["cluster_id"].toString() != cluster))
            return {status::NotFound};
        calendars.append({id, *row});
    }
    Answer answer;
    for (const auto& [id, row] : calendars)
        if (const qint16 failed = act(id, row)) {
            Put(answer.fields, "Nm", row["name"].toString());
            Put(answer.fields, "Err", ErrorText(failed));
        }
    return answer;
}

Answer RemoveSeveral(Context& context, const wire::Fields& request) {
    return ForEach(context, request, [&](qint64 id, const Row&) {
        if (context.records.IdWhere("circulation_policy_calendars", "calendar_id", id))
            return UsedByGroup;
        context.records.Remove("calendars", id);
        return qint16(status::Ok);
    });
}

QList<SubjectField> DateFields() {
    const auto date = [](const QString& tag, const QString& column) {
        return SubjectField::Text(tag, column, 8).Checked(IsDate);
    };
    return {date("StDt", "start_date").Required(), date("EDt", "end_date"), date("FDDt", "fixed_due_date")};
}

/// "UpdMultCal": dates that are not empty replace the calendars' own; exceptions and terms replace those on
/// the same dates and join the others.
Answer UpdateSeveral(Context& context, const wire::Fields& request) {
    wire::Fields sent;
    for (const wire::Field& field : request)
        if (!field.value.isEmpty())
            sent.append(field);
    Row changes;
    RowsByDate exceptions;
    RowsByDate terms;
    if (ReadFields(context, DateFields(), sent, false, changes) ||
        ReadDates(context, Exceptions(), request, exceptions) || ReadDates(context, Terms(), request, terms))
        return {status::ColumnError};
    const auto merge = [](RowsByDate all, const RowsByDate& others) {
        for (auto row = others.begin(); row != others.end(); ++row)
            all.insert(row.key(), *row);
        return all;
    };
    return ForEach(context, request, [&](qint64 id, const Row& row) {
        Calendar calendar{row, merge(StoredDates(context, Exceptions(), id), exceptions),
                          merge(StoredDates(context, Terms(), id), terms)};
        calendar.row.insert(changes);
        if (const qint16 refused = CheckCalendar(context, id, calendar))
            return refused;
        context.records.Update("calendars", id, changes);
        StoreDates(context, Exceptions(), id, calendar.exceptions);
        StoreDates(context, Terms(), id, calendar.terms);
        return qint16(status::Ok);
    });
}

} // namespace

void RegisterCalendars(Registry& registry) {
    QList<SubjectField> fields{
        SubjectField::Reference("CID", "cluster_id", "clusters").Required().WriteOnly(),
        SubjectField::Text("Nm", "name", NameLength)
            .Required()
            .Unique(status::DuplicateName, "cluster_id")
            .InList()};
    fields += DateFields();
    for (const DayFields& day : Weekdays())
        fields += day.All();
    registry.AddSubject({
        .table = "calendars",
        .area = Area::Circulation,
        .requests =
            {.list = "LstCal", .get = "GetCal", .add = "AddCal", .update = "UpdCal", .remove = "DelCal"},
        .fields = fields,
        .usedBy = {{"circulation_policy_calendars", "calendar_id", UsedByGroup}},
        .addReply = {"ID"},
        .within = ListFilter{"CID", "cluster_id"},
        .listFilters = {{"CID", "cluster_id"}},
        .afterPut = StoreCalendarLists,
        .addToGet = AddToCalendar,
    });
    for (const Dates* dates : {&Exceptions(), &Terms()}) {
        Table table{.name = dates->table,
                    .columns = {{.name = "calendar_id",
                                 .type = ColumnType::Reference,
                                 .target = "calendars",
                                 .onRemoval = OnRemoval::RemoveToo}},
                    .uniqueSets = {{"calendar_id", "date"}},
                    .owner = "calendar_id",
                    .storedRules = {DatesAreInside(*dates)}};
        if (dates == &Exceptions())
            table.rules = {{[](const Row& row) { return IsDayInOrder(row, ExceptionDay()); },
                            "The day's hours are not in order."}};
        for (const SubjectField& field : dates->Fields())
            table.columns << field.StoredAs();
        registry.AddTable(table);
    }
    registry.AddTable(
        {.name = "calendars",
         .rules = {{IsCalendarInOrder, "The calendar ends before it begins, or a weekday's hours "
                                       "are not in order."}}});
    registry.AddTable({.name = "circulation_policy_calendars",
                       .storedRules = {FindsNone(
                           "SELECT a.id FROM circulation_policy_calendars a "
                           "JOIN circulation_policy_calendars b ON b.group_id=a.group_id AND b.id<a.id "
                           "JOIN calendars c ON c.id=a.calendar_id JOIN calendars d ON d.id=b.calendar_id "
                           "WHERE (d.end_date='' OR c.start_date<=d.end_date) AND (c.end_date='' OR "
                           "d.start_date<=c.end_date)",
                           "The group would have two calendars for a day.", {"calendars"})}});
    registry.AddChange("DelMultCal", Area::Circulation, RemoveSeveral);
    registry.AddChange("UpdMultCal", Area::Circulation, UpdateSeveral);
    for (const char* request : {"DelMultCal", "UpdMultCal"})
        registry.AboutSeveral(request, "calendars", "ID");
}

} // namespace sysadmin::server
