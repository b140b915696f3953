#pragma once

#include "framework/SingleRecordScreen.h"
#include "security/SecurityOptionsForm.h"

class QLabel;

namespace sysadmin {

/// The library's rules for operators' passwords and sign-on, and the log of invalid sign-on attempts.
class frmSecurity_SecurityOptions : public SingleRecordScreen {
    Q_OBJECT

public:
    frmSecurity_SecurityOptions(Application& application, QWidget* parent);

    void LoadScreen() override;

protected:
    void ReadRecord() override;
    bool CheckBeforeSave() override;

private:
    QWidget* MakeSlot(const QString& name);
    void LoadLog();
    void ClearLog();
    void ExportLog();
    void ShowExpiration();

    SecurityOptionsForm& m_form = KeepForm<SecurityOptionsForm>();
    QList<QLabel*> m_includeLabels; // "Include in group", one for each requirement
};

} // namespace sysadmin
