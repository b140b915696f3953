#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "wire/Counts.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByCallSlips = 77;
constexpr qint16 UsedByArchivedCallSlips = 78;

bool IsDirection(const QString& value) {
    return value == u"A" || value == u"D";
}

/// The patron groups among which the default one is chosen.
void AddPatronGroups(Context& context, ReplyFields& reply) {
    context.database.Each("SELECT id, name FROM patron_groups ORDER BY id", {}, [&](const ResultRow& row) {
        Put(reply, "AI", row.value(0).toString());
        Put(reply, "AN", row.value(1).toString());
    });
}

} // namespace

void RegisterCatalogueSettings(Registry& registry) {
    registry.AddSubject({
        .table = "call_slip_messages",
        .area = Area::System,
        .requests = {.list = "LstCSMsg",
                     .get = "GetCSMsg",
                     .add = "AddCSMsg",
                     .update = "UpdCSMsg",
                     .remove = "DelCSMsg"},
        .fields =
            {
                SubjectField::Flag("S", "suspends").InList(),
                SubjectField::Text("Cd", "code", TextLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("Nm", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
            },
        .usages = {{"call slips", UsedByCallSlips}, {"archived call slips", UsedByArchivedCallSlips}},
        .addReply = {"ID", "Cd"},
    });
    // Read by a handler of its own: the groups are offered before anything is stored, too.
    registry.AddSubject({
        .table = "catalogue_registration",
        .area = Area::System,
        .requests = {.update = "UpdOReg"},
        .fields =
            {
                SubjectField::Reference("G", "default_group_id", "patron_groups", OnRemoval::Clear)
                    .Required(),
                SubjectField::Whole("P", "purge_days", 0, wire::MostCount),
            },
        .single = true,
    });
    registry.AddRead("GetOReg", Area::System, [](Context& context, const wire::Fields&) {
        const auto stored =
            context.database.FirstRow("SELECT default_group_id, purge_days FROM catalogue_registration");
        Answer answer;
        Put(answer.fields, "G", stored ? stored->value(0).toString() : QString());
        AddPatronGroups(context, answer.fields);
        Put(answer.fields, "P", stored ? stored->value(1).toString() : QString());
        return answer;
    });
    registry.About("GetOReg", {"catalogue_registration"});
    registry.AddSubject({
        .table = "catalogue_miscellaneous",
        .area = Area::System,
        .requests = {.get = "GetOMsc", .update = "UpdOMsc"},
        .fields =
            {
                SubjectField::Flag("I", "requires_call_slip_item"),
                SubjectField::Text("S", "item_sort", 1).Checked(IsDirection).Default("A"),
                SubjectField::Flag("H", "allows_on_shelf_holds"),
                SubjectField::Whole("A", "booking_days", 0, wire::MostCount),
                SubjectField::Whole("SCR", "status_days", 0, wire::MostCount),
                SubjectField::Flag("ALLOWCSLPCITDB", "allows_citation_call_slips"),
            },
        .single = true,
    });
}

} // namespace sysadmin::server
