#pragma once

#include "framework/MaintenanceScreen.h"

namespace sysadmin {

struct MaterialTypeForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "Cd",
                       .caption = tr("Material Type Code:"),
                       .maxLength = 10,
                       .required = true}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Material Type Name:"),
                       .maxLength = 40,
                       .required = true}};
};

/// Material types: the words that title lists show for the kinds of bibliographic records.
class frmSearch_MaterialType : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSearch_MaterialType(Application& application, QWidget* parent);

private:
    MaterialTypeForm m_form;
};

} // namespace sysadmin
