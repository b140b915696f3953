#pragma once

#include "framework/forms/Layout.h"
#include "framework/forms/PutList.h"

namespace sysadmin {

/// What the address of a location and the library's own have in common.
struct PostalForm : Form {
    TextField txtContact;
    TextField txtEmail{*this,
                       {.name = "txtEmail", .tag = "EMl", .caption = tr("E-mail:"), .maxLength = NameLength}};
    TextField txtAddress1{
        *this,
        {.name = "txtAddress1", .tag = "Adr1", .caption = tr("Address:"), .maxLength = AddressLineLength}};
    // The further lines stand below the first one, each with a name of its own for who cannot see that.
    TextField txtAddress2{*this,
                          {.name = "txtAddress2",
                           .tag = "Adr2",
                           .caption = " ",
                           .maxLength = AddressLineLength,
                           .accessible = tr("Address line 2")}};
    TextField txtAddress3{*this,
                          {.name = "txtAddress3",
                           .tag = "Adr3",
                           .caption = " ",
                           .maxLength = AddressLineLength,
                           .accessible = tr("Address line 3")}};
    TextField txtAddress4{*this,
                          {.name = "txtAddress4",
                           .tag = "Adr4",
                           .caption = " ",
                           .maxLength = AddressLineLength,
                           .accessible = tr("Address line 4")}};
    TextField txtAddress5{*this,
                          {.name = "txtAddress5",
                           .tag = "Adr5",
                           .caption = " ",
                           .maxLength = AddressLineLength,
                           .accessible = tr("Address line 5")}};
    TextField txtCity{
        *this, {.name = "txtCity", .tag = "City", .caption = tr("City:"), .maxLength = AddressLineLength}};
    TextField txtState;
    TextField txtZip{
        *this,
        {.name = "txtZip", .tag = "Zip", .caption = tr("Zip/Postal Code:"), .maxLength = PostalCodeLength}};
    TextField txtCountry{
        *this,
        {.name = "txtCountry", .tag = "Cty", .caption = tr("Country:"), .maxLength = AddressLineLength}};
    TextField txtSAN{
        *this, {.name = "txtSAN", .tag = "SAN", .caption = tr("SAN:"), .maxLength = StandardNumberLength}};

    /// The tag of the contact's name and the caption of the state differ.
    PostalForm(const QString& contactTag, const QString& stateCaption);

    /// Contact to standard address number, in the order in which they travel.
    QList<Field*> PostalFields();
    QList<Layout> PostalLayout();
    /// Empties every control, as an operator would.
    void EmptyDrafts();
};

} // namespace sysadmin
