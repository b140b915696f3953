#pragma once

#include "framework/SingleRecordScreen.h"

#include <QDialog>

namespace sysadmin {

struct PasswordExpirationForm : Form {
    NumberField txtExpireInterval{*this,
                                  {.name = "txtExpireInterval",
                                   .tag = "ED",
                                   .caption = tr("Expire Passwords after"),
                                   .required = true,
                                   .unit = tr("days."),
                                   .most = 999}};
};

/// The number of days after which operator passwords expire, by itself.
class frmSecurity_PasswordExpiration : public SingleRecordScreen {
    Q_OBJECT

public:
    frmSecurity_PasswordExpiration(Application& application, QWidget* parent);

signals:
    /// The server took this number of days.
    void Saved(int days);

protected:
    void AfterSave() override;

private:
    PasswordExpirationForm& m_form = KeepForm<PasswordExpirationForm>();
};

/// The dialog in which the screen stands; it stays open while there is something to lose.
class PasswordExpirationDialog : public QDialog {
    Q_OBJECT

public:
    PasswordExpirationDialog(Application& application, QWidget* parent);

    frmSecurity_PasswordExpiration& GetScreen() const { return *m_screen; }

protected:
    void reject() override;

private:
    frmSecurity_PasswordExpiration* m_screen;
};

} // namespace sysadmin
