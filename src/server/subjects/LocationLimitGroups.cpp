#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterLocationLimitGroups(Registry& registry) {
    registry.AddSubject({
        .table = "location_limit_groups",
        .area = Area::System,
        .requests = {.list = "LstLmt",
                     .get = "GetLmt",
                     .add = "AddLmt",
                     .update = "UpdLmt",
                     .remove = "DelLmt",
                     .available = "AvlLmt"},
        .fields =
            {
                SubjectField::Text("C", "code", CodeLength).Required().Unique(status::DuplicateCode).InList(),
                SubjectField::Text("N", "name", NameLength).Required().Unique(status::DuplicateName).InList(),
                SubjectField::Flag("O", "suppressed"),
            },
        .usages = {{"saved searches", status::InUse}},
        .memberships = {{.table = "location_limit_group_members",
                         .ownerColumn = "group_id",
                         .memberTable = "locations",
                         .memberColumn = "location_id"}},
        .addReply = {"ID", "C"},
    });
}

} // namespace sysadmin::server
