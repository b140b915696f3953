#pragma once

#include "server/Registry.h"

#include <memory>

namespace sysadmin::server {

#define FAMILY(name) void Register##name(Registry& registry);
#include "server/subjects/Families.inc"
#undef FAMILY

/// All that the server stores and answers, each subject altered so (in tests).
std::shared_ptr<const Registry> MakeRegistry(const std::function<void(Subject&)>& alter = {});

} // namespace sysadmin::server
