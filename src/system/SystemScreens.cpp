#include "system/SystemScreens.h"

#include "core/ScreenCatalogue.h"
#include "framework/PlainScreens.h"
#include "system/frmSystem_AccessControlGroups.h"
#include "system/frmSystem_BaseCurrency.h"
#include "system/frmSystem_DefaultAdd.h"
#include "system/frmSystem_Events.h"
#include "system/frmSystem_FineFeeReasons.h"
#include "system/frmSystem_Locations.h"
#include "system/frmSystem_PrintLocations.h"
#include "system/frmTools_History.h"
#include "wire/Status.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("System", text);
}

/// What is counted, as it travels and as it is read.
QList<PickItem> CategoryKinds() {
    return {{"I", tr("Items")}, {"P", tr("Patrons")}};
}

/// The locations that belong to a record, of those that could.
FieldDeclaration PickedLocations() {
    return Declare<PickedField>({.name = "fraLocations", .tag = "SI"},
                                PickedNames{.availableGrid = "vsfAvailableLocations",
                                            .availableCaption = tr("Available Locations"),
                                            .selectedGrid = "vsfSelectedLocations",
                                            .selectedCaption = tr("Selected Locations")},
                                PickedSpec{.tags = {"AI", "AN", "SI", "SN", "LS"}});
}

/// A code table whose records also stand in pick-lists of other screens.
PlainTable ItemTypes() {
    return {{"System_ItemTypes", 50805, tr("System Item Types"), Area::System},
            {.subject = tr("Item Type"),
             .frameNoun = tr("Item Types"),
             .word = "ItmTp",
             .plural = "System Item Types",
             .editCaption = "Save System Item Types",
             .deleteCaption = "Edit Print Locations",
             .matchTag = "Cd",
             .pickLists = {"cboItemType", "cboTempItemType", "cboPrintGroups"},
             .pickTag = "Nm",
             .putOrder = {"Nm", "Cd", "Dsp"}},
            {Declare<TextField>({.name = "txtCode",
                                 .tag = "Cd",
                                 .caption = tr("Code:"),
                                 .maxLength = CodeLength,
                                 .required = true,
                                 .column = {tr("Codes"), 180}}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "Nm",
                                 .caption = tr("Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .column = {tr("Names")},
                                 .changedTag = "NNm"}),
             Declare<TextField>({.name = "txtDisplayName",
                                 .tag = "Dsp",
                                 .caption = tr("Display Name:"),
                                 .maxLength = NameLength})}};
}

/// System-wide switches that belong to no other screen.
PlainRecord Miscellaneous() {
    return {{"System_Misc", 50808, tr("System Miscellaneous"), Area::System},
            {.subject = tr("System Miscellaneous"),
             .word = "Msc",
             .plural = "System Miscellaneous",
             .frameNoun = tr("System Miscellaneous"),
             .frameEnd = {}},
            {Declare<FlagField>(
                 {.name = "chkCircHistory", .tag = "RP", .caption = tr("Retain Patron Id for Circ History")}),
             Declare<FlagField>({.name = "chkMediaHistory",
                                 .tag = "MP",
                                 .caption = tr("Retain Patron Id for Media Booking History")}),
             Declare<FlagField>({.name = "chkDistHistory",
                                 .tag = "D",
                                 .caption = tr("Retain Patron Id for Distribution History")}),
             Declare<FlagField>({.name = "chkDisplayHeadSubSep",
                                 .tag = "DSS",
                                 .caption = tr("Display Headings Subfield Separators")})}};
}

/// Location limit groups: named sets of locations.
PlainTable LocationLimitGroups() {
    return {{"System_LocLimitGroups", 50807, tr("System Location Limit Groups"), Area::System},
            {.subject = tr("Location Limit Group"),
             .frameIdle = tr("Location Limit Group"),
             .word = "Lmt",
             .plural = "System Location Limit Groups",
             .asksAvailable = true,
             .deleteCaption = "Edit Print Locations",
             .matchTag = "C",
             .putOrder = {"C", "N", "O", "SI"}},
            {Declare<TextField>({.name = "txtCode",
                                 .tag = "C",
                                 .caption = tr("Code:"),
                                 .maxLength = CodeLength,
                                 .required = true,
                                 .column = {tr("Codes"), 120}}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "N",
                                 .caption = tr("Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .column = {tr("Names")}}),
             Declare<FlagField>({.name = "chkCheck", .tag = "O", .caption = tr("Suppress in OPAC?")}),
             PickedLocations()},
            Tabs("tabLocationLimitGroup", {Page(tr("N&ame"), {"txtCode", "txtName", "chkCheck"}),
                                           Page(tr("&Locations"), {"fraLocations"})})};
}

/// Owning libraries with the locations that each of them owns.
PlainTable OwningLibraries() {
    return {{"System_OwningLibraries", 50809, tr("System Owning Libraries"), Area::System},
            {.subject = tr("Owning Library"),
             .word = "Lib",
             .plural = "System Owning Libraries",
             .asksAvailable = true,
             .deleteCaption = "Delete",
             .matchTag = "LN",
             .pickLists = {"cboOwningLib", "cboOwningLibrary"},
             .pickTag = "LN",
             .putOrder = {"LN", "DN", "NC", "SI"}},
            {Declare<TextField>({.name = "txtName",
                                 .tag = "LN",
                                 .caption = tr("Library Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .column = {tr("Library Names")},
                                 .changedTag = "NNm"}),
             Declare<TextField>({.name = "txtDisplayName",
                                 .tag = "DN",
                                 .caption = tr("Display Name:"),
                                 .maxLength = NameLength}),
             Declare<TextField>(
                 {.name = "txtCode", .tag = "NC", .caption = tr("NUC Code:"), .maxLength = CodeLength}),
             PickedLocations()},
            Tabs("tabOwningLibrary", {Page(tr("Li&brary"), {"txtName", "txtDisplayName", "txtCode"}),
                                      Page(tr("&Locations"), {"fraLocations"})})};
}

/// Categories under which items and patrons are counted.
PlainTable StatisticalCategories() {
    return {{"System_StatisticalCategories", 50817, tr("System Statistical Categories"), Area::System},
            {.subject = tr("Statistical Category"),
             .word = "StCat",
             .plural = "System Statistical Categories",
             .columns = {{.caption = tr("Used For"), .width = 90, .tag = "T"},
                         {.caption = tr("Codes"), .width = 120, .tag = "Cd"},
                         {.caption = tr("Names"), .tag = "Nm"},
                         {.caption = tr("In Use"), .width = 80, .tag = "U"}},
             .deleteWords = {{wire::status::InUse,
                              {tr("This statistical category cannot be deleted because items or patrons have "
                                  "it."),
                               tr("Cannot Delete Statistical Category")}}}},
            {Declare<ChoiceField>({.name = "cboKind",
                                   .tag = "T",
                                   .caption = tr("Used For:"),
                                   .initial = "I",
                                   .toolTip = tr("A category that is in use stays what it is used for."),
                                   .options = CategoryKinds()}),
             Declare<TextField>({.name = "txtCode",
                                 .tag = "Cd",
                                 .caption = tr("Code:"),
                                 .maxLength = CodeLength,
                                 .required = true,
                                 .changedTag = "NCd"}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "Nm",
                                 .caption = tr("Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .changedTag = "NNm"})}};
}

} // namespace

void AddSystemScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute(ItemTypes());
    catalogue.Contribute(Miscellaneous());
    catalogue.Contribute<frmSystem_AccessControlGroups>("System_AccessControlGroups", 50800);
    catalogue.Contribute<frmSystem_BaseCurrency>("System_BaseCurrency", 50801);
    catalogue.Contribute<frmSystem_DefaultAdd>("System_DefaultAddress", 50802);
    catalogue.Contribute<frmSystem_FineFeeReasons>("System_FineFeeReasons", 50804);
    catalogue.Contribute(LocationLimitGroups());
    catalogue.Contribute<frmSystem_Locations>("System_Locations", 50806);
    catalogue.Contribute(OwningLibraries());
    catalogue.Contribute<frmSystem_PrintLocations>("System_PrintLocations", 50810);
    catalogue.Contribute<frmSystem_Events>("System_Events", 50816);
    catalogue.Contribute(StatisticalCategories());
    catalogue.Contribute<frmTools_History>("Tools_History", 50903);
}

} // namespace sysadmin
