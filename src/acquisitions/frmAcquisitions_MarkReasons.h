#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct MarkReasonForm : Form {
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Mark Reason Name:"),
                       .maxLength = 40,
                       .required = true}};
    ChoiceField cboClaimType{*this, {.name = "cboClaimType", .tag = "C", .caption = tr("Claim Type:")}};
};

/// Mark reasons: why a received issue or line item is set aside, and the claim that follows from it.
class frmAcquisitions_MarkReasons : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_MarkReasons(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;

private:
    MarkReasonForm m_form;
};

} // namespace sysadmin
