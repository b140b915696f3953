#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct AdjustReasonForm : Form {
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "T",
                       .caption = tr("Adjust Reason Text :"),
                       .maxLength = 40,
                       .required = true}};
    TextField txtEDICode{*this,
                         {.name = "txtEDICode", .tag = "EC", .caption = tr("EDI Code:"), .maxLength = 10}};
    LetterField optKind{*this,
                        {.name = "optKind", .tag = "CC", .caption = tr("Kind:"), .initial = "C"},
                        {{"C", tr("Charge")}, {"A", tr("Allowance")}}};
    ChoiceField cboVendor{*this, {.name = "cboVendor", .tag = "V", .caption = tr("Vendor:")}};
};

/// Adjust reasons: why the price of an order or invoice differs, and how that reads in electronic messages.
class frmAcquisitions_AdjustReasons : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_AdjustReasons(Application& application, QWidget* parent);

protected:
    void BeforeLoad() override;

private:
    AdjustReasonForm m_form;
};

} // namespace sysadmin
