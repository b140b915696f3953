#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct VendorReportForm : Form {
    TextField txtName{
        *this,
        {.name = "txtName", .tag = "Nm", .caption = tr("Report Name:"), .maxLength = 40, .required = true}};
    TextField txtEDICode{*this,
                         {.name = "txtEDICode", .tag = "E", .caption = tr("EDI Code:"), .maxLength = 10}};
};

/// Vendor reports: the answers that vendors give to claims, with their codes in electronic messages.
class frmAcquisitions_VendorReports : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_VendorReports(Application& application, QWidget* parent);

private:
    VendorReportForm m_form;
};

} // namespace sysadmin
