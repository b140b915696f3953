#pragma once

#include <QList>
#include <QString>

namespace sysadmin {

/// An alert that a location's staff sees about a patron, and which patron identifiers it shows.
struct LocationAlert {
    QString sAlertID;
    QString sDisplay; ///< how it is shown: "1" in a dialog, "2" as information
    QString sName;    ///< Y or N, as the two below
    QString sBarcode;
    QString sPhone;
    bool operator==(const LocationAlert&) const = default;
};

/// The alerts of one location, in memory: filled while the location's alerts are edited and read back by
/// index. An index that there is no alert for reads as empty texts.
class clsLocationAlerts {
public:
    void AddData(const LocationAlert& alert) { m_alerts.append(alert); }
    /// How many alerts there are.
    int GetColCount() const { return int(m_alerts.size()); }
    QString GetAlertID(int index) const { return m_alerts.value(index).sAlertID; }
    QString GetDisplay(int index) const { return m_alerts.value(index).sDisplay; }
    QString GetName(int index) const { return m_alerts.value(index).sName; }
    QString GetBarcode(int index) const { return m_alerts.value(index).sBarcode; }
    QString GetPhone(int index) const { return m_alerts.value(index).sPhone; }

    bool operator==(const clsLocationAlerts&) const = default;

private:
    QList<LocationAlert> m_alerts;
};

} // namespace sysadmin
