#pragma once

#include "framework/FormScreen.h"
#include "framework/HealthCheck.h"

namespace sysadmin {

class ListGrid;
class ScreenCatalogue;

/// The findings of all checks that there are, each with the way to its place.
class frmHealth : public FormScreen {
    Q_OBJECT

public:
    frmHealth(Application& application, const QList<HealthCheck>& checks, QWidget* parent);

    void LoadScreen() override { LookOver(false); }

private:
    /// Runs the checks that call other systems, or all others; what the rest found stays.
    void LookOver(bool callOthers);
    void ShowFindings();
    void Open();
    QString Key(const HealthCheck& check, const HealthFinding& finding) const;

    QList<HealthCheck> m_checks;                     // those that the operator may see
    QHash<QString, QList<HealthFinding>> m_findings; // by check; missing: not looked over
    QStringList m_failed;                            // captions of checks that could not be done
    ListGrid* vsf = nullptr;
    QLabel* lblSummary = nullptr;
};

/// Contributes the screen with these checks.
void AddHealthScreen(ScreenCatalogue& catalogue, const QList<HealthCheck>& checks);

} // namespace sysadmin
