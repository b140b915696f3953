#include "cataloging/frmCataloging_BulkImportSingleMFHD.h"

#include "framework/FormDialog.h"

namespace sysadmin {

MarcPlaceSpec LocationPlaceSpec() {
    return {.field = {"DLF", "txtLocField"},
            .indicator1 = {"LI1", "txtLocIndicator1"},
            .indicator2 = {"LI2", "txtLocIndicator2"},
            .subfield = {"DLS", "txtLocSubField"}};
}

SingleHoldingsForm::SingleHoldingsForm()
    : location(*this, {.name = "location", .caption = tr("Location:")}, LocationPlaceSpec()) {}

bool SingleHoldingsForm::Edit(Prompter& prompter, QWidget* parent) {
    FormDialog dialog(prompter, *this, Below({location}),
                      {.name = "frmCataloging_BulkImportSingleMFHD",
                       .title = tr("Bulk Import Single MFHD"),
                       .helpContext = 50434},
                      parent);
    return prompter.RunDialog(dialog);
}

} // namespace sysadmin
