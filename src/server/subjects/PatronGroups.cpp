#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByPatronBarcodes = 85;
constexpr qint16 UsedByRemotePolicies = 96;
constexpr qint16 UsedByTransactions = 102;
constexpr qint16 UsedByMatrix = 103;

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
                SubjectField::Reference("CID", "cluster_id", "clusters").Required().WriteOnly(),
                SubjectField::Text("Cd", "code", CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode, "cluster_id")
                    .InList(),
                // Real libraries give several groups the same name.
                SubjectField::Text("Nm", "name", NameLength).Required().InList(),
                SubjectField::Text("Dsp", "display_name", NameLength),
                SubjectField::Whole("MaxDem", "most_demerits"),
                SubjectField::Whole("SusDays", "suspension_days"),
                SubjectField::Flag("DemAply", "demerits_apply"),
                SubjectField::Flag("ChrgdStatDsply", "shows_charged_messages"),
                SubjectField::Flag("PatChrgLmtAply", "limit_applies"),
                SubjectField::Whole("PatChrgLmt", "charge_limit"),
            },
        .listArea = Area::AnyOperator,
        .usedBy = {{"circulation_matrix", "patron_group_id", UsedByMatrix}},
        .usages = {{"patron barcodes", UsedByPatronBarcodes},
                   {"remote patron policies", UsedByRemotePolicies},
                   {"circulation transactions", UsedByTransactions}},
        .addReply = {"ID"},
        .listFilters = {{"CID", "cluster_id"}},
    });
}

} // namespace sysadmin::server
