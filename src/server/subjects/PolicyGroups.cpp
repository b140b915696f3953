#include "server/subjects/Registrations.h"

// The acquisitions and cataloging policy groups: what locations need to know of them.

namespace sysadmin::server {

namespace {

Table GroupTable(const QString& kind) {
    return {
        .name = kind + "_policy_groups", .columns = {{.name = "name"}}, .uniqueTexts = {{.column = "name"}}};
}

/// A location belongs to one group of each kind at the most.
Table GroupLocations(const QString& kind) {
    return {.name = kind + "_policy_locations",
            .columns = {{.name = "group_id",
                         .type = ColumnType::Reference,
                         .target = kind + "_policy_groups",
                         .onRemoval = OnRemoval::RemoveToo},
                        {.name = "location_id", .type = ColumnType::Reference, .target = "locations"}},
            .uniqueSets = {{"location_id"}}};
}

} // namespace

void RegisterPolicyGroups(Registry& registry) {
    for (const char* kind : {"acquisitions", "cataloging"}) {
        registry.AddTable(GroupTable(kind));
        registry.AddTable(GroupLocations(kind));
    }
}

} // namespace sysadmin::server
