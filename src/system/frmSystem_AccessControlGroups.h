#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

struct AccessGroupForm : Form {
    AccessGroupForm();
    /// Puts the members of the group's type, in list order.
    void PutMembers(RequestChannel& channel) const;

    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "C",
                       .caption = tr("Group Code:"),
                       .maxLength = CodeLength,
                       .required = true}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "N",
                       .caption = tr("Group Name:"),
                       .maxLength = NameLength,
                       .required = true}};
    ChoiceField cboGroupType{*this,
                             {.name = "cboGroupType",
                              .tag = "T",
                              .caption = tr("Group Type:"),
                              .initial = "D",
                              .options = {{"D", tr("Domain Name")},
                                          {"I", tr("IP Address")},
                                          {"R", tr("IP Range")},
                                          {"P", tr("Patron Group")}}}};
    // Addresses are kept in canonical form and shown in the one that people read.
    RowsField vsfDomain;
    RowsField vsfIPAddress;
    RowsField vsfIPRange;
    PickedField patronGroups{*this,
                             {.name = "fraPatronGroups", .tag = "SI"},
                             {.availableGrid = "vsfAvailablePatron",
                              .availableCaption = tr("Available Patron Groups"),
                              .selectedGrid = "vsfSelectedPatron",
                              .selectedCaption = tr("Selected Patron Groups")},
                             {.tags = {"AI", "AN", "SI", "SN"}}};
};

/// Access control groups: sets of domain names, addresses, address ranges or patron groups to which access is
/// granted. Only the members of the group's own type belong to it.
class frmSystem_AccessControlGroups : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_AccessControlGroups(Application& application, QWidget* parent);

protected:
    GridRow ReadRow(const Table& table) override;
    GridRow RowFromForm(const Table& table, const QString& key) const override;

private:
    AccessGroupForm& m_form = KeepForm<AccessGroupForm>();
};

} // namespace sysadmin
