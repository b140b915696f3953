#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

struct LocationLimitGroupForm : Form {
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
    FlagField chkCheck{*this, {.name = "chkCheck", .tag = "O", .caption = tr("Suppress in OPAC?")}};
    PickedField locations{*this,
                          {.name = "fraLocations"},
                          {.availableGrid = "vsfAvailableLocations",
                           .availableCaption = tr("Available Locations"),
                           .selectedGrid = "vsfSelectedLocations",
                           .selectedCaption = tr("Selected Locations")}};
};

/// Location limit groups: named sets of locations.
class frmSystem_LocLimitGroups : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_LocLimitGroups(Application& application, QWidget* parent);

protected:
    void ReadRecord(Table& table) override;
    void ReadAvailable(Table& table) override;
    QString EditCaption(const Table& table, State state) const override;

private:
    LocationLimitGroupForm& m_form = KeepForm<LocationLimitGroupForm>();
};

} // namespace sysadmin
