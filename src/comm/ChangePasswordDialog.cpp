#include "comm/ChangePasswordDialog.h"

#include "comm/PasswordEncoder.h"
#include "comm/ProblemLabel.h"
#include "core/Prompter.h"
#include "core/data/PasswordRulesText.h"
#include "core/data/StatusTable.h"
#include "wire/Status.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int PasswordWidth = 560;
constexpr int RulesLines = 10;

} // namespace

ChangePasswordDialog::ChangePasswordDialog(const QString& reason, const QString& rulesText, Change change,
                                           QWidget* parent)
    : QDialog(parent)
    , m_change(std::move(change)) {
    setObjectName("frmChangePassword");
    setProperty(HelpContextProperty, 50102);
    setWindowTitle(tr("Change Password"));

    auto* lblReason = new QLabel(reason, this);
    lblReason->setObjectName("lblReason");
    lblReason->setTextFormat(Qt::PlainText);
    lblReason->setWordWrap(true);
    lblReason->setVisible(!reason.isEmpty());

    txtPasswordScreen = new QPlainTextEdit(PasswordRulesText(rulesText), this);
    txtPasswordScreen->setObjectName("txtPasswordScreen");
    txtPasswordScreen->setAccessibleName(tr("Password rules"));
    txtPasswordScreen->setReadOnly(true);
    txtPasswordScreen->setTabChangesFocus(true);
    txtPasswordScreen->setFixedHeight(fontMetrics().lineSpacing() * RulesLines);

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setHorizontalSpacing(16);
    form->setVerticalSpacing(10);
    const auto addRow = [&](const QString& name, const QString& caption) {
        auto* edit = new QLineEdit(this);
        edit->setObjectName("txt" + name);
        edit->setEchoMode(QLineEdit::Password);
        auto* label = new QLabel(caption, this);
        label->setObjectName("lbl" + name);
        label->setBuddy(edit);
        form->addRow(label, edit);
        return edit;
    };
    txtOldPassword = addRow("OldPassword", tr("Ol&d password:"));
    txtNewPassword = addRow("NewPassword", tr("&New password:"));
    txtRepeatPassword = addRow("RepeatPassword", tr("&Repeat new password:"));

    lblProblem = new ProblemLabel(this);
    cmdOK = new QPushButton(tr("&OK"), this);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName("cmdCancel");
    cmdCancel->setAutoDefault(false);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(16);
    layout->addWidget(lblReason);
    layout->addWidget(txtPasswordScreen);
    layout->addLayout(form);
    layout->addWidget(lblProblem);
    layout->addLayout(buttons);
    FitHeight(*this, PasswordWidth);
    // The rules are read when needed; the fields come first.
    setTabOrder(cmdCancel, txtPasswordScreen);
    txtOldPassword->setFocus();
}

ChangePasswordDialog::~ChangePasswordDialog() {
    for (QLineEdit* edit : {txtOldPassword, txtNewPassword, txtRepeatPassword})
        WipeEdit(*edit);
}

void ChangePasswordDialog::accept() {
    if (txtOldPassword->text().isEmpty())
        return ShowProblem(tr("Enter the old password."), txtOldPassword);
    if (txtNewPassword->text().isEmpty())
        return ShowProblem(tr("Enter the new password."), txtNewPassword);
    if (txtRepeatPassword->text() != txtNewPassword->text()) {
        WipeEdit(*txtRepeatPassword);
        return ShowProblem(tr("The new password was not repeated exactly."), txtRepeatPassword);
    }
    QString oldPassword = txtOldPassword->text();
    QString newPassword = txtNewPassword->text();
    const qint16 status = m_change(oldPassword, newPassword);
    WipeText(oldPassword);
    WipeText(newPassword);
    for (QLineEdit* edit : {txtOldPassword, txtNewPassword, txtRepeatPassword})
        WipeEdit(*edit);
    if (status == wire::status::Ok)
        QDialog::accept();
    else
        ShowStatus(status);
}

void ChangePasswordDialog::ShowStatus(qint16 status) {
    namespace known = wire::status;
    switch (status) {
    case known::InvalidSignOn:
        return ShowProblem(
            tr("The old password is not right. (After several wrong ones it is looked at again "
               "only after a while.)"),
            txtOldPassword);
    case known::RepeatedPassword:
        return ShowProblem(tr("Password the same as a previous password(s) -- Please change password again."),
                           txtOldPassword);
    case known::MinimumPasswordAge:
        return ShowProblem(tr("Minimum age violation (can't change password yet)"), cmdCancel);
    case known::WeakPassword:
        return ShowProblem(tr("The new password does not keep to the rules for passwords."), txtOldPassword);
    case known::PublishedPassword:
        return ShowProblem(tr("This is a password of the sample library, and everybody knows it. Choose "
                              "another one."),
                           txtOldPassword);
    case known::NotAuthorised:
        return ShowProblem(tr("You may not change your password. Ask a security administrator."), cmdCancel);
    default:
        return ShowProblem(TextOfStatus(status).message, txtOldPassword);
    }
}

void ChangePasswordDialog::ShowProblem(const QString& problem, QWidget* next) {
    lblProblem->SetProblem(problem);
    FitHeight(*this, PasswordWidth);
    next->setFocus();
}

} // namespace sysadmin

#include "moc_ChangePasswordDialog.cpp"
