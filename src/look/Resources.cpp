#include "look/Resources.h"

#include <QtCore/qglobal.h>

// The macro declares functions and so must stand outside any namespace.
static void RegisterResources() {
    Q_INIT_RESOURCE(sysadmin_look_icons);
    Q_INIT_RESOURCE(sysadmin_look_help);
}

namespace sysadmin {

void LoadResources() {
    RegisterResources();
}

} // namespace sysadmin
