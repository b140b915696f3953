#pragma once

namespace sysadmin {

/// Counts of patron groups' settings go so far, on both ends.
inline constexpr int CountMost = 9999;

} // namespace sysadmin
