#pragma once

#include "comm/SignOnAttempts.h"

#include <QDialog>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace sysadmin {

class ProblemLabel;

/// The sign-on dialog: operator, password, and the library to sign on to. It stays open until the operator is
/// accepted or gives up; what goes wrong stands in the dialog itself.
class SignOnDialog : public QDialog {
    Q_OBJECT

public:
    SignOnDialog(SignOnAttempts& attempts, const ServerChoice& choice, const QString& operatorId,
                 QWidget* parent = nullptr);
    ~SignOnDialog() override;

    QLabel* lblLibraryName = nullptr;
    QLabel* lblServerState = nullptr;
    QPlainTextEdit* txtWarning = nullptr;
    QLineEdit* txtOperator = nullptr;
    QLineEdit* txtPassword = nullptr;
    QComboBox* cboLibrary = nullptr;
    QLineEdit* txtFolder = nullptr;
    QPushButton* cmdFolder = nullptr;
    QLineEdit* txtServer = nullptr;
    QLabel* lblHint = nullptr;
    ProblemLabel* lblProblem = nullptr;
    QPushButton* cmdAcceptCertificate = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    /// Where the dialog points to; none while the server's address is not one.
    std::optional<ServerChoice> Choice() const;

    void accept() override;
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void BuildHeader();
    void BuildFields(const ServerChoice& choice, const QString& operatorId);
    void BuildButtons();
    void Arrange();
    void ShowChosenField();
    void GreetServer();
    void ShowGreeting(const Greeting& greeting);
    void ShowProblem(const QString& problem);
    void AcceptCertificate();

    SignOnAttempts& m_attempts;
    QFormLayout* m_form = nullptr;
    QLabel* m_lblFolder = nullptr;
    QWidget* m_folderLine = nullptr;
    QWidget* m_colour = nullptr; // the library's own
    QLabel* m_lblServer = nullptr;
    std::optional<ServerChoice> m_greeted; // whose greeting is shown
    bool m_busy = false;                   // a request is in flight
};

} // namespace sysadmin
