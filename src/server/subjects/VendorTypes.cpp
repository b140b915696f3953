#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterVendorTypes(Registry& registry) {
    registry.AddSubject({
        .table = "vendor_types",
        .area = Area::Acquisitions,
        .requests = {.list = "LstVenTp", .add = "AddVenTp", .update = "UpdVenTp", .remove = "DelVenTp"},
        .fields =
            {
                SubjectField::Text("Cd", "code", VendorTypeCodeLength)
                    .Required()
                    .Unique(status::DuplicateCode)
                    .InList(),
                SubjectField::Text("Nm", "name", TextLength)
                    .Required()
                    .Unique(status::DuplicateName)
                    .InList(),
            },
        .key = "Cd",
        .originalKey = "OCd",
        .usedBy = {{"vendors", "vendor_type_id", status::InUse}},
    });
    // The vendors themselves are kept by the acquisitions client.
    registry.AddTable({.name = "vendors",
                       .columns = {{.name = "code"}, {.name = "name"}},
                       .uniqueTexts = {{.column = "code"}}});
}

} // namespace sysadmin::server
