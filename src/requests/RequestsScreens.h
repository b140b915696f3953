#pragma once

#include "framework/HealthCheck.h"

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the public catalogue, call slip and web service groups.
void AddRequestsScreens(ScreenCatalogue& catalogue);
/// The checks of the call slip rules.
QList<HealthCheck> CallSlipChecks();

} // namespace sysadmin
