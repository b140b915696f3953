#include "search/SearchScreens.h"

#include "core/ScreenCatalogue.h"
#include "core/data/Tr.h"
#include "framework/PlainScreens.h"
#include "search/IndexScreen.h"
#include "search/frmSearch_BibDisplay.h"
#include "search/frmSearch_BibLinking.h"
#include "search/frmSearch_DatabaseDefinition.h"
#include "search/frmSearch_FieldWeighting.h"
#include "search/frmSearch_HeadingFilter.h"
#include "search/frmSearch_HookToHolding.h"
#include "search/frmSearch_SimultaneousSearch.h"

namespace sysadmin {

namespace {

/// The words that title lists show for the kinds of bibliographic records.
PlainTable MaterialTypes() {
    return {{"Search_MaterialType", 50611, Tr("Title List Material Type Display"), Area::System},
            {.subject = Tr("Material Type"),
             .word = "BF",
             .plural = "Search Material Type",
             .recordTag = "Cd",
             .originalTag = "OC",
             .loadCaption = "Load Material Types",
             .putOrder = {"Cd", "Nm"}},
            {Declare<TextField>({.name = "txtCode",
                                 .tag = "Cd",
                                 .caption = Tr("Material Type Code:"),
                                 .maxLength = MaterialCodeLength,
                                 .required = true,
                                 .column = {Tr("Codes"), 120},
                                 .changedTag = "NCd"}),
             Declare<TextField>({.name = "txtName",
                                 .tag = "Nm",
                                 .caption = Tr("Material Type Name:"),
                                 .maxLength = TextLength,
                                 .required = true,
                                 .column = {Tr("Names")},
                                 .changedTag = "NNm"})}};
}

void ContributeIndexes(ScreenCatalogue& catalogue, const QString& key, int helpContext, IndexSpec (*spec)()) {
    catalogue.Contribute(
        key, ScreenMaker{helpContext, false, [spec](Application& application, QWidget* parent) -> Screen* {
                             return new IndexScreen(application, spec(), parent);
                         }});
}

} // namespace

void AddSearchScreens(ScreenCatalogue& catalogue) {
    catalogue.Contribute<frmSearch_BibLinking>("Search_BibLinking", 50641);
    catalogue.Contribute<frmSearch_DatabaseDefinition>("Search_DatabaseDefinitions", 50601);
    catalogue.Contribute<frmSearch_FieldWeighting>("Search_FieldWeighting", 50651);
    catalogue.Contribute<frmSearch_HeadingFilter>("Search_HeadingFilter", 50631);
    ContributeIndexes(catalogue, "Search_CompositeDefinitions", 50621, CompositeIndexes);
    ContributeIndexes(catalogue, "Search_SearchDefinitions", 50622, HeadingIndexes);
    ContributeIndexes(catalogue, "Search_KeywordDefinitions", 50623, KeywordIndexes);
    ContributeIndexes(catalogue, "Search_HoldingsKeywordDefinitions", 50624, HoldingsKeywordIndexes);
    catalogue.Contribute<frmSearch_BibDisplay>("Search_BibDisplay", 50671);
    catalogue.Contribute<frmSearch_HookToHolding>("Search_HookToHolding", 50672);
    catalogue.Contribute<frmSearch_SimultaneousSearch>("Search_SimultaneousSearch", 50674);
    catalogue.Contribute(MaterialTypes());
}

} // namespace sysadmin
