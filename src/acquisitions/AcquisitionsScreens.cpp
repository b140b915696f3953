#include "acquisitions/AcquisitionsScreens.h"

#include "acquisitions/frmAcquisitions_FiscalTypes.h"
#include "acquisitions/frmAcquisitions_FundTypes.h"
#include "acquisitions/frmAcquisitions_PolicyDefinitions.h"
#include "core/ScreenCatalogue.h"
#include "core/data/Tr.h"
#include "framework/PlainScreens.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

FieldDeclaration NameField(const QString& tag, const QString& caption) {
    return Declare<TextField>({.name = "txtName",
                               .tag = tag,
                               .caption = caption,
                               .maxLength = TextLength,
                               .required = true,
                               .column = {Tr("Names")},
                               .changedTag = "NNm"});
}

/// The code that stands for a record in electronic messages.
FieldDeclaration EdiCodeField(const QString& tag) {
    return Declare<TextField>(
        {.name = "txtEDICode", .tag = tag, .caption = Tr("EDI Code:"), .maxLength = EdiCodeLength});
}

/// Why the price of an order or invoice differs, and how that reads in electronic messages.
PlainTable AdjustReasons() {
    return {{"Acquisitions_AdjustReasons", 50301, Tr("Adjust Reasons"), Area::Acquisitions},
            {.subject = Tr("Adjust Reason"), .word = "Adj", .plural = "Acquisitions Adjust Reason"},
            {NameField("T", Tr("Adjust Reason Text :")), EdiCodeField("EC"),
             Declare<LetterField>({.name = "optKind",
                                   .tag = "CC",
                                   .caption = Tr("Kind:"),
                                   .initial = "C",
                                   .options = {{"C", Tr("Charge")}, {"A", Tr("Allowance")}}}),
             Declare<ChoiceField>(
                 {.name = "cboVendor",
                  .tag = "V",
                  .caption = Tr("Vendor:"),
                  .source = {.request = "LstVen", .none = Tr("(all vendors)"), .caption = "Get Vendors"}})}};
}

/// What the library claims from a vendor.
PlainTable ClaimTypes() {
    return {{"Acquisitions_ClaimTypes", 50302, Tr("Acquisitions Claim Types"), Area::Acquisitions},
            {.subject = Tr("Claim Type"),
             .word = "Clm",
             .plural = "Acquisitions Claim Types",
             .saveCaption = "Save Acquisitions Claim Type",
             .deleteCaption = "Delete Acquisitions Claim Type",
             .pickLists = {"cboClaimType"},
             .pickTag = "D"},
            {NameField("D", Tr("Claim Description:")), EdiCodeField("E")}};
}

/// Why a received issue or line item is set aside, and the claim that follows from it.
PlainTable MarkReasons() {
    return {{"Acquisitions_MarkReasons", 50305, Tr("Acquisitions Mark Reason"), Area::Acquisitions},
            {.subject = Tr("Mark Reason"),
             .word = "Mark",
             .plural = "Acquisitions Mark Reason",
             .loadCaption = "Load Acquisitions Mark Reasons"},
            {NameField("Nm", Tr("Mark Reason Name:")),
             Declare<ChoiceField>({.name = "cboClaimType",
                                   .tag = "C",
                                   .caption = Tr("Claim Type:"),
                                   .source = {.request = "LstClm",
                                              .textTag = "D",
                                              .pickList = "cboClaimType",
                                              .none = Tr("(none)"),
                                              .unableToLoad = Tr("Available Mark Reasons")}})}};
}

/// Types of purchase orders; a type is known by a number.
PlainTable POTypes() {
    return {{"Acquisitions_POTypes", 50306, Tr("Acquisitions Po Types"), Area::Acquisitions},
            {.subject = Tr("PO Type"), .word = "POTp", .plural = "Acquisitions PO Types", .recordTag = "T"},
            {NameField("D", Tr("PO Type Name:"))}};
}

/// The answers that vendors give to claims.
PlainTable VendorReports() {
    return {{"Acquisitions_VendorReports", 50308, Tr("Acquisitions Vendor Reports"), Area::Acquisitions},
            {.subject = Tr("Vendor Report"), .word = "VRpt", .plural = "Acquisitions Vendor Reports"},
            {NameField("Nm", Tr("Report Name:")), EdiCodeField("E")}};
}

/// Keyed by their code, which may change.
PlainTable VendorTypes() {
    return {
        {"Acquisitions_VendorTypes", 50300, Tr("Acquisitions Vendor Type"), Area::Acquisitions},
        {.subject = Tr("Vendor Type"),
         .word = "VenTp",
         .plural = "Acquisitions Vendor Types",
         .recordTag = "Cd",
         .wholeRows = true,
         .originalTag = "OCd",
         .deleteWords =
             {{wire::status::InUse,
               {Tr("This vendor type cannot be deleted while\r\nthere are vendor records assigned to it."),
                Tr("Cannot Delete Vendor Type")}}},
         .morePuts = {OnUpdate(PutConstant("NCd", "N"))},
         .putOrder = {"Cd", "Nm", "NCd", "NNm", "OCd"}},
        {Declare<TextField>({.name = "txtCode",
                             .tag = "Cd",
                             .caption = Tr("Vendor Type Code:"),
                             .maxLength = 10,
                             .required = true,
                             .column = {Tr("Codes"), 120}}),
         NameField("Nm", Tr("Vendor Type Name:"))}};
}

} // namespace

void AddAcquisitionsScreens(ScreenCatalogue& catalogue) {
    for (const PlainTable& table :
         {AdjustReasons(), ClaimTypes(), MarkReasons(), POTypes(), VendorReports(), VendorTypes()})
        catalogue.Contribute(table);
    catalogue.Contribute<frmAcquisitions_FiscalTypes>("Acquisitions_FiscalTypes", 50303);
    catalogue.Contribute<frmAcquisitions_FundTypes>("Acquisitions_FundTypes", 50304);
    catalogue.Contribute<frmAcquisitions_PolicyDefinitions>("Acquisitions_PolicyDefinitions", 50307);
}

} // namespace sysadmin
