#pragma once

#include "cataloging/CallNumberTypes.h"
#include "framework/MaintenanceScreen.h"
#include "framework/forms/ListFields.h"
#include "framework/forms/ValueFields.h"

namespace sysadmin {

/// A cataloging policy group: what holds for the records that are cataloged for its locations.
struct CatalogingPolicyForm : Form {
    CatalogingPolicyForm();

    TextField txtName{*this,
                      {.name = "txtName",
                       .tag = "Nm",
                       .caption = tr("Cataloging Group Name:"),
                       .maxLength = NameLength,
                       .required = true,
                       .column = {tr("Names")},
                       .changedTag = "NNm"}};
    ChoiceField cboItemType;
    ChoiceField cboCallNumberType;
    ChoiceField cboHierarchy;
    ChoiceField cboBibProfile;
    ChoiceField cboAuthorityProfile;
    FlagField chkTags{
        *this,
        {.name = "chkTags", .tag = "VT", .caption = tr("Fields, indicators and subfields are defined")}};
    FlagField chkFixedFields{
        *this,
        {.name = "chkFixedFields", .tag = "VF", .caption = tr("Fixed fields have values that there are")}};
    FlagField chkHeadings{
        *this, {.name = "chkHeadings", .tag = "VH", .caption = tr("Headings have an authority record")}};
    FlagField chkStandardNumbers{*this,
                                 {.name = "chkStandardNumbers",
                                  .tag = "VN",
                                  .caption = tr("Check digits of ISBN and ISSN are right")}};
    LetterField optConsequence;
    FlagField chkSuppressBibs{
        *this, {.name = "chkSuppressBibs", .tag = "SB", .caption = tr("Suppress new bibliographic records")}};
    FlagField chkSuppressHoldings{
        *this, {.name = "chkSuppressHoldings", .tag = "SH", .caption = tr("Suppress new holdings records")}};
    PickedField locations;
};

/// Cataloging policy groups with their locations.
class frmCataloging_PolicyDefinitions : public MaintenanceScreen {
    Q_OBJECT

public:
    frmCataloging_PolicyDefinitions(Application& application, QWidget* parent);

private:
    CatalogingPolicyForm& m_form = KeepForm<CatalogingPolicyForm>();
};

} // namespace sysadmin
