#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterSystemMiscellaneous(Registry& registry) {
    registry.AddSubject({
        .table = "system_miscellaneous",
        .area = Area::System,
        .requests = {.get = "GetMsc", .update = "UpdMsc"},
        .fields =
            {
                Field::Flag("RP", "keeps_circulation_patrons"),
                Field::Flag("MP", "keeps_booking_patrons"),
                Field::Flag("D", "keeps_distribution_patrons"),
                Field::Flag("DSS", "shows_subfield_separators"),
            },
        .single = true,
    });
}

} // namespace sysadmin::server
