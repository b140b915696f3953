#pragma once

#include "cataloging/ImportLists.h"
#include "cataloging/ImportSettings.h"
#include "cataloging/LoadModeField.h"
#include "framework/MarcPlaceField.h"
#include "framework/forms/PutList.h"

namespace sysadmin {

/// A profile by which the server's loader loads a file of records.
struct ImportRuleForm : Form {
    ImportRuleForm();

    /// What a save puts, in order.
    QList<PutStep> Puts() const;
    /// What keeps the rule from being saved: one sentence for each, in order. The check of the duplicate
    /// profile comes in front of them and is the screen's.
    QStringList Shortcomings() const;

    TextField txtRuleCode;
    TextField txtRuleName;
    ChoiceField cboBibDupProfile;
    ChoiceField cboAuthDupProfile;
    ChoiceField cboOwningLibrary;
    ChoiceField cboCharSet;
    FlagField chkBatchOpacSuppress;
    FlagField chkIgnoreOPACSuppress;
    LoadModeField optBulkLoad;
    FlagField chkUse4DupBibs;
    FlagField chkCopy852;
    FlagField chkCopy856;
    FlagField chkOnePOPerBib;
    FlagField chkAutoApprove;
    PlaceList vsfItemType;
    MappingList vsfMapping;
    PlaceList vsfBarcode;
    FlagField chkCatalogingReview;
    FlagField chkAtBindery;
    FlagField chkCircReview;
    FlagField chkDamaged;
    FlagField chkInProcess;
    FlagField chkLost;
    FlagField chkMissing;
    FlagField chkWithdrawn;
    MarcPlaceField magneticMedia;
    TextField txtMagneticMatch;
    MarcPlaceField sensitize;
    TextField txtSensitizeMatch;
    ImportSettings location;
    ImportSettings multiple;
    ImportSettings copyNumbers;
    ImportSettings orders;
    /// How the chosen profile of bibliographic records treats one that is there already; not a part of the
    /// rule.
    TextField handling;

private:
    void FollowMode();
};

} // namespace sysadmin
