#include "server/subjects/PostalFields.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterDefaultAddress(Registry& registry) {
    registry.AddSubject({
        .table = "default_address",
        .area = Area::System,
        .requests = {.get = "GetDAdr", .add = "AddDAdr", .update = "UpdDAdr"},
        .fields = QList<SubjectField>{SubjectField::Text("LNm", "library_name", NameLength).Required(),
                                      SubjectField::Text("CCm", "contact", NameLength)} +
                  PostalFields(),
        .single = true,
    });
}

} // namespace sysadmin::server
