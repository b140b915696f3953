#include "circulation/CirculationScreens.h"

#include "circulation/frmCirculation_Calendars.h"
#include "circulation/frmCirculation_LoanTest.h"
#include "circulation/frmCirculation_PatronDefaultDates.h"
#include "circulation/frmCirculation_RuleCheck.h"
#include "circulation/frmClusterMaintenance.h"
#include "core/ScreenCatalogue.h"
#include "framework/PlainScreens.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("Circulation", text);
}

/// The kinds of notes that staff write into patron records.
PlainTable PatronNoteTypes() {
    return {{"Circulation_PatronNoteTypes", 50505, tr("Circulation Patron Note Types"), Area::Circulation},
            {.subject = tr("Patron Note Type"),
             .word = "PatNoteTp",
             .plural = "Patron Note Types",
             .wholeRows = true,
             .saveCaption = "Save ",
             .putOrder = {"D"}},
            {Declare<TextField>({.name = "txtName",
                                 .tag = "D",
                                 .caption = tr("Name:"),
                                 .maxLength = TextLength,
                                 .required = true,
                                 .column = {tr("Names")},
                                 .changedTag = "NNm"})}};
}

} // namespace

void AddCirculationScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmClusterMaintenance>("Circ_Clusters", 50500);
    catalogue.Contribute<frmCirculation_PatronDefaultDates>("Circulation_PatronDefaultDates", 50506);
    catalogue.Contribute(PatronNoteTypes());
    catalogue.Contribute<frmCirculation_Calendars>("Circ_Calendars", 50502, true);
    catalogue.Contribute<frmCirculation_LoanTest>("Tools_LoanTest", 50540, true);
    catalogue.Contribute<frmCirculation_RuleCheck>("Tools_RuleCheck", 50541, true);
}

} // namespace sysadmin
