#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the system screens that have no behaviour of their own.
void AddSystemCodeTables(ScreenCatalogue& catalogue);

} // namespace sysadmin
