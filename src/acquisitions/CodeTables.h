#pragma once

namespace sysadmin {

class ScreenCatalogue;

/// Contributes the acquisitions screens that are nothing but a table of codes or names.
void AddAcquisitionsCodeTables(ScreenCatalogue& catalogue);

} // namespace sysadmin
