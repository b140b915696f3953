#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr qint16 UsedByCirculationPolicies = 14;
constexpr qint16 UsedByItems = 84;
constexpr qint16 UsedByAcquisitionsPolicy = 120;

} // namespace

void RegisterItemTypes(Registry& registry) {
    registry.AddSubject({
        .table = "item_types",
        .area = Area::System,
        .requests = {.list = "LstItmTp",
                     .get = "GetItmTp",
                     .add = "AddItmTp",
                     .update = "UpdItmTp",
                     .remove = "DelItmTp"},
        .fields =
            {
                SubjectField::Text("Cd", "code", CodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("Nm", "name", NameLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
                SubjectField::Text("Dsp", "display_name", NameLength),
            },
        .listArea = Area::AnyOperator,
        .usedBy = {{"circulation_matrix", "item_type_id", UsedByCirculationPolicies},
                   {"circulation_policy_locations", "default_item_type_id", UsedByCirculationPolicies},
                   {"call_slip_rules", "item_type_id", status::InUse},
                   {"call_slip_rules", "temporary_item_type_id", status::InUse},
                   {"call_slip_queues", "default_item_type_id", status::InUse},
                   {"acquisitions_policy_locations", "order_item_type_id", UsedByAcquisitionsPolicy},
                   {"acquisitions_policy_locations", "receive_item_type_id", UsedByAcquisitionsPolicy},
                   {"cataloging_policy_groups", "item_type_id"},
                   {"import_mappings", "item_type_id"}},
        .usages = {{"items", UsedByItems}},
        .addReply = {"ID", "Cd"},
    });
}

} // namespace sysadmin::server
