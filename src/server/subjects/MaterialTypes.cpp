#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {} // namespace

void RegisterMaterialTypes(Registry& registry) {
    registry.AddSubject({
        .table = "material_types",
        .area = Area::System,
        .requests = {.list = "LstBF", .get = "GetBF", .add = "AddBF", .update = "UpdBF", .remove = "DelBF"},
        .fields =
            {
                SubjectField::Text("Cd", "code", MaterialCodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("Nm", "name", TextLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
            },
        .key = "Cd",
        .originalKey = "OC",
        .usages = {{"bibliographic records"}},
    });
}

} // namespace sysadmin::server
