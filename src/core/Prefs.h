#pragma once

#include <QString>

namespace sysadmin {

class Session;

/// The operator's own settings, kept per operator in the per-user settings store.
class Prefs {
public:
    /// Reads the settings of the session's operator.
    void LoadPreferences(const Session& session);
    void SavePreferences() const;

    bool WarnOnClose() const { return m_warnOnClose; }
    void SetWarnOnClose(bool warn) { m_warnOnClose = warn; }

private:
    QString m_section;
    bool m_warnOnClose = false;
};

} // namespace sysadmin
