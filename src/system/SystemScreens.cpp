#include "system/SystemScreens.h"

#include "core/ScreenCatalogue.h"
#include "core/data/Tr.h"
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

namespace sysadmin {

namespace {

/// What is counted, as it travels and as it is read.
QList<PickItem> CategoryKinds() {
    return {{"I", Tr("Items")}, {"P", Tr("Patrons")}};
}

/// The locations that belong to a record, of those that could.
FieldDeclaration PickedLocations() {
    return Declare<PickedField>({.name = "fraLocations", .tag = "SI"},
                                PickedNames{.availableGrid = "vsfAvailableLocations",
                                            .availableCaption = Tr("Available Locations"),
                                            .selectedGrid = "vsfSelectedLocations",
                                            .selectedCaption = Tr("Selected Locations")},
                                PickedSpec{.tags = {"AI", "AN", "SI", "SN", "LS"}});
}

/// A code table whose records also stand in pick-lists of other screens.
PlainTable ItemTypes() {
    return {{"System_ItemTypes", 50805, Tr("System Item Types"), Area::System},
            {.subject = Tr("Item Type"),
             .frameNoun = Tr("Item Types"),
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
                                 .caption = Tr("Code:"),
                                 .maxLength = CodeLength,
                                 .required = true,
                                 .column = {Tr("Codes"), 180}}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "Nm",
                                 .caption = Tr("Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .column = {Tr("Names")},
                                 .changedTag = "NNm"}),
             Declare<TextField>({.name = "txtDisplayName",
                                 .tag = "Dsp",
                                 .caption = Tr("Display Name:"),
                                 .maxLength = NameLength})}};
}

/// System-wide switches that belong to no other screen.
PlainRecord Miscellaneous() {
    return {{"System_Misc", 50808, Tr("System Miscellaneous"), Area::System},
            {.subject = Tr("System Miscellaneous"),
             .word = "Msc",
             .plural = "System Miscellaneous",
             .frameNoun = Tr("System Miscellaneous"),
             .frameEnd = {}},
            {Declare<FlagField>(
                 {.name = "chkCircHistory", .tag = "RP", .caption = Tr("Retain Patron Id for Circ History")}),
             Declare<FlagField>({.name = "chkMediaHistory",
                                 .tag = "MP",
                                 .caption = Tr("Retain Patron Id for Media Booking History")}),
             Declare<FlagField>({.name = "chkDistHistory",
                                 .tag = "D",
                                 .caption = Tr("Retain Patron Id for Distribution History")}),
             Declare<FlagField>({.name = "chkDisplayHeadSubSep",
                                 .tag = "DSS",
                                 .caption = Tr("Display Headings Subfield Separators")})}};
}

/// Location limit groups: named sets of locations.
PlainTable LocationLimitGroups() {
    return {{"System_LocLimitGroups", 50807, Tr("System Location Limit Groups"), Area::System},
            {.subject = Tr("Location Limit Group"),
             .frameIdle = Tr("Location Limit Group"),
             .word = "Lmt",
             .plural = "System Location Limit Groups",
             .asksAvailable = true,
             .deleteCaption = "Edit Print Locations",
             .matchTag = "C",
             .putOrder = {"C", "N", "O", "SI"}},
            {Declare<TextField>({.name = "txtCode",
                                 .tag = "C",
                                 .caption = Tr("Code:"),
                                 .maxLength = CodeLength,
                                 .required = true,
                                 .column = {Tr("Codes"), 120}}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "N",
                                 .caption = Tr("Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .column = {Tr("Names")}}),
             Declare<FlagField>({.name = "chkCheck", .tag = "O", .caption = Tr("Suppress in OPAC?")}),
             PickedLocations()},
            Tabs("tabLocationLimitGroup", {Page(Tr("N&ame"), {"txtCode", "txtName", "chkCheck"}),
                                           Page(Tr("&Locations"), {"fraLocations"})})};
}

/// Owning libraries with the locations that each of them owns.
PlainTable OwningLibraries() {
    return {{"System_OwningLibraries", 50809, Tr("System Owning Libraries"), Area::System},
            {.subject = Tr("Owning Library"),
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
                                 .caption = Tr("Library Name:"),
                                 .maxLength = NameLength,
                                 .required = true,
                                 .column = {Tr("Library Names")},
                                 .changedTag = "NNm"}),
             Declare<TextField>({.name = "txtDisplayName",
                                 .tag = "DN",
                                 .caption = Tr("Display Name:"),
                                 .maxLength = NameLength}),
             Declare<TextField>(
                 {.name = "txtCode", .tag = "NC", .caption = Tr("NUC Code:"), .maxLength = CodeLength}),
             PickedLocations()},
            Tabs("tabOwningLibrary", {Page(Tr("Li&brary"), {"txtName", "txtDisplayName", "txtCode"}),
                                      Page(Tr("&Locations"), {"fraLocations"})})};
}

/// Categories under which items and patrons are counted.
PlainTable StatisticalCategories() {
    return {{"System_StatisticalCategories", 50817, Tr("System Statistical Categories"), Area::System},
            {.subject = Tr("Statistical Category"),
             .word = "StCat",
             .plural = "System Statistical Categories",
             .columns = {{.caption = Tr("Used For"), .width = 90, .tag = "T"},
                         {.caption = Tr("Codes"), .width = 120, .tag = "Cd"},
                         {.caption = Tr("Names"), .tag = "Nm"},
                         {.caption = Tr("In Use"), .width = 80, .tag = "U"}},
             .deleteWords = {{wire::status::InUse,
                              {Tr("This statistical category cannot be deleted because items or patrons have "
                                  "it."),
                               Tr("Cannot Delete Statistical Category")}}}},
            {Declare<ChoiceField>({.name = "cboKind",
                                   .tag = "T",
                                   .caption = Tr("Used For:"),
                                   .initial = "I",
                                   .toolTip = Tr("A category that is in use stays what it is used for."),
                                   .options = CategoryKinds()}),
             Declare<TextField>({.name = "txtCode",
                                 .tag = "Cd",
                                 .caption = Tr("Code:"),
                                 .maxLength = CodeLength,
                                 .required = true,
                                 .changedTag = "NCd"}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "Nm",
                                 .caption = Tr("Name:"),
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
