#pragma once

#include "cataloging/MarcPartField.h"
#include "framework/MarcPlaceField.h"
#include "framework/forms/Layout.h"

#include <memory>
#include <vector>

class QWidget;

namespace sysadmin {

class Prompter;

/// The field that is repeated for each holdings record or item, and what its subfields are: the dialog
/// "frmCataloging_BulkImportMultiMFHD".
struct MultipleHoldingsForm : Form {
    MultipleHoldingsForm();
    /// True when the operator confirmed what is entered.
    bool Edit(Prompter& prompter, QWidget* parent);

    MarcPlaceField mainField;
    /// One subfield code for each part of a holdings record and of an item.
    std::vector<std::unique_ptr<MarcPartField>> subfields;
    ChoiceField cboCopyNumMethod;
    NumberField txtCopyNumStart;
    FlagField chkCollapseMFHDS;
    MarcPlaceField location;

private:
    Layout Draw();
};

} // namespace sysadmin
