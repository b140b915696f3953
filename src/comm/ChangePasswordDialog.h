#pragma once

#include <QDialog>

#include <functional>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace sysadmin {

class ProblemLabel;

/// Changes the operator's own password: the old one, the new one, and the new one again. It stays open until
/// the server has accepted the new password or the operator gives up.
class ChangePasswordDialog : public QDialog {
    Q_OBJECT

public:
    /// Carries the change out; the server's status.
    using Change = std::function<qint16(const QString& oldPassword, const QString& newPassword)>;

    /// `reason` and the library's text about new passwords stand above the fields; both may be empty.
    ChangePasswordDialog(const QString& reason, const QString& rulesText, Change change,
                         QWidget* parent = nullptr);
    ~ChangePasswordDialog() override;

    QPlainTextEdit* txtPasswordScreen = nullptr; ///< what the rules are
    QLineEdit* txtOldPassword = nullptr;
    QLineEdit* txtNewPassword = nullptr;
    QLineEdit* txtRepeatPassword = nullptr;
    ProblemLabel* lblProblem = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    void accept() override;

private:
    void ShowProblem(const QString& problem, QWidget* next);
    void ShowStatus(qint16 status);

    Change m_change;
};

} // namespace sysadmin
