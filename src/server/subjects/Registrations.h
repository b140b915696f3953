#pragma once

#include "server/Registry.h"

#include <memory>

namespace sysadmin::server {

#define FAMILY(name) void Register##name(Registry& registry);
#include "server/subjects/Families.inc"
#undef FAMILY

/// All that the server stores and answers.
std::shared_ptr<const Registry> MakeRegistry();

} // namespace sysadmin::server
