#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct ItemTypeForm : Form {
    TextField txtCode{
        *this,
        {.name = "txtCode", .tag = "Cd", .caption = tr("Code:"), .maxLength = 40, .required = true},
        true};
    TextField txtName{
        *this,
        {.name = "txtName", .tag = "Nm", .caption = tr("Name:"), .maxLength = 100, .required = true},
        true};
    TextField txtDisplayName{
        *this, {.name = "txtDisplayName", .tag = "Dsp", .caption = tr("Display Name:"), .maxLength = 100}};
};

/// Item types: a code table whose records also stand in pick-lists of other screens.
class frmSystem_ItemTypes : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_ItemTypes(Application& application, QWidget* parent);

private:
    ItemTypeForm m_form;
};

} // namespace sysadmin
