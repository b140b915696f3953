#pragma once

#include <QSettings>

namespace sysadmin {

/// The per-user settings store of the system (or whatever is the default format), under the program's
/// application name.
inline QSettings UserSettings() {
    return QSettings(QSettings::defaultFormat(), QSettings::UserScope, "TessarySysAdmin", "TessarySysAdmin");
}

} // namespace sysadmin
