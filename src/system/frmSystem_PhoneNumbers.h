#pragma once

#include "framework/forms/ValueFields.h"

#include <QDialog>

namespace sysadmin {

class Application;
class FormView;

struct PhoneForm : Form {
    ChoiceField cboPhoneType{*this, {.name = "cboPhoneType", .caption = tr("Phone Type:"), .required = true}};
    TextField txtPhoneNumber{
        *this, {.name = "txtPhoneNumber", .caption = tr("Phone Number:"), .maxLength = 40, .required = true}};
};

/// Edits one phone number; nothing is sent.
class frmSystem_PhoneNumbers : public QDialog {
    Q_OBJECT

public:
    /// `type` and `number` are what the phone has now; a phone without a type starts with the one of the
    /// lowest id.
    frmSystem_PhoneNumbers(const QList<PickItem>& types, const QString& type, const QString& number,
                           QWidget* parent);

    QString Type() const { return m_form.cboPhoneType.Draft(); }
    QString Number() const { return m_form.txtPhoneNumber.Draft().trimmed(); }

private:
    PhoneForm m_form;
    FormView* m_view = nullptr;
};

} // namespace sysadmin
