#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByPatronBarcodes = 85;
constexpr qint16 UsedByRemotePolicies = 96;
constexpr qint16 UsedByTransactions = 102;

} // namespace

void RegisterPatronGroups(Registry& registry) {
    registry.AddSubject({
        .table = "patron_groups",
        .area = Area::PatronGroups,
        .requests = {.list = "LstPatGp",
                     .get = "GetPatGp",
                     .add = "AddPatGp",
                     .update = "UpdPatGp",
                     .remove = "DelPatGp"},
        .fields =
            {
                Field::Reference("CID", "cluster_id", "clusters").Required().WriteOnly(),
                Field::Text("Cd", "code", CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode, "cluster_id")
                    .InList(),
                // Real libraries give several groups the same name.
                Field::Text("Nm", "name", NameLength).Required().InList(),
                Field::Text("Dsp", "display_name", NameLength),
                Field::Whole("MaxDem", "most_demerits"),
                Field::Whole("SusDays", "suspension_days"),
                Field::Flag("DemAply", "demerits_apply"),
                Field::Flag("ChrgdStatDsply", "shows_charged_messages"),
                Field::Flag("PatChrgLmtAply", "limit_applies"),
                Field::Whole("PatChrgLmt", "charge_limit"),
            },
        .listArea = Area::AnyOperator,
        .usages = {{"patron barcodes", UsedByPatronBarcodes},
                   {"remote patron policies", UsedByRemotePolicies},
                   {"circulation transactions", UsedByTransactions}},
        .addReply = {"ID"},
        .listFilters = {{"CID", "cluster_id"}},
    });
}

} // namespace sysadmin::server
