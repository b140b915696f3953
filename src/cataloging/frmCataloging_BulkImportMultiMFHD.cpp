#include "cataloging/frmCataloging_BulkImportMultiMFHD.h"

#include "cataloging/CopyMethods.h"
#include "cataloging/frmCataloging_BulkImportSingleMFHD.h"
#include "framework/FormDialog.h"
#include "framework/forms/Rules.h"

namespace sysadmin {

namespace bulkimport = wire::bulkimport;

namespace {

/// What a subfield of the repeated field is.
struct SubfieldCaption {
    const char* name; ///< of the setting
    const char* caption;
    bool ofItem; ///< else of the holdings record
};

constexpr SubfieldCaption Captions[] = {
    {"SubLocCode", QT_TRANSLATE_NOOP("Form", "Location Code:"), false},
    {"SubMfhdCopyNumber", QT_TRANSLATE_NOOP("Form", "MFHD Copy Number:"), false},
    {"SubCNPrefix", QT_TRANSLATE_NOOP("Form", "Call Number Prefix:"), false},
    {"SubCNSuffix", QT_TRANSLATE_NOOP("Form", "Call Number Suffix:"), false},
    {"SubControlNumber", QT_TRANSLATE_NOOP("Form", "Shelving Control Number:"), false},
    {"SubFormTitle", QT_TRANSLATE_NOOP("Form", "Shelving Form of Title:"), false},
    {"SubPieceDes", QT_TRANSLATE_NOOP("Form", "Piece Designation:"), false},
    {"SubPublicNote", QT_TRANSLATE_NOOP("Form", "Public Note:"), false},
    {"SubNonPublicNote", QT_TRANSLATE_NOOP("Form", "Nonpublic Note:"), false},
    {"SubBarCode", QT_TRANSLATE_NOOP("Form", "Barcode:"), true},
    {"SubItemType", QT_TRANSLATE_NOOP("Form", "Item Type:"), true},
    {"SubCopyNumber", QT_TRANSLATE_NOOP("Form", "Copy Number:"), true},
    {"SubEnum", QT_TRANSLATE_NOOP("Form", "Enumeration:"), true},
    {"SubChron", QT_TRANSLATE_NOOP("Form", "Chronology:"), true},
    {"SubYear", QT_TRANSLATE_NOOP("Form", "Year:"), true},
    {"SubCaption", QT_TRANSLATE_NOOP("Form", "Caption:"), true},
    {"SubFreetext", QT_TRANSLATE_NOOP("Form", "Free Text:"), true},
    {"SubNote", QT_TRANSLATE_NOOP("Form", "Note:"), true},
    {"SubChgNote", QT_TRANSLATE_NOOP("Form", "Charge Note:"), true},
    {"SubPrice", QT_TRANSLATE_NOOP("Form", "Price:"), true},
    {"SubPieces", QT_TRANSLATE_NOOP("Form", "Pieces:"), true},
};

QString TagOf(const QString& name) {
    for (const bulkimport::Setting& setting : bulkimport::SettingsOf(bulkimport::Setting::Part::Multiple))
        if (setting.name == name)
            return setting.tag;
    return {};
}

} // namespace

MultipleHoldingsForm::MultipleHoldingsForm()
    : mainField(*this, {.name = "mainField", .caption = tr("Repeated field:")},
                {.field = {"CCMI_M_FIELD", "txtMainField"},
                 .indicator1 = {"CCMI_M_IND1", "txtMainIndicator1"},
                 .indicator2 = {"CCMI_M_IND2", "txtMainIndicator2"}})
    , subfields([this] {
        std::vector<std::unique_ptr<MarcPartField>> all;
        for (const SubfieldCaption& subfield : Captions)
            all.push_back(std::make_unique<MarcPartField>(*this,
                                                          FieldSpec{.name = QString("txt") + subfield.name,
                                                                    .tag = TagOf(subfield.name),
                                                                    .caption = tr(subfield.caption)},
                                                          MarcPartField::Part::Subfield));
        return all;
    }())
    , cboCopyNumMethod(*this, {.name = "cboCopyNumMethod",
                               .tag = "CCMI_CPN_MTD",
                               .caption = tr("Items without a copy number:"),
                               .options = CopyMethods()})
    , txtCopyNumStart(*this, {.name = "txtCopyNumStart",
                              .tag = "CCMI_CPN_STRT",
                              .caption = tr("Start at:"),
                              .most = bulkimport::MostCopyNumber})
    , chkCollapseMFHDS(*this, {.name = "chkCollapseMFHDS",
                               .tag = "CCMI_C_MUF",
                               .caption = tr("Collapse MFHDs"),
                               .toolTip = tr("One MFHD for all fields with the same location")})
    , location(*this, {.name = "location", .caption = tr("Location of other items:")}, LocationPlaceSpec()) {
    When([this] { return cboCopyNumMethod.IsBlank(); }).Disable(txtCopyNumStart);
}

Layout MultipleHoldingsForm::Draw() {
    const auto boxes = [this](bool ofItem) {
        QList<Layout> drawn;
        for (size_t i = 0; i < subfields.size(); ++i)
            if (Captions[i].ofItem == ofItem)
                drawn.append(*subfields[i]);
        QList<Layout> pairs;
        for (qsizetype i = 0; i < drawn.size(); i += 2)
            pairs.append(Beside(drawn.mid(i, 2)));
        return pairs;
    };
    QList<Layout> itemParts = boxes(true);
    itemParts << cboCopyNumMethod << txtCopyNumStart;
    QList<Layout> holdingsParts = boxes(false);
    holdingsParts << chkCollapseMFHDS;
    return Below({mainField,
                  Beside({Frame("fraHoldingsSubfields", tr("Subfields of the MFHD"), holdingsParts),
                          Frame("fraItemSubfields", tr("Subfields of the item"), itemParts)}),
                  location});
}

bool MultipleHoldingsForm::Edit(Prompter& prompter, QWidget* parent) {
    FormDialog dialog(prompter, *this, Draw(),
                      {.name = "frmCataloging_BulkImportMultiMFHD",
                       .title = tr("Bulk Import Multiple MFHD"),
                       .helpContext = 50435},
                      parent);
    return prompter.RunDialog(dialog);
}

} // namespace sysadmin
