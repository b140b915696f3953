#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct ClaimTypeForm : Form {
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "D",
                       .caption = tr("Claim Description:"),
                       .maxLength = 40,
                       .required = true}};
    TextField txtEDICode{*this,
                         {.name = "txtEDICode", .tag = "E", .caption = tr("EDI Code:"), .maxLength = 10}};
};

/// Claim types: what the library claims from a vendor, with the code that stands for it in electronic
/// messages.
class frmAcquisitions_ClaimTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_ClaimTypes(Application& application, QWidget* parent);

private:
    ClaimTypeForm m_form;
};

} // namespace sysadmin
