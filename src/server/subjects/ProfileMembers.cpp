#include "server/subjects/ProfileMembers.h"

namespace sysadmin::server {

namespace {

/// "Last, First M", each part only when it is there.
const QString OperatorName =
    "m.last_name || CASE WHEN m.first_name<>'' AND m.last_name<>'' THEN ', ' ELSE '' END || "
    "m.first_name || CASE WHEN m.middle_initial<>'' THEN ' ' ELSE '' END || "
    "m.middle_initial";

} // namespace

Membership ProfileOperators(const QString& table) {
    return {.table = table,
            .ownerColumn = "profile_id",
            .memberTable = "operators",
            .memberColumn = "operator_row",
            .key = "operator_id",
            .name = OperatorName,
            .availableId = "AOI",
            .availableName = "AON",
            .selectedId = "SOI",
            .selectedName = "SON",
            .state = "OSt"};
}

Membership ProfileLocations(const QString& table) {
    return {.table = table,
            .ownerColumn = "profile_id",
            .memberTable = "locations",
            .memberColumn = "location_id",
            .availableId = "1",
            .availableName = "2",
            .selectedId = "3",
            .selectedName = "4",
            .state = "LSt",
            .offered = false};
}

} // namespace sysadmin::server
