#include "security/frmSecurity_OperatorPassword.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "core/data/PasswordRulesText.h"
#include "core/data/YesNo.h"
#include "framework/Captions.h"
#include "security/PasswordCheck.h"
#include "wire/Status.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace status = wire::status;

frmSecurity_OperatorPassword::frmSecurity_OperatorPassword(Application& application,
                                                           const wire::PasswordOwner& owner, QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_owner(owner) {
    setObjectName("frmSecurity_OperatorPassword");
    setProperty(HelpContextProperty, 50761);
    setWindowTitle(tr("Change Password"));

    txtPasswordScreen = new QPlainTextEdit(this);
    txtPasswordScreen->setObjectName("txtPasswordScreen");
    txtPasswordScreen->setAccessibleName(tr("Password rules"));
    txtPasswordScreen->setReadOnly(true);
    txtPasswordScreen->setTabChangesFocus(true);
    txtPasswordScreen->setMinimumSize(fontMetrics().averageCharWidth() * 76, fontMetrics().height() * 10);

    txtPassword = new QLineEdit(this);
    txtPassword->setObjectName("txtPassword");
    txtPassword->setEchoMode(QLineEdit::Password);
    txtPassword->setMaxLength(LongestPassword);
    auto* lblPassword = new QLabel(tr("&New password:"), this);
    lblPassword->setObjectName("lblPassword");
    lblPassword->setBuddy(txtPassword);
    chkShowPassword = new QCheckBox(tr("S&how password"), this);
    chkShowPassword->setObjectName("chkShowPassword");
    chkSkipPasswordTest = new QCheckBox(tr("Skip password validation"), this);
    chkSkipPasswordTest->setObjectName("chkSkipPasswordTest");

    auto* buttons = new QDialogButtonBox(this);
    cmdChange = buttons->addButton(tr("&Change"), QDialogButtonBox::ActionRole);
    cmdChange->setObjectName("cmdChange");
    cmdChange->setDefault(true);
    cmdCancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    cmdCancel->setObjectName("cmdCancel");

    auto* fields = new QGridLayout;
    fields->addWidget(lblPassword, 0, 0);
    fields->addWidget(txtPassword, 0, 1);
    fields->addWidget(chkShowPassword, 0, 2);
    fields->addWidget(chkSkipPasswordTest, 1, 1, 1, 2);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(txtPasswordScreen, 1);
    whole->addLayout(fields);
    whole->addWidget(buttons);
    AssignMnemonics(*this);

    connect(chkShowPassword, &QCheckBox::toggled, this, [this](bool shown) {
        txtPassword->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
    });
    connect(txtPassword, &QLineEdit::textChanged, this, &frmSecurity_OperatorPassword::RefreshButtons);
    connect(cmdChange, &QPushButton::clicked, this, &frmSecurity_OperatorPassword::Change);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    const QList<QWidget*> order{txtPassword, chkShowPassword, chkSkipPasswordTest,
                                cmdChange,   cmdCancel,       txtPasswordScreen};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    txtPassword->setFocus();
    RefreshButtons();
}

void frmSecurity_OperatorPassword::Load() {
    RequestChannel& channel = m_application.channel;
    QString text;
    if (const qint16 result = channel.SendRequest("GET_PWD_DISPLAY_TEXT"); result == status::Ok)
        text = channel.GetField("PDT");
    else // the operation's name is what support knows this failure by
        m_application.ReportRequestFailure(result, "Load Cataloging Available Import Order", windowTitle());
    txtPasswordScreen->setPlainText(PasswordRulesText(text));
}

QString frmSecurity_OperatorPassword::NewPassword() const {
    return txtPassword->text().trimmed();
}

bool frmSecurity_OperatorPassword::SkipsValidation() const {
    return chkSkipPasswordTest->isChecked();
}

void frmSecurity_OperatorPassword::Change() {
    if (!SkipsValidation() && !CheckPassword(m_application, this, windowTitle(), NewPassword(), m_owner)) {
        txtPassword->setFocus();
        txtPassword->selectAll();
        return;
    }
    RequestChannel& channel = m_application.channel;
    channel.PutField("OI", m_owner.id);
    channel.PutField("PW", m_application.comm.EncodePassword(NewPassword()));
    channel.PutField("SPV", BoolToYN(SkipsValidation()));
    channel.PutField("AS", "Y");
    const qint16 result = channel.SendRequest("PwdUsg");
    if (result == status::Ok) {
        accept();
        return;
    }
    const QString refusal = PasswordRefusal(result);
    m_application.prompter.ShowBox(this,
                                   {.text = refusal.isEmpty() ? tr("Unknown Error has occurred.") : refusal,
                                    .icon = Box::Icon::Critical});
    txtPassword->setFocus();
    txtPassword->selectAll();
}

void frmSecurity_OperatorPassword::RefreshButtons() {
    cmdChange->setEnabled(!NewPassword().isEmpty());
}

} // namespace sysadmin

#include "moc_frmSecurity_OperatorPassword.cpp"
