#include "cataloging/ImportRuleForm.h"

#include "framework/forms/Rules.h"
#include "wire/DuplicateDetection.h"

#include <algorithm>

namespace sysadmin {

namespace {

QList<PickItem> ModeOptions() {
    return {{"0", Form::tr("Load Bib / Auth Only")},
            {"1", Form::tr("Bibs, MFHDs")},
            {"2", Form::tr("Bibs, MFHDs, POs")},
            {"3", Form::tr("Bibs, MFHDs, Items")},
            {"4", Form::tr("Bibs, MFHDs, POs, Items")},
            {"5", Form::tr("Bibs, MFHDs, POs")},
            {"6", Form::tr("Bibs, MFHDs, multiple Items")},
            {"7", Form::tr("Bibs, MFHDs, multiple Items, POs")},
            {"8", Form::tr("Update previously loaded MFHDs and/or Items")}};
}

/// Where a value is looked for that sets a flag of a single item.
MarcPlaceSpec FlagPlace(const QString& tag, const QString& role) {
    return {.field = {tag + "F", "txt" + role + "Field"},
            .indicator1 = {tag + "I1", "txt" + role + "Indicator1"},
            .indicator2 = {tag + "I2", "txt" + role + "Indicator2"},
            .subfield = {tag + "S", "txt" + role + "Subfield"},
            .order = {tag + "F", tag + "S", tag + "I1", tag + "I2"}};
}

FieldSpec MatchSpec(const QString& name, const QString& tag, const QString& whose) {
    return {.name = name,
            .tag = tag,
            .caption = Form::tr("Value to match:"),
            .maxLength = bulkimport::ValueLength,
            .accessible = whose};
}

} // namespace

ImportRuleForm::ImportRuleForm()
    : txtRuleCode(*this, {.name = "txtRuleCode",
                          .tag = "BIC",
                          .caption = tr("Code:"),
                          .maxLength = bulkimport::CodeLength,
                          .required = true,
                          .column = {tr("Codes"), 120}})
    , txtRuleName(*this, {.name = "txtRuleName",
                          .tag = "BIN",
                          .caption = tr("Name:"),
                          .maxLength = bulkimport::NameLength,
                          .required = true,
                          .column = {tr("Names")}})
    , cboBibDupProfile(*this, {.name = "cboBibDupProfile", .tag = "SI", .caption = tr("Bib Dup Profile:")})
    , cboAuthDupProfile(*this, {.name = "cboAuthDupProfile", .tag = "AI", .caption = tr("Auth Dup Profile:")})
    , cboOwningLibrary(*this, {.name = "cboOwningLibrary", .tag = "SLI", .caption = tr("Owning Library:")})
    , cboCharSet(*this, {.name = "cboCharSet",
                         .tag = "CSID",
                         .caption = tr("Expected Character Set Mapping of Imported Records:"),
                         .source = {.request = "GETCHARSETS",
                                    .idTag = "CSID",
                                    .textTag = "CSN",
                                    .none = tr("<as the record says>"),
                                    .caption = "Load Character Sets"}})
    , chkBatchOpacSuppress(
          *this, {.name = "chkBatchOpacSuppress", .tag = "DOS", .caption = tr("Batch Opac Suppress")})
    , chkIgnoreOPACSuppress(*this,
                            {.name = "chkIgnoreOPACSuppress",
                             .tag = "RIOS",
                             .caption = tr("Leave OPAC Suppress Unchanged for Replaced and Merged Records")})
    , optBulkLoad(
          *this,
          {.name = "optBulkLoad", .initial = "0", .accessible = tr("Load Mode"), .options = ModeOptions()})
    , chkUse4DupBibs(
          *this,
          {.name = "chkUse4DupBibs", .tag = "U4DB", .caption = tr("Create PO/MFHD/Item for existing Bibs")})
    , chkCopy852(*this, {.name = "chkCopy852",
                         .tag = "C852",
                         .caption = tr("Copy 852-855, 863-878 Fields From Bib to MFHD")})
    , chkCopy856(*this,
                 {.name = "chkCopy856", .tag = "C856", .caption = tr("Copy 856 Field From Bib to MFHD")})
    , chkOnePOPerBib(*this, {.name = "chkOnePOPerBib",
                             .tag = "IR_ONE_PER_BIB",
                             .caption = tr("Create one PO per bibliographic record")})
    , chkAutoApprove(
          *this,
          {.name = "chkAutoApprove", .tag = "IR_AUTO_APPR", .caption = tr("Automatically Approve all POs")})
    , vsfItemType(*this, {.grid = "vsfItemType",
                          .role = "ItemType",
                          .tags = "DI",
                          .what = tr("Item Type Field"),
                          .dialog = {.name = "frmCataloging_BulkImportItemType",
                                     .title = tr("Bulk Import Item Type Field"),
                                     .helpContext = 50431}})
    , vsfMapping(*this)
    , vsfBarcode(*this, {.grid = "vsfBarcode",
                         .role = "Barcode",
                         .tags = "DB",
                         .what = tr("Barcode Field"),
                         .dialog = {.name = "frmCataloging_BulkImportBarcode",
                                    .title = tr("Bulk Import Barcode Field"),
                                    .helpContext = 50432}})
    , chkCatalogingReview(*this,
                          {.name = "chkCatalogingReview", .tag = "DCR", .caption = tr("Cataloging Review")})
    , chkAtBindery(*this, {.name = "chkAtBindery", .tag = "CCIS_BIN", .caption = tr("At Bindery")})
    , chkCircReview(*this,
                    {.name = "chkCircReview", .tag = "CCIS_CIRC_REV", .caption = tr("Circulation Review")})
    , chkDamaged(*this, {.name = "chkDamaged", .tag = "CCIS_DMG", .caption = tr("Damaged")})
    , chkInProcess(*this, {.name = "chkInProcess", .tag = "CCIS_IP", .caption = tr("In Process")})
    , chkLost(*this, {.name = "chkLost", .tag = "CCIS_LLA", .caption = tr("Lost - Library Applied")})
    , chkMissing(*this, {.name = "chkMissing", .tag = "CCIS_MIS", .caption = tr("Missing")})
    , chkWithdrawn(*this, {.name = "chkWithdrawn", .tag = "CCIS_WD", .caption = tr("Withdrawn")})
    , magneticMedia(*this, {.name = "magneticMedia", .accessible = tr("Magnetic Media")},
                    FlagPlace("IR_MM", "Magnetic"))
    , txtMagneticMatch(*this, MatchSpec("txtMagneticMatch", "IR_MMM", tr("Magnetic Media")))
    , sensitize(*this, {.name = "sensitize", .accessible = tr("Sensitize")}, FlagPlace("IR_S", "Sensitize"))
    , txtSensitizeMatch(*this, MatchSpec("txtSensitizeMatch", "IR_SM", tr("Sensitize")))
    , location(*this, bulkimport::Setting::Part::Location, tr("Single MFHD"))
    , multiple(*this, bulkimport::Setting::Part::Multiple, tr("Multiple MFHDs"))
    , copyNumbers(*this, bulkimport::Setting::Part::CopyNumbers, tr("Copy Numbers"))
    , orders(*this, bulkimport::Setting::Part::Orders, tr("Orders"))
    , handling(*this, {.accessible = tr("Duplicate Handling")}) {
    FollowMode();
}

void ImportRuleForm::FollowMode() {
    When([this] { return !optBulkLoad.CreatesOrders(); })
        .Disable(chkOnePOPerBib, chkAutoApprove)
        .Set(chkOnePOPerBib, "N")
        .Set(chkAutoApprove, "N");
    When([this] { return !optBulkLoad.IsSingle(); }).Disable(chkCopy852).Set(chkCopy852, "N");
    When([this] { return optBulkLoad.IsBibsOnly(); }).Disable(chkCopy856).Set(chkCopy856, "N");
    When([this] {
        return optBulkLoad.IsBibsOnly() || handling.Draft() == wire::duplicates::handling::AddUnconditional;
    })
        .Disable(chkUse4DupBibs)
        .Set(chkUse4DupBibs, "N");
}

QStringList ImportRuleForm::Shortcomings() const {
    const auto lacks = [](const ImportSettings& part, std::initializer_list<const char*> names) {
        return std::any_of(names.begin(), names.end(),
                           [&](const char* name) { return part.Value(name).isEmpty(); });
    };
    const bulkimport::LoadMode* mode = optBulkLoad.Mode();
    QStringList texts;
    if (mode && mode->CreatesHoldings() && !vsfMapping.HasCatchAll())
        texts << tr("When adding MFHDs or Items, you must have the default mapping type entry of * for Marc "
                    "Item and * for Marc location.");
    if (optBulkLoad.CreatesOrders() && lacks(orders, {"CodeVendor", "DefaultCodeFund"}))
        texts << tr("When adding POs, you must specify a Vendor and a default Fund Code.");
    if (optBulkLoad.IsMultiple() && lacks(multiple, {"MainField", "SubLocCode"}))
        texts << tr("When one of the Multiple MFHD/Items options is selected, the tag and location on the "
                    "\"Multiple\" pop-up must be filled in.");
    if (optBulkLoad.IsSingle() && lacks(location, {"LocField", "LocSubField"}))
        texts << tr("When one of the Single MFHD options is selected, the location and subfield on the "
                    "\"Single\" pop-up must be filled in.");
    return texts;
}

QList<PutStep> ImportRuleForm::Puts() const {
    QList<PutStep> puts{OnUpdate(PutOriginalKey("BII"))};
    for (const Field* field : std::initializer_list<const Field*>{&cboBibDupProfile,
                                                                  &cboAuthDupProfile,
                                                                  &cboOwningLibrary,
                                                                  &cboCharSet,
                                                                  &chkBatchOpacSuppress,
                                                                  &chkIgnoreOPACSuppress,
                                                                  &chkCatalogingReview,
                                                                  &chkAtBindery,
                                                                  &chkCircReview,
                                                                  &chkDamaged,
                                                                  &chkInProcess,
                                                                  &chkLost,
                                                                  &chkMissing,
                                                                  &chkWithdrawn,
                                                                  &magneticMedia,
                                                                  &txtMagneticMatch,
                                                                  &sensitize,
                                                                  &txtSensitizeMatch,
                                                                  &optBulkLoad,
                                                                  &chkUse4DupBibs,
                                                                  &chkCopy852,
                                                                  &chkCopy856,
                                                                  &chkOnePOPerBib,
                                                                  &chkAutoApprove,
                                                                  &vsfItemType,
                                                                  &vsfBarcode,
                                                                  &vsfMapping,
                                                                  &location,
                                                                  &multiple,
                                                                  &copyNumbers,
                                                                  &orders})
        puts.append(PutValue(*field));
    return puts << PutDraft("NNm", txtRuleName) << PutDraft("NCd", txtRuleCode);
}

} // namespace sysadmin
