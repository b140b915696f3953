#pragma once

#include "framework/SecretField.h"
#include "framework/SingleRecordScreen.h"
#include "framework/forms/CheckedText.h"

namespace sysadmin {

/// Where catalogers' workstations find the RDA Toolkit.
struct RdaToolkitForm : Form {
    RdaToolkitForm();
    std::optional<Finding> FormProblem() override;

    FlagField chkEnabled;
    CheckedText txtAddress;
    TextField txtAccount;
    SecretField txtPassword;
};

class frmCataloging_RDAToolkit : public SingleRecordScreen {
    Q_OBJECT

public:
    frmCataloging_RDAToolkit(Application& application, QWidget* parent);

private:
    /// Lets the server ask the stored address and says what came back.
    void Test();

    RdaToolkitForm& m_form = KeepForm<RdaToolkitForm>();
};

} // namespace sysadmin
