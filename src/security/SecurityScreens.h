#pragma once

#include "framework/HealthCheck.h"

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the security group.
void AddSecurityScreens(ScreenCatalogue& catalogue);
/// The checks of operators and profiles.
QList<HealthCheck> SecurityChecks();

} // namespace sysadmin
