#include "cataloging/frmCataloging_PolicyDefinitions.h"

#include "cataloging/CallNumberSearch.h"
#include "framework/forms/Rules.h"
#include "wire/CatalogingPolicy.h"
#include "wire/Status.h"

namespace sysadmin {

namespace policy = wire::catalogingpolicy;

CatalogingPolicyForm::CatalogingPolicyForm()
    : cboItemType(*this, {.name = "cboItemType",
                          .tag = "IT",
                          .caption = tr("Default Item Type:"),
                          .source = {.request = "LstItmTp",
                                     .pickList = "cboItemType",
                                     .none = tr("(none)"),
                                     .unableToLoad = tr("Item Types")}})
    , cboCallNumberType(
          *this, {.name = "cboCallNumberType",
                  .tag = "CT",
                  .caption = tr("Default Call Number Type:"),
                  .toolTip = tr("Of new holdings whose bibliographic record has no call number in any place"),
                  .options = QList<PickItem>{{"", tr("(none)")}} + CallNumberTypeItems()})
    , cboHierarchy(*this, {.name = "cboHierarchy",
                           .tag = "CH",
                           .caption = tr("Call Number Hierarchy:"),
                           .source = {.request = "LstCNH",
                                      .pickList = HierarchyList,
                                      .none = tr("(the default one)"),
                                      .unableToLoad = tr("Call Number Hierarchies")}})
    , cboBibProfile(*this, {.name = "cboBibProfile",
                            .tag = "BD",
                            .caption = tr("Bibliographic Records:"),
                            .toolTip = tr("The profile by which a single new record is looked for in the "
                                          "database"),
                            .source = {.request = "LstCatDp",
                                       .idTag = "DID",
                                       .textTag = "DNm",
                                       .none = tr("(none: duplicates are not looked for)"),
                                       .unableToLoad = tr("Duplicate Detection Profiles")}})
    , cboAuthorityProfile(*this, {.name = "cboAuthorityProfile",
                                  .tag = "AD",
                                  .caption = tr("Authority Records:"),
                                  .source = {.request = "AvlImp",
                                             .idTag = "AuI",
                                             .textTag = "AuN",
                                             .none = tr("(none: duplicates are not looked for)"),
                                             .unableToLoad = tr("Duplicate Detection Profiles")}})
    , optConsequence(*this,
                     {.name = "optConsequence",
                      .tag = "VE",
                      .caption = tr("Where something is wrong:"),
                      .initial = policy::Warn,
                      .options = {{policy::Warn, tr("Warn only")}, {policy::Refuse, tr("Do not save it")}}})
    , locations(*this, {.name = "fraLocations", .tag = "SI"},
                {.availableGrid = "vsfAvailableLocations",
                 .availableCaption = tr("Available Locations"),
                 .selectedGrid = "vsfSelectedLocations",
                 .selectedCaption = tr("Selected Locations")},
                {.tags = {"AI", "AN", "SI", "SN", "LS"}}) {
    When([this] {
        return chkTags.IsOn() || chkFixedFields.IsOn() || chkHeadings.IsOn() || chkStandardNumbers.IsOn();
    }).Enable(optConsequence);
}

frmCataloging_PolicyDefinitions::frmCataloging_PolicyDefinitions(Application& application, QWidget* parent)
    : MaintenanceScreen(application, "frmCataloging_PolicyDefinitions", tr("Cataloging Policy Definitions"),
                        Area::Cataloging, parent) {
    AddTable(
        {.subject = tr("Cataloging Policy Definition"),
         .word = "CatGp",
         .plural = "Cataloging Policy Definitions",
         .asksAvailable = true,
         .deleteWords = {{wire::status::InUse,
                          {tr("This policy group cannot be deleted because cataloging workstations use it."),
                           tr("Cannot Delete Cataloging Policy Definition")}}}},
        m_form,
        Below({Tabs(
            "tabPolicy",
            {Page(tr("&Policy"),
                  {m_form.txtName, m_form.cboItemType, m_form.cboCallNumberType, m_form.cboHierarchy,
                   Frame("fraSuppression", tr("New Records in the OPAC"),
                         {m_form.chkSuppressBibs, m_form.chkSuppressHoldings})}),
             Page(tr("&Checks"), {Frame("fraDuplicates", tr("Look for Duplicates of Single New Records by"),
                                        {m_form.cboBibProfile, m_form.cboAuthorityProfile}),
                                  Frame("fraChecks", tr("Check When a Record Is Saved"),
                                        {m_form.chkTags, m_form.chkFixedFields, m_form.chkHeadings,
                                         m_form.chkStandardNumbers, m_form.optConsequence})}),
             Page(tr("&Locations"), {m_form.locations})})}));
    Finish();
    ReloadOn({"CatDp"}, [this] { LoadChoices(m_form, Current().spec.loadCaption, Current().spec.subject); });
}

} // namespace sysadmin

#include "moc_frmCataloging_PolicyDefinitions.cpp"
