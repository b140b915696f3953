#pragma once

#include "framework/FormScreen.h"
#include "security/RightsHeld.h"

class QCheckBox;
class QComboBox;
class QTabWidget;

namespace sysadmin {

class ListGrid;

/// Rights, the other way round: who has one and through which profile, and all that an operator may do,
/// beside another operator where wanted.
class frmSecurity_WhoMay : public FormScreen {
    Q_OBJECT

public:
    frmSecurity_WhoMay(Application& application, QWidget* parent);

    void LoadScreen() override { Read(); }

private:
    QWidget* MakeRightsPage();
    QWidget* MakeOperatorsPage();
    void Read();
    void FillOperators();
    void ShowHolders();
    void ShowOperator();
    void OpenHolder(const QString& operatorId);
    /// The first profile that gives the operator the right.
    void OpenProfile(const QString& rightKey, const QString& operatorId);
    void OnSubjectChanged(const QString& subject);

    RightsHeld m_rights;
    QTabWidget* tabWhoMay = nullptr;
    QLabel* lblSummary = nullptr;
    ListGrid* vsfRights = nullptr;
    QLabel* lblRight = nullptr;
    ListGrid* vsfHolders = nullptr;
    QComboBox* cboOperator = nullptr;
    QComboBox* cboOther = nullptr;
    QCheckBox* chkOnlyDifferences = nullptr;
    ListGrid* vsfHeld = nullptr;
    QLabel* lblHeld = nullptr;
};

} // namespace sysadmin
