#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

struct OwningLibraryForm : Form {
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "LN",
                       .caption = tr("Library Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Library Names")},
                       .changedTag = "NNm"}};
    TextField txtDisplayName{
        *this,
        {.name = "txtDisplayName", .tag = "DN", .caption = tr("Display Name:"), .maxLength = NameLength}};
    TextField txtCode{*this,
                      {.name = "txtCode", .tag = "NC", .caption = tr("NUC Code:"), .maxLength = CodeLength}};
    PickedField locations{*this,
                          {.name = "fraLocations"},
                          {.availableGrid = "vsfAvailableLocations",
                           .availableCaption = tr("Available Locations"),
                           .selectedGrid = "vsfSelectedLocations",
                           .selectedCaption = tr("Selected Locations")}};
};

/// Owning libraries with the locations that each of them owns.
class frmSystem_OwningLibraries : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_OwningLibraries(Application& application, QWidget* parent);

protected:
    void ReadRecord(Table& table) override;
    void ReadAvailable(Table& table) override;

private:
    OwningLibraryForm& m_form = KeepForm<OwningLibraryForm>();
};

} // namespace sysadmin
