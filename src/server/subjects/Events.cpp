#include "wire/Events.h"
#include "server/DateTexts.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace events = wire::events;

namespace {

bool IsEventKind(const QString& value) {
    return value == events::kind::EachYear || value == events::kind::Weekday ||
           value == events::kind::FromEaster || value == events::kind::Once;
}

/// There is a date of which the rule speaks, and an open day has hours.
bool IsPossibleEvent(const Row& event) {
    const auto number = [&](const char* column) { return event[column].toInt(); };
    const auto text = [&](const char* column) { return event[column].toString(); };
    const events::Rule rule{.kind = text("kind"),
                            .month = number("month"),
                            .day = number("day"),
                            .week = number("week"),
                            .weekday = number("weekday"),
                            .fromEaster = number("days_from_easter"),
                            .date = QDate::fromString(text("date"), events::DateFormat)};
    const bool hasHours = !text("open_time").isEmpty() && !text("close_time").isEmpty();
    return events::IsPossible(rule) && (text("is_open") != u"Y" || hasHours);
}

} // namespace

void RegisterEvents(Registry& registry) {
    registry.AddSubject({
        .table = "events",
        .requests =
            {.list = "LstEvt", .get = "GetEvt", .add = "AddEvt", .update = "UpdEvt", .remove = "DelEvt"},
        .fields =
            {
                SubjectField::Text("Nm", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
                SubjectField::Text("K", "kind", 1).Required().Checked(IsEventKind).InList(),
                SubjectField::Whole("M", "month", 1, 12).InList(),
                SubjectField::Whole("Dy", "day", 1, 31).InList(),
                SubjectField::Whole("Wk", "week", 1, events::LastWeek).InList(),
                SubjectField::Whole("Wd", "weekday", 0, 6).InList(),
                SubjectField::Whole("Of", "days_from_easter", -events::MostFromEaster, events::MostFromEaster)
                    .InList(),
                SubjectField::Text("Dt", "date", 8).Checked(IsDate).InList(),
                SubjectField::Flag("O", "is_open").InList(),
                SubjectField::Text("OTm", "open_time", 5).Checked(IsTimeOfDay).InList(),
                SubjectField::Text("CTm", "close_time", 5).Checked(IsTimeOfDay).InList(),
            },
        .listArea = Area::AnyOperator,
        .addReply = {"ID"},
        .rules = {{IsPossibleEvent, "There is no such day, or it is open without hours."}},
    });
}

} // namespace sysadmin::server
