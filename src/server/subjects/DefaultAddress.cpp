#include "server/SampleWriter.h"
#include "server/subjects/PostalFields.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {} // namespace

void RegisterDefaultAddress(Registry& registry) {
    registry.AddSubject({
        .table = "default_address",
        .area = Area::System,
        .requests = {.get = "GetDAdr", .add = "AddDAdr", .update = "UpdDAdr"},
        .fields = QList<Field>{Field::Text("LNm", "library_name", NameLength).Required(),
                               Field::Text("CCm", "contact", NameLength)} +
                  PostalFields(),
        .single = true,
    });
    registry.AddSample("default address", [](SampleWriter& sample) {
        sample.Add("default_address", {{"only_one", "Y"},
                                       {"library_name", "University Libraries"},
                                       {"contact", "Library Systems Office"},
                                       {"email", "systems@library.example.edu"},
                                       {"line1", "Main Library"},
                                       {"line2", "1 Library Walk"},
                                       {"city", "Eastfield"},
                                       {"state", "NY"},
                                       {"postal_code", "12345"},
                                       {"country", "USA"},
                                       {"standard_number", "555-0100"}});
    });
}

} // namespace sysadmin::server
