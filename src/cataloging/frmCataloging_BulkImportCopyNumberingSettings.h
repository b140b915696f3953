#pragma once

#include "framework/MarcPlaceField.h"
#include "framework/forms/ValueFields.h"

class QWidget;

namespace sysadmin {

class Prompter;

/// Where a record has an item's copy number, and which one it gets otherwise: the dialog
/// "frmCataloging_BulkImportCopyNumberingSettings".
struct CopyNumbersForm : Form {
    CopyNumbersForm();
    /// True when the operator confirmed what is entered.
    bool Edit(Prompter& prompter, QWidget* parent);

    MarcPlaceField place;
    ChoiceField cboCopyNumMethod;
    NumberField txtCopyNumStart;
};

} // namespace sysadmin
