#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace sysadmin {

class Application;

/// Shows how often and when an operator's sign-on failed, and unlocks the account.
class frmSecurity_OperatorLockoutStatus : public QDialog {
    Q_OBJECT

public:
    /// `mayUnlock`: whether the signed-on operator may change operators.
    frmSecurity_OperatorLockoutStatus(Application& application, const QString& operatorId, bool mayUnlock,
                                      QWidget* parent);

    /// Asks the server; false when that failed, which is reported.
    bool Load();

private:
    void Unlock();

    Application& m_application;
    QString m_operatorId;
    QLineEdit* txtLoginAttempts = nullptr;
    QLineEdit* txtLastLogin = nullptr;
    QLineEdit* txtLockedAt = nullptr;
    QPushButton* cmdUnlock = nullptr;
    QPushButton* cmdClose = nullptr;
};

} // namespace sysadmin
