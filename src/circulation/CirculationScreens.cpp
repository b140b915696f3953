#include "circulation/CirculationScreens.h"

#include "circulation/frmCirculation_Calendars.h"
#include "circulation/frmCirculation_LoanTest.h"
#include "circulation/frmCirculation_PatronDefaultDates.h"
#include "circulation/frmCirculation_PatronGroupMapping.h"
#include "circulation/frmCirculation_PatronGroups.h"
#include "circulation/frmCirculation_PolicyDef.h"
#include "circulation/frmCirculation_RequestConfig.h"
#include "circulation/frmCirculation_RequestGroups.h"
#include "circulation/frmCirculation_RuleCheck.h"
#include "circulation/frmCirculation_UBPolicyDefinitions.h"
#include "circulation/frmClusterMaintenance.h"
#include "core/ScreenCatalogue.h"
#include "core/data/Tr.h"
#include "framework/PlainScreens.h"
#include "wire/Counts.h"

namespace sysadmin {

namespace {

/// The kinds of notes that staff write into patron records.
PlainTable PatronNoteTypes() {
    return {{"Circulation_PatronNoteTypes", 50505, Tr("Circulation Patron Note Types"), Area::Circulation},
            {.subject = Tr("Patron Note Type"),
             .word = "PatNoteTp",
             .plural = "Patron Note Types",
             .wholeRows = true,
             .saveCaption = "Save ",
             .putOrder = {"D"}},
            {Declare<TextField>({.name = "txtName",
                                 .tag = "D",
                                 .caption = Tr("Name:"),
                                 .maxLength = TextLength,
                                 .required = true,
                                 .column = {Tr("Names")},
                                 .changedTag = "NNm"})}};
}

/// The library's circulation switches that belong to no other screen.
PlainRecord Miscellaneous() {
    const auto flag = [](const char* name, const char* tag, const QString& caption) {
        return Declare<FlagField>({.name = name, .tag = tag, .caption = caption});
    };
    return {
        {"Circulation_Miscellaneous", 50516, Tr("Circulation Miscellaneous"), Area::Circulation},
        {.subject = Tr("Circulation Miscellaneous"),
         .word = "CrMsc",
         .frameNoun = Tr("Circulation Miscellaneous"),
         .loadCaption = "Load Circulation Miscellaneous - REQ_CIRC_MISC_GET",
         .saveCaption = "Save Circulation Miscellaneous"},
        {flag("chkEmailFineNotice", "EF", Tr("Email Fine/Fee Notice")),
         flag("chkEmailFineStatement", "ES", Tr("Email Statement of Fines/Fees")),
         Declare<NumberField>({.name = "txtShortLoanBuffer",
                               .tag = "TB",
                               .caption = Tr("Short Loan time buffer:"),
                               .required = true,
                               .unit = Tr("minutes"),
                               .most = wire::MostCount}),
         flag("chkUseDemerits", "UDem", Tr("Use Demerits")),
         flag("chkDisplayDemerits", "DDemDsp", Tr("Display Demerits")),
         flag("chkStopFines", "StopFF", Tr("Stop Fines/Fees, Notices for Claims Returned Items")),
         flag("chkDeletePatrons", "DelPatHistFines", Tr("Allow Deletion of Patron With Historical Fines")),
         flag("chkUBPickUps", "UBPG", Tr("Allow UB Pick-Ups From Holding Library"))}};
}

} // namespace

void AddCirculationScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmClusterMaintenance>("Circ_Clusters", 50500);
    catalogue.Contribute<frmCirculation_PatronDefaultDates>("Circulation_PatronDefaultDates", 50506);
    catalogue.Contribute(PatronNoteTypes());
    catalogue.Contribute<frmCirculation_PatronGroups>("Circulation_PatronGroups", 50510, true);
    catalogue.Contribute<frmCirculation_PatronGroupMapping>("Circulation_PatronGroupMapping", 50511, true);
    catalogue.Contribute<frmCirculation_RequestConfig>("Circulation_RequestConfigs", 50512, true);
    catalogue.Contribute<frmCirculation_RequestGroups>("Circulation_RequestGroups", 50513);
    catalogue.Contribute<frmCirculation_UBPolicyDefinitions>("Circ_UBPolicy", 50514, true);
    catalogue.Contribute(Miscellaneous());
    catalogue.Contribute<frmCirculation_Calendars>("Circ_Calendars", 50502, true);
    catalogue.Contribute<frmCirculation_PolicyDef>("Circulation_PolicyDefinitions", 50503, true);
    catalogue.Contribute<frmCirculation_LoanTest>("Tools_LoanTest", 50540, true);
    catalogue.Contribute<frmCirculation_RuleCheck>("Tools_RuleCheck", 50541, true);
}

} // namespace sysadmin
