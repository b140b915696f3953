#pragma once

#include "circulation/UbPolicyForm.h"
#include "framework/MaintenanceScreen.h"

namespace sysadmin {

/// What the patron groups of a cluster may do at other libraries. The list is that of the patron groups; a
/// group is eligible exactly while the server has a policy of it.
class frmCirculation_UBPolicyDefinitions : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_UBPolicyDefinitions(Application& application, QWidget* parent);

    void OnClusterChanged() override;

protected:
    void BeforeLoad() override;
    void PutListKey(const Table& table) override;
    void PutRecord(Table& table, const SaveContext& context) override;
    bool SendRecord(Table& table) override;
    void RefreshOwnControls() override;

private:
    void AskDemerits();
    void OnSubjectChanged(const QString& subject);
    void EditAll();

    UbPolicyForm& m_form = KeepForm<UbPolicyForm>();
    QPushButton* cmdAllGroups = nullptr;
    bool m_usesDemerits = false;
    bool m_isListOld = false; // patron groups were changed while an edit was open
};

} // namespace sysadmin
