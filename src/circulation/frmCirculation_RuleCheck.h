#pragma once

#include "circulation/RuleFindings.h"
#include "framework/FormScreen.h"

class QPushButton;

namespace sysadmin {

class ListGrid;

/// Looks over the circulation rules of all clusters and lists what nobody can have meant; each finding leads
/// to its place.
class frmCirculation_RuleCheck : public FormScreen {
    Q_OBJECT

public:
    frmCirculation_RuleCheck(Application& application, QWidget* parent);

    void LoadScreen() override { Check(); }

private:
    void Check();
    void OnSubjectChanged(const QString& subject);
    const RuleFinding* Selected() const;
    void Open();
    void TestLoan();
    void RefreshButtons();

    QHash<QString, RuleFinding> m_found; // by the key of the row
    ListGrid* vsf = nullptr;
    QLabel* lblSummary = nullptr;
    QPushButton* cmdOpen = nullptr;
    QPushButton* cmdTestLoan = nullptr;
};

} // namespace sysadmin
