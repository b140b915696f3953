#pragma once

#include <QSettings>

namespace sysadmin {

/// The per-user settings store of the system, under the program's application name.
inline QSettings UserSettings() {
    return QSettings("TessarySysAdmin", "TessarySysAdmin");
}

} // namespace sysadmin
