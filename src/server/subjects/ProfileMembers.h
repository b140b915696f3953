#pragma once

#include "server/Membership.h"

namespace sysadmin::server {

/// The operators of a profile, kept in this table.
Membership ProfileOperators(const QString& table);
/// The locations at which a profile's rights hold, kept in this table.
Membership ProfileLocations(const QString& table);

} // namespace sysadmin::server
