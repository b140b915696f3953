#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

class QTabWidget;

namespace sysadmin {

struct AccessGroupForm : Form {
    TextField txtCode{
        *this,
        {.name = "txtCode", .tag = "C", .caption = tr("Group Code:"), .maxLength = 40, .required = true}};
    TextField txtName{
        *this,
        {.name = "txtName", .tag = "N", .caption = tr("Group Name:"), .maxLength = 100, .required = true}};
    ChoiceField cboGroupType{
        *this,
        {.name = "cboGroupType", .tag = "T", .caption = tr("Group Type:"), .initial = "D"},
        {{"D", tr("Domain Name")},
         {"I", tr("IP Address")},
         {"R", tr("IP Range")},
         {"P", tr("Patron Group")}}};
    // Keys: the name as it stands, the address in canonical form, the ends of a range in it.
    RowsField vsfDomain{*this, {.name = "vsfDomain", .accessible = tr("Domain names")}, {{tr("Name")}}};
    RowsField vsfIPAddress{
        *this, {.name = "vsfIPAddress", .accessible = tr("IP addresses")}, {{tr("IP Address")}}};
    RowsField vsfIPRange{*this, {.name = "vsfIPRange", .accessible = tr("IP ranges")}, {{tr("IP Range")}}};
    PickedField patronGroups{*this,
                             {.name = "fraPatronGroups"},
                             {.availableGrid = "vsfAvailablePatron",
                              .availableCaption = tr("Available Patron Groups"),
                              .selectedGrid = "vsfSelectedPatron",
                              .selectedCaption = tr("Selected Patron Groups")}};
};

/// Access control groups: sets of domain names, addresses, address ranges or patron groups to which access is
/// granted. Only the members of the group's own type belong to it.
class frmSystem_AccessControlGroups : public MaintenanceScreen {
    Q_OBJECT

public:
    frmSystem_AccessControlGroups(Application& application, QWidget* parent);
    ~frmSystem_AccessControlGroups() override;

protected:
    GridRow ReadRow(const Table& table) override;
    void ReadRecord(Table& table) override;
    void ReadAvailable(Table& table) override;
    GridRow RowFromForm(const Table& table, const QString& key) const override;
    void RefreshOwnControls() override;

private:
    /// The list of a kind of members with its buttons.
    struct Members {
        RowsField* field = nullptr;
        ListGrid* grid = nullptr;
        QPushButton* add = nullptr;
        QPushButton* modify = nullptr;
        QPushButton* remove = nullptr;
        void (frmSystem_AccessControlGroups::*edit)(const QString& key) = nullptr;
    };

    QWidget* MakeButtons(const QString& role);
    void ConnectMembers(Members& members);
    void ShowType();
    // The dialogs of the three kinds; `key` is the row being changed, empty for a new one.
    void EditDomain(const QString& key);
    void EditAddress(const QString& key);
    void EditRange(const QString& key);

    AccessGroupForm m_form;
    QList<Members> m_members;
    QTabWidget* m_tabs = nullptr;
};

} // namespace sysadmin
