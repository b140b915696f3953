#pragma once

#include "cataloging/ImportRuleForm.h"
#include "framework/MaintenanceScreen.h"

namespace sysadmin {

/// The bulk import rules: which records a file's records replace, what is created besides them, and where in
/// a record all of it is found.
class frmCataloging_BulkImportRules : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCataloging_BulkImportRules(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;
    void ReadRecord(Table& table) override;
    bool CheckBeforeSave(Table& table) override;
    QStringList ProblemsBeforeSave(Table& table) override;
    std::optional<Box> QuestionBeforeSave(Table& table) override;
    void RefreshOwnControls() override;

private:
    Layout Draw();
    void LoadChoiceLists();
    void FollowHandling();
    QString AskHandling();
    std::optional<bool> ReplacesOrMerges();
    void EditSingle();
    void EditMultiple();
    void EditCopyNumbers();
    void EditOrders();
    void TryIt();
    bool EditsRule() const;

    ImportRuleForm& m_form = KeepForm<ImportRuleForm>();
    QPushButton* m_cmdTryIt = nullptr;
    bool m_isUnknown = false; // how the profile treats records could not be found out
};

} // namespace sysadmin
