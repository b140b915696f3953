#include "cataloging/frmCataloging_BulkImportCopyNumberingSettings.h"

#include "cataloging/CopyMethods.h"
#include "framework/FormDialog.h"
#include "framework/forms/Rules.h"

namespace sysadmin {

namespace bulkimport = wire::bulkimport;

CopyNumbersForm::CopyNumbersForm()
    : place(*this, {.name = "copyNumber", .caption = tr("Copy Number:")},
            {.field = {"ICNF", "txtCopyNumFld"},
             .indicator1 = {"ICI1", "txtCopyNumInd1"},
             .indicator2 = {"ICI2", "txtCopyNumInd2"},
             .subfield = {"ICSF", "txtCopyNumSubf"},
             .blankIndicator = bulkimport::BlankIndicator})
    , cboCopyNumMethod(
          *this,
          {.name = "cboCopyNumMethod", .tag = "ICMD", .caption = tr("Otherwise:"), .options = CopyMethods()})
    , txtCopyNumStart(*this, {.name = "txtCopyNumStart",
                              .tag = "ICST",
                              .caption = tr("Start at:"),
                              .most = bulkimport::MostCopyNumber}) {
    When([this] { return cboCopyNumMethod.IsBlank(); }).Disable(txtCopyNumStart);
}

bool CopyNumbersForm::Edit(Prompter& prompter, QWidget* parent) {
    FormDialog dialog(prompter, *this, Below({place, cboCopyNumMethod, txtCopyNumStart}),
                      {.name = "frmCataloging_BulkImportCopyNumberingSettings",
                       .title = tr("Bulk Import Copy Numbering Settings"),
                       .helpContext = 50436},
                      parent);
    return prompter.RunDialog(dialog);
}

} // namespace sysadmin
