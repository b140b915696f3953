#pragma once

namespace sysadmin {

/// Brings the editors for what is chosen: flags, entries, letters, and numbers with a unit.
void RegisterChoiceEditors();

} // namespace sysadmin
