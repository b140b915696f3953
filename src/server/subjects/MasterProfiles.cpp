#include "server/SecurityHolders.h"
#include "server/store/Database.h"
#include "server/subjects/ProfileMembers.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterMasterProfiles(Registry& registry) {
    QList<SubjectField> fields{
        SubjectField::Text("Nm", "name", TextLength).Required().Unique(status::DuplicateName).InList(),
    };
    for (const MasterRight& right : MasterRights())
        fields << SubjectField::Flag(right.tag, right.column);
    registry.AddSubject({
        .table = "master_profiles",
        .area = Area::Security,
        .requests = {.list = "LstMPrf",
                     .get = "GetMPrf",
                     .add = "AddMPrf",
                     .update = "UpdMPrf",
                     .remove = "DelMPrf",
                     .available = "AvlMPrf"},
        .fields = fields,
        .memberships = {ProfileLocations("master_profile_locations"),
                        ProfileOperators("master_profile_operators")},
        .addReply = {"ID", "Nm"},
        .afterPut =
            [](Context& context, const wire::Fields&, qint64, bool) {
                return SecurityHolderRemains(context.database) ? status::Ok : status::LastSecurityRight;
            },
        .checkRemove =
            [](Context& context, qint64 id, const Row&) {
                return SecurityHolderRemains(context.database, id) ? status::Ok : status::LastSecurityRight;
            },
    });
}

} // namespace sysadmin::server
