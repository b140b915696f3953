#pragma once

#include "circulation/PolicyCalendars.h"
#include "circulation/PolicyLocations.h"
#include "circulation/frmCirculation_PolDefItemSettings.h"
#include "circulation/frmCirculation_PolDefLocationSettings.h"
#include "circulation/frmCirculation_PolDefPatronSettings.h"
#include "framework/forms/DeclaredForm.h"
#include "framework/forms/Layout.h"

namespace sysadmin {

/// The forms of the dialogs that edit a policy group's rows. They outlive the form of the group.
struct PolicyDialogs {
    std::shared_ptr<LocationSettingsForm> location = std::make_shared<LocationSettingsForm>();
    std::shared_ptr<PatronRulesForm> patron = std::make_shared<PatronRulesForm>();
    std::shared_ptr<ItemSettingsForm> item = std::make_shared<ItemSettingsForm>();
    std::shared_ptr<ItemSettingsForm> items = std::make_shared<ItemSettingsForm>(); ///< several at once
};

/// A circulation policy group.
struct PolicyForm : Form {
    explicit PolicyForm(const PolicyDialogs& dialogs);

    /// Reads what a new group may have, with nothing selected.
    void LoadAvailable(RequestChannel& channel);
    /// The item types that the group lends as short loans, as the rows stand now.
    QSet<QString> ShortLoans() const;
    /// The page of the group-wide settings.
    Layout SettingsPage() const;
    /// Their steps of a save, in order.
    QList<PutStep> SettingPuts() const;

    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Circ Group Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")}}};
    PolicyLocationsField locations;
    /// One of the selected circulation desks; which one it is stands in the locations' settings.
    ChoiceField cboOPACCircDesk{
        *this,
        {.name = "cboOPACCircDesk",
         .caption = tr("OPAC Circulation Desk:"),
         .toolTip = tr("The circulation desk that the public catalogue's requests go to. There is one in a "
                       "cluster: another policy group's desk loses the mark.")}};
    PolicyCalendarsField calendars;
    SettingsRows vsfPatrons;
    SettingsRows vsfItems;
    std::vector<std::unique_ptr<Field>> settings;
    PolicyAlertsField alerts;

private:
    void ShowOpacDesk();
};

} // namespace sysadmin
