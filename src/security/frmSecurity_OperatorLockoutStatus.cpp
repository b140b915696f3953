#include "security/frmSecurity_OperatorLockoutStatus.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/forms/ShownDate.h"
#include "wire/Status.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sysadmin {

namespace status = wire::status;

frmSecurity_OperatorLockoutStatus::frmSecurity_OperatorLockoutStatus(Application& application,
                                                                     const QString& operatorId,
                                                                     bool mayUnlock, QWidget* parent)
    : QDialog(parent)
    , m_application(application)
    , m_operatorId(operatorId.trimmed()) {
    setObjectName("frmSecurity_OperatorLockoutStatus");
    setProperty(HelpContextProperty, 50762);
    setWindowTitle(tr("Lockout Status"));

    auto* form = new QFormLayout;
    const auto addLine = [&](const QString& name, const QString& caption) {
        auto* edit = new QLineEdit(this);
        edit->setObjectName(name);
        edit->setReadOnly(true);
        edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * 24);
        auto* label = new QLabel(caption, this);
        label->setObjectName("lbl" + name.mid(3));
        label->setBuddy(edit);
        form->addRow(label, edit);
        return edit;
    };
    txtLoginAttempts = addLine("txtLoginAttempts", tr("Number of invalid login attempts:"));
    txtLastLogin = addLine("txtLastLogin", tr("Time of last invalid login attempt:"));
    txtLockedAt = addLine("txtLockedAt", tr("Account locked at:"));

    auto* buttons = new QDialogButtonBox(this);
    cmdUnlock = buttons->addButton(tr("Unlock account"), QDialogButtonBox::ActionRole);
    cmdUnlock->setObjectName("cmdUnlock");
    cmdUnlock->setEnabled(mayUnlock);
    cmdClose = buttons->addButton(tr("&Close"), QDialogButtonBox::RejectRole);
    cmdClose->setObjectName("cmdClose");
    cmdClose->setDefault(true);

    auto* whole = new QVBoxLayout(this);
    whole->addLayout(form);
    whole->addStretch();
    whole->addWidget(buttons);
    AssignMnemonics(*this);

    connect(cmdUnlock, &QPushButton::clicked, this, &frmSecurity_OperatorLockoutStatus::Unlock);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    cmdClose->setFocus();
}

bool frmSecurity_OperatorLockoutStatus::Load() {
    RequestChannel& channel = m_application.channel;
    channel.PutField("OI", m_operatorId);
    if (const qint16 result = channel.SendRequest("GetLockoutStatus"); result != status::Ok) {
        m_application.ReportRequestFailure(result, "Get Lockout Status", windowTitle());
        return false;
    }
    txtLoginAttempts->setText(channel.GetField("LC"));
    txtLastLogin->setText(ShownDate(channel.GetField("LT"), WireMoment));
    txtLockedAt->setText(ShownDate(channel.GetField("IL"), WireMoment));
    return true;
}

void frmSecurity_OperatorLockoutStatus::Unlock() {
    m_application.channel.PutField("OI", m_operatorId);
    if (const qint16 result = m_application.channel.SendRequest("ClearLockoutStatus"); result != status::Ok) {
        m_application.ReportRequestFailure(result, "Clear Lockout Status", windowTitle());
        return;
    }
    accept();
}

} // namespace sysadmin

#include "moc_frmSecurity_OperatorLockoutStatus.cpp"
