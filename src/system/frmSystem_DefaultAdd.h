#pragma once

#include "framework/SingleRecordScreen.h"
#include "system/PostalForm.h"

namespace sysadmin {

struct DefaultAddressForm : PostalForm {
    DefaultAddressForm()
        : PostalForm("CCm", tr("State/Province:")) {}
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "LNm",
                       .caption = tr("Library Name:"),
                       .maxLength = NameLength,
                       .required = true}};
};

/// The library's default address.
class frmSystem_DefaultAdd : public SingleRecordScreen {
    Q_OBJECT

public:
    frmSystem_DefaultAdd(Application& application, QWidget* parent);

private:
    DefaultAddressForm& m_form = KeepForm<DefaultAddressForm>();
};

} // namespace sysadmin
