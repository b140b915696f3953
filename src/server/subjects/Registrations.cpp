#include "server/subjects/Registrations.h"

#include "server/Sessions.h"

namespace sysadmin::server {

std::shared_ptr<const Registry> MakeRegistry() {
    auto registry = std::make_shared<Registry>();
    registry->AddTable(Sessions::Declare());
#define FAMILY(name) Register##name(*registry);
#include "server/subjects/Families.inc"
#undef FAMILY
    return registry;
}

} // namespace sysadmin::server
