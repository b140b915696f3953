#pragma once

#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"

namespace sysadmin {

/// The access control groups whose catalogue follows a sort group; a group is shown with its type.
class UsingGroupsField : public PickedField {
public:
    using PickedField::PickedField;
    void Load(RequestChannel& channel) override;
};

struct SortGroupForm : Form {
    /// Puts both lists of locations, the selected ones each with its state and its place, counted from 1.
    void PutLocations(RequestChannel& channel) const;

    TextField txtCode{*this,
                      {.name = "txtCode",
                       .tag = "SGCD",
                       .caption = tr("Sort Group Code:"),
                       .maxLength = TextLength,
                       .required = true}};
    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "SGNM",
                       .caption = tr("Sort Group Name:"),
                       .maxLength = NameLength,
                       .required = true}};
    FlagField chkDefault{
        *this,
        {.name = "chkDefault",
         .tag = "SGDEF",
         .caption = tr("Default Sort Group"),
         .toolTip = tr("There is always one: marking another sort group takes the mark from this one.")}};
    PickedField locations{*this,
                          {.name = "fraLocations", .tag = "SGSI"},
                          {.availableGrid = "vsfAvailableLocations",
                           .availableCaption = tr("Available Locations"),
                           .selectedGrid = "vsfSelectedLocations",
                           .selectedCaption = tr("Selected Locations")},
                          {.tags = {"SGAI", "SGAN", "SGSI", "SGSN"}, .ranked = true}};
    UsingGroupsField groups{*this,
                            {.name = "fraGroups", .tag = "SAGID"},
                            {.availableGrid = "vsfAvailableGroups",
                             .availableCaption = tr("Available Groups"),
                             .selectedGrid = "vsfSelectedGroups",
                             .selectedCaption = tr("Selected Groups"),
                             .select = "cmdSelectGroup",
                             .selectAll = "cmdSelectAllGroups",
                             .discard = "cmdDiscardGroup",
                             .discardAll = "cmdDiscardAllGroups"},
                            {.tags = {"AAGID", "AGN", "SAGID", "SGN"}}};
};

/// Holdings sort groups: in which order the public catalogue shows a title's holdings, and to whom. The list
/// is in the order in which the groups are tried.
class frmOPAC_HoldGroup : public MaintenanceScreen {
    Q_OBJECT

public:
    frmOPAC_HoldGroup(Application& application, QWidget* parent);

protected:
    bool GoOnWithoutAvailable(Table& table, qint16 status) override;

private:
    SortGroupForm& m_form = KeepForm<SortGroupForm>();
};

} // namespace sysadmin
