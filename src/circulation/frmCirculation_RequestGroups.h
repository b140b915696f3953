#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

struct RequestGroupForm : Form {
    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "C",
                       .caption = tr("Code:"),
                       .maxLength = CodeLength,
                       .required = true,
                       .column = {tr("Codes"), 120}}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "N",
                       .caption = tr("Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")}}};
    PickedField locations{*this,
                          {.name = "fraLocations", .tag = "SI"},
                          {.availableGrid = "vsfAvailableLocations",
                           .availableCaption = tr("Available Locations"),
                           .selectedGrid = "vsfSelectedLocations",
                           .selectedCaption = tr("Selected Locations")},
                          {.tags = {"AI", "AN", "SI", "SN", "LS"}}};
};

/// Request groups: sets of locations from which a request may be filled.
class frmCirculation_RequestGroups : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCirculation_RequestGroups(Application& application, QWidget* parent);

protected:
    bool FillForm(Table& table, const GridRow& row) override;

private:
    RequestGroupForm& m_form = KeepForm<RequestGroupForm>();
};

} // namespace sysadmin
