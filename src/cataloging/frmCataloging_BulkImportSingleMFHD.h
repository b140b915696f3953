#pragma once

#include "framework/MarcPlaceField.h"

class QWidget;

namespace sysadmin {

class Prompter;

/// Where a record with one holdings record has its location: the dialog "frmCataloging_BulkImportSingleMFHD".
struct SingleHoldingsForm : Form {
    SingleHoldingsForm();
    /// True when the operator confirmed what is entered.
    bool Edit(Prompter& prompter, QWidget* parent);

    MarcPlaceField location;
};

/// The field of the location, which other dialogs edit as well.
MarcPlaceSpec LocationPlaceSpec();

} // namespace sysadmin
