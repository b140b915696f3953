#include "server/store/Database.h"
#include "server/subjects/Registrations.h"
#include "server/subjects/circulation/KeyedRows.h"

namespace sysadmin::server {

void RegisterCirculationMiscellaneous(Registry& registry) {
    registry.AddSubject({
        .table = "circulation_miscellaneous",
        .area = Area::Circulation,
        .requests = {.get = "GetCrMsc", .update = "UpdCrMsc"},
        .fields =
            {
                SubjectField::Flag("EF", "emails_fine_notice"),
                SubjectField::Flag("ES", "emails_fine_statement"),
                Count("TB", "short_loan_buffer_minutes").Required(),
                SubjectField::Flag("UDem", "uses_demerits"),
                SubjectField::Flag("DDemDsp", "displays_demerits"),
                SubjectField::Flag("StopFF", "stops_fines_for_claims_returned"),
                SubjectField::Flag("DelPatHistFines", "deletes_patrons_with_historical_fines"),
                SubjectField::Flag("UBPG", "ub_pickup_from_holding_library"),
            },
        .single = true,
    });
    // Whoever maintains patron groups needs to know it.
    registry.AddRead("GetDemerits", Area::AnyOperator, [](Context& context, const wire::Fields&) {
        const QVariant used =
            context.database.FirstValue("SELECT uses_demerits FROM circulation_miscellaneous");
        Answer answer;
        Put(answer.fields, "DemAply", used.toString() == u"Y" ? "Y" : "N");
        return answer;
    });
    // Whether a retrieval system fetches what is kept in automated storage: comes with the installation.
    registry.AddTable({.name = "automated_storage",
                       .columns = {{.name = "only_one", .fallback = "Y", .bookkeeping = true},
                                   {.name = "is_retrieved_automatically", .type = ColumnType::Flag}},
                       .uniqueSets = {{"only_one"}}});
    registry.AddRead("GetAutoRetrieveSys", Area::AnyOperator, [](Context& context, const wire::Fields&) {
        const QVariant is =
            context.database.FirstValue("SELECT is_retrieved_automatically FROM automated_storage");
        Answer answer;
        Put(answer.fields, "AutoRetrieveSys", is.toString() == u"Y" ? "Y" : "N");
        return answer;
    });
}

} // namespace sysadmin::server
