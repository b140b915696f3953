#pragma once

#include "wire/PasswordRules.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace sysadmin {

class Application;

/// Takes a new password for an operator and has it checked by the rules and, on the server, by the operator's
/// earlier passwords. Nothing is changed by it: the operator's screen saves the password.
class frmSecurity_OperatorPassword : public QDialog {
    Q_OBJECT

public:
    frmSecurity_OperatorPassword(Application& application, const wire::PasswordOwner& owner, QWidget* parent);

    /// Fetches the text of the password rules; without one the built-in text is shown.
    void Load();
    /// The accepted password; the caller takes it right after the dialog.
    QString NewPassword() const;
    /// Whether the password was accepted without being checked.
    bool SkipsValidation() const;

private:
    void Change();
    void RefreshButtons();

    Application& m_application;
    wire::PasswordOwner m_owner;
    QPlainTextEdit* txtPasswordScreen = nullptr;
    QLineEdit* txtPassword = nullptr;
    QCheckBox* chkShowPassword = nullptr;
    QCheckBox* chkSkipPasswordTest = nullptr;
    QPushButton* cmdChange = nullptr;
    QPushButton* cmdCancel = nullptr;
};

} // namespace sysadmin
