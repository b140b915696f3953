#include "server/SampleWriter.h"
#include "server/subjects/Registrations.h"

namespace sysadmin::server {

namespace {

constexpr int LineLength = 60;

} // namespace

void RegisterDefaultAddress(Registry& registry) {
    registry.AddSubject({
        .table = "default_address",
        .area = Area::System,
        .requests = {.get = "GetDAdr", .add = "AddDAdr", .update = "UpdDAdr"},
        .fields =
            {
                Field::Text("LNm", "library_name", NameLength).Required(),
                Field::Text("CCm", "contact", NameLength),
                Field::Text("EMl", "email", NameLength),
                Field::Text("Adr1", "line1", LineLength),
                Field::Text("Adr2", "line2", LineLength),
                Field::Text("Adr3", "line3", LineLength),
                Field::Text("Adr4", "line4", LineLength),
                Field::Text("Adr5", "line5", LineLength),
                Field::Text("City", "city", LineLength),
                Field::Text("St", "state", 40),
                Field::Text("Zip", "postal_code", 20),
                Field::Text("Cty", "country", LineLength),
                Field::Text("SAN", "standard_number", 20),
            },
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
                                       {"state", "CA"},
                                       {"postal_code", "94305"},
                                       {"country", "USA"},
                                       {"standard_number", "555-0100"}});
    });
}

} // namespace sysadmin::server
