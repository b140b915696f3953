#include "system/SystemScreens.h"

#include "core/ScreenCatalogue.h"
#include "framework/PlainScreens.h"
#include "system/frmSystem_AccessControlGroups.h"
#include "system/frmSystem_BaseCurrency.h"
#include "system/frmSystem_DefaultAdd.h"
#include "system/frmSystem_FineFeeReasons.h"
#include "system/frmSystem_LocLimitGroups.h"
#include "system/frmSystem_Locations.h"
#include "system/frmSystem_OwningLibraries.h"
#include "system/frmSystem_PrintLocations.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("System", text);
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

} // namespace

void AddSystemScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute(ItemTypes());
    catalogue.Contribute(Miscellaneous());
    catalogue.Contribute<frmSystem_AccessControlGroups>("System_AccessControlGroups", 50800);
    catalogue.Contribute<frmSystem_BaseCurrency>("System_BaseCurrency", 50801);
    catalogue.Contribute<frmSystem_DefaultAdd>("System_DefaultAddress", 50802);
    catalogue.Contribute<frmSystem_FineFeeReasons>("System_FineFeeReasons", 50804);
    catalogue.Contribute<frmSystem_LocLimitGroups>("System_LocLimitGroups", 50807);
    catalogue.Contribute<frmSystem_Locations>("System_Locations", 50806);
    catalogue.Contribute<frmSystem_OwningLibraries>("System_OwningLibraries", 50809);
    catalogue.Contribute<frmSystem_PrintLocations>("System_PrintLocations", 50810);
}

} // namespace sysadmin
