#pragma once

namespace sysadmin::wire {

/// Counts, days and minutes of circulation policies go up to this, on both ends.
inline constexpr int MostCount = 9999;

} // namespace sysadmin::wire
