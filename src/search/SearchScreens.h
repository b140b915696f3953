#pragma once

#include "framework/HealthCheck.h"

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the screens of the search group.
void AddSearchScreens(ScreenCatalogue& catalogue);
/// The checks of search indexes and databases.
QList<HealthCheck> SearchChecks();

} // namespace sysadmin
