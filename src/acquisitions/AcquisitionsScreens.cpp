#include "acquisitions/AcquisitionsScreens.h"

#include "acquisitions/frmAcquisitions_FiscalTypes.h"
#include "acquisitions/frmAcquisitions_FundTypes.h"
#include "acquisitions/frmAcquisitions_PolicyDefinitions.h"
#include "core/ScreenCatalogue.h"
#include "framework/PlainScreens.h"
#include "wire/Status.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("Acquisitions", text);
}

FieldDeclaration NameField(const QString& tag, const QString& caption) {
    return Declare<TextField>({.name = "txtName",
                               .tag = tag,
                               .caption = caption,
                               .maxLength = TextLength,
                               .required = true,
                               .column = {tr("Names")},
                               .changedTag = "NNm"});
}

/// The code that stands for a record in electronic messages.
FieldDeclaration EdiCodeField(const QString& tag) {
    return Declare<TextField>(
        {.name = "txtEDICode", .tag = tag, .caption = tr("EDI Code:"), .maxLength = EdiCodeLength});
}

/// Why the price of an order or invoice differs, and how that reads in electronic messages.
PlainTable AdjustReasons() {
    return {{"Acquisitions_AdjustReasons", 50301, tr("Adjust Reasons"), Area::Acquisitions},
            {.subject = tr("Adjust Reason"), .word = "Adj", .plural = "Acquisitions Adjust Reason"},
            {NameField("T", tr("Adjust Reason Text :")), EdiCodeField("EC"),
             Declare<LetterField>({.name = "optKind",
                                   .tag = "CC",
                                   .caption = tr("Kind:"),
                                   .initial = "C",
                                   .options = {{"C", tr("Charge")}, {"A", tr("Allowance")}}}),
             Declare<ChoiceField>(
                 {.name = "cboVendor",
                  .tag = "V",
                  .caption = tr("Vendor:"),
                  .source = {.request = "LstVen", .none = tr("(all vendors)"), .caption = "Get Vendors"}})}};
}

/// What the library claims from a vendor.
PlainTable ClaimTypes() {
    return {{"Acquisitions_ClaimTypes", 50302, tr("Acquisitions Claim Types"), Area::Acquisitions},
            {.subject = tr("Claim Type"),
             .word = "Clm",
             .plural = "Acquisitions Claim Types",
             .saveCaption = "Save Acquisitions Claim Type",
             .deleteCaption = "Delete Acquisitions Claim Type",
             .pickLists = {"cboClaimType"},
             .pickTag = "D"},
            {NameField("D", tr("Claim Description:")), EdiCodeField("E")}};
}

/// Why a received issue or line item is set aside, and the claim that follows from it.
PlainTable MarkReasons() {
    return {{"Acquisitions_MarkReasons", 50305, tr("Acquisitions Mark Reason"), Area::Acquisitions},
            {.subject = tr("Mark Reason"),
             .word = "Mark",
             .plural = "Acquisitions Mark Reason",
             .loadCaption = "Load Acquisitions Mark Reasons"},
            {NameField("Nm", tr("Mark Reason Name:")),
             Declare<ChoiceField>({.name = "cboClaimType",
                                   .tag = "C",
                                   .caption = tr("Claim Type:"),
                                   .source = {.request = "LstClm",
                                              .textTag = "D",
                                              .pickList = "cboClaimType",
                                              .none = tr("(none)"),
                                              .unableToLoad = tr("Available Mark Reasons")}})}};
}

/// Types of purchase orders; a type is known by a number.
PlainTable POTypes() {
    return {{"Acquisitions_POTypes", 50306, tr("Acquisitions Po Types"), Area::Acquisitions},
            {.subject = tr("PO Type"), .word = "POTp", .plural = "Acquisitions PO Types", .recordTag = "T"},
            {NameField("D", tr("PO Type Name:"))}};
}

/// The answers that vendors give to claims.
PlainTable VendorReports() {
    return {{"Acquisitions_VendorReports", 50308, tr("Acquisitions Vendor Reports"), Area::Acquisitions},
            {.subject = tr("Vendor Report"), .word = "VRpt", .plural = "Acquisitions Vendor Reports"},
            {NameField("Nm", tr("Report Name:")), EdiCodeField("E")}};
}

/// Keyed by their code, which may change.
PlainTable VendorTypes() {
    return {
        {"Acquisitions_VendorTypes", 50300, tr("Acquisitions Vendor Type"), Area::Acquisitions},
        {.subject = tr("Vendor Type"),
         .word = "VenTp",
         .plural = "Acquisitions Vendor Types",
         .recordTag = "Cd",
         .wholeRows = true,
         .originalTag = "OCd",
         .deleteWords =
             {{wire::status::InUse,
               {tr("This vendor type cannot be deleted while\r\nthere are vendor records assigned to it."),
                tr("Cannot Delete Vendor Type")}}},
         .morePuts = {OnUpdate(PutConstant("NCd", "N"))},
         .putOrder = {"Cd", "Nm", "NCd", "NNm", "OCd"}},
        {Declare<TextField>({.name = "txtCode",
                             .tag = "Cd",
                             .caption = tr("Vendor Type Code:"),
                             .maxLength = 10,
                             .required = true,
                             .column = {tr("Codes"), 120}}),
         NameField("Nm", tr("Vendor Type Name:"))}};
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
