#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct VendorTypeForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Vendor Type Code:"),
                       .maxLength = 10,
                       .required = true}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Vendor Type Name:"),
                       .maxLength = 40,
                       .required = true}};
};

/// Vendor types: a code table keyed by its code.
class frmAcquisitions_VendorTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_VendorTypes(Application& application, QWidget* parent);

private:
    VendorTypeForm m_form;
};

} // namespace sysadmin
