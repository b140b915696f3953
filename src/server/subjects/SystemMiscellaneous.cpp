#include "server/subjects/Registrations.h"

namespace sysadmin::server {

void RegisterSystemMiscellaneous(Registry& registry) {
    registry.AddSubject({
        .table = "system_miscellaneous",
        .area = Area::System,
        .requests = {.get = "GetMsc", .update = "UpdMsc"},
        .fields =
            {
                SubjectField::Flag("RP", "keeps_circulation_patrons"),
                SubjectField::Flag("MP", "keeps_booking_patrons"),
                SubjectField::Flag("D", "keeps_distribution_patrons"),
                SubjectField::Flag("DSS", "shows_subfield_separators"),
            },
        .single = true,
    });
}

} // namespace sysadmin::server
