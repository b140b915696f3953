#include "server/subjects/Registrations.h"

#include "server/Sessions.h"

// Outside of any namespace, as resources of static libraries want it.
static void InitSampleLibrary() {
    Q_INIT_RESOURCE(sysadmin_server_sample_library);
}

namespace sysadmin::server {

std::shared_ptr<const Registry> MakeRegistry() {
    InitSampleLibrary();
    auto registry = std::make_shared<Registry>();
    registry->AddTable(Sessions::Declare());
#define FAMILY(name) Register##name(*registry);
#include "server/subjects/Families.inc"
#undef FAMILY
    return registry;
}

} // namespace sysadmin::server
