#include "server/subjects/Registrations.h"

// The cataloging policy groups: what locations need to know of them.

namespace sysadmin::server {

void RegisterPolicyGroups(Registry& registry) {
    registry.AddTable({.name = "cataloging_policy_groups",
                       .columns = {{.name = "name"}},
                       .uniqueTexts = {{.column = "name"}}});
    // A location belongs to one group at the most.
    registry.AddTable(
        {.name = "cataloging_policy_locations",
         .columns = {{.name = "group_id",
                      .type = ColumnType::Reference,
                      .target = "cataloging_policy_groups",
                      .onRemoval = OnRemoval::RemoveToo},
                     {.name = "location_id", .type = ColumnType::Reference, .target = "locations"}},
         .uniqueSets = {{"location_id"}}});
}

} // namespace sysadmin::server
