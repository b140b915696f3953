#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct POTypeForm : Form {
    TextField txtName{
        *this,
        {.name = "txtName", .tag = "D", .caption = tr("PO Type Name:"), .maxLength = 40, .required = true}};
};

/// Types of purchase orders; a type is known by a number.
class frmAcquisitions_POTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmAcquisitions_POTypes(Application& application, QWidget* parent);

private:
    POTypeForm m_form;
};

} // namespace sysadmin
