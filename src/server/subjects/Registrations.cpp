#include "server/subjects/Registrations.h"

#include "server/Sessions.h"

namespace sysadmin::server {

std::shared_ptr<const Registry> MakeRegistry(const std::function<void(Subject&)>& alter) {
    auto registry = std::make_shared<Registry>(alter);
    registry->AddTable(Sessions::Declare());
#define FAMILY(name) Register##name(*registry);
#include "server/subjects/Families.inc"
#undef FAMILY
    return registry;
}

} // namespace sysadmin::server
