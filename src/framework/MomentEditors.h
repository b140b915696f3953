#pragma once

namespace sysadmin {

/// Brings the editors for dates and times of day.
void RegisterMomentEditors();

} // namespace sysadmin
