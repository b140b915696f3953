#include "security/frmSecurity_PasswordExpiration.h"

#include "core/Prompter.h"

#include <QVBoxLayout>

namespace sysadmin {

frmSecurity_PasswordExpiration::frmSecurity_PasswordExpiration(Application& application, QWidget* parent)
    : SingleRecordScreen(application, "frmSecurity_PasswordExpiration", tr("Password Expiration"),
                         Area::Security, parent) {
    Build({.subject = windowTitle(),
           .notice = "MscExpire",
           .getRequest = "GetMscExpire",
           .updateRequest = "UpdMscExpire",
           .loadCaption = "Load " + windowTitle(),
           .saveCaption = "Save " + windowTitle()},
          m_form,
          Below({Note(tr(
                     "Enter the number of days for operator password expiration.  The maximum number of days "
                     "allowed is 999.  Entering 0 will indicate that operator passwords never expire.")),
                 m_form.txtExpireInterval}),
          {PutValue(m_form.txtExpireInterval)});
}

void frmSecurity_PasswordExpiration::AfterSave() {
    emit Saved(m_form.txtExpireInterval.Value());
    CloseScreen();
}

PasswordExpirationDialog::PasswordExpirationDialog(Application& application, QWidget* parent)
    : QDialog(parent)
    , m_screen(new frmSecurity_PasswordExpiration(application, this)) {
    setObjectName("dlgPasswordExpiration");
    setProperty(HelpContextProperty, 50771);
    setWindowTitle(m_screen->windowTitle());
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(m_screen);
    resize(fontMetrics().averageCharWidth() * 64, sizeHint().height());
}

void PasswordExpirationDialog::reject() {
    if (m_screen->MayClose())
        QDialog::reject();
}

} // namespace sysadmin

#include "moc_frmSecurity_PasswordExpiration.cpp"
