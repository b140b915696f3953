#pragma once

#include "look/Appearance.h"

#include <QString>
#include <QVariant>

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
    Appearance GetAppearance() const { return m_appearance; }
    void SetAppearance(Appearance appearance) { m_appearance = appearance; }

    /// How the operator left something on the screen (the width of a bar, ...), or `otherwise` when nothing
    /// is kept.
    QVariant Remembered(const QString& name, const QVariant& otherwise = {}) const;
    /// Keeps it at once. Nothing is kept before `LoadPreferences` has told whose it is.
    void Remember(const QString& name, const QVariant& value) const;

private:
    QString m_section;
    bool m_warnOnClose = false;
    Appearance m_appearance = Appearance::System;
};

} // namespace sysadmin
