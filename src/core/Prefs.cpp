#include "core/Prefs.h"

#include "core/data/Session.h"
#include "core/data/UserSettings.h"

#include <QUrl>

namespace sysadmin {

namespace {

// An operator id may hold characters that part sections from keys.
QString SectionOf(const QString& operatorId) {
    return QString::fromLatin1(QUrl::toPercentEncoding(operatorId));
}

} // namespace

void Prefs::LoadPreferences(const Session& session) {
    m_section = SectionOf(session.OperatorId());
    m_warnOnClose = Remembered("WarnOnClose", "False").toBool();
    m_appearance = AppearanceOf(Remembered("Appearance").toString()).value_or(Appearance::System);
}

void Prefs::SavePreferences() const {
    Remember("WarnOnClose", m_warnOnClose ? "True" : "False");
    Remember("Appearance", WordOf(m_appearance));
}

QVariant Prefs::Remembered(const QString& name, const QVariant& otherwise) const {
    if (m_section.isEmpty())
        return otherwise;
    return UserSettings().value(m_section + "/" + name, otherwise);
}

void Prefs::Remember(const QString& name, const QVariant& value) const {
    if (m_section.isEmpty())
        return;
    QSettings settings = UserSettings();
    settings.setValue(m_section + "/" + name, value);
}

} // namespace sysadmin
