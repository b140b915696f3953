#pragma once

#include <QString>

namespace sysadmin {

/// A date, or a date with a time of day, in the text form that travels ("2026-11-21", "2026-11-21 14:05:00")
/// as people here read it: in the locale's short form. Any other text as it is.
QString ShownDate(const QString& text);

} // namespace sysadmin
