#include "security/ProfileSpec.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("ProfileSpec", text);
}

} // namespace

ProfileSpec MasterProfileSpec() {
    return {
        .formName = "frmSecurity_MasterProfiles",
        .caption = Tr("Security Master Profiles"),
        .subject = Tr("Master Profile"),
        .word = "MPrf",
        .availableRequest = "AvlMPrf",
        .editCaption = "Edit Security Cataloging Profile",
        .groups =
            {{Tr("Security"),
              {{"Sec", Tr("Security (add, edit, delete)"), "chkSecurity"},
               {"SecV", Tr("Security (view)"), "chkSecurityView"},
               {"ChgPwd", Tr("Change Password"), "chkChangePassword"}}},
             {Tr("System"),
              {{"SysDf", Tr("System-Wide and OPAC Configuration (add, edit, delete)"),
                "chkSystemWideConfiguration"},
               {"SysDfV", Tr("System-Wide and OPAC Configuration (view)"),
                "chkSystemWideConfigurationView"}}},
             {Tr("Policy groups"),
              {{"ASPG", Tr("Acq/Serials Policy Groups (add, edit, delete)"), "chkAcqSerialsPolicyGroups"},
               {"ASPGV", Tr("Acq/Serials Policy Groups (view)"), "chkAcqSerialsPolicyGroupsView"},
               {"CatPG", Tr("Cataloging Policy Groups (add, edit, delete)"), "chkCatalogingPolicyGroups"},
               {"CatPGV", Tr("Cataloging Policy Groups (view)"), "chkCatalogingPolicyGroupsView"},
               {"CrcPG", Tr("Circulation Policy Groups (add, edit, delete)"), "chkCirculationPolicyGroups"},
               {"CrcPGV", Tr("Circulation Policy Groups (view)"), "chkCirculationPolicyGroupsView"},
               {"MSPG", Tr("Media Policy Groups (view, add, edit, delete)"), "chkMediaPolicyGroups"}}},
             {Tr("Patron groups and clusters"),
              {{"EditPatGrp", Tr("Patron Groups (add, edit, delete)"), "chkPatronGroupsEdit"},
               {"PatGrpV", Tr("Patron Groups (view)"), "chkPatronGroupsView"},
               {"CluViewOnly", Tr("Cluster View-Only"), "chkClusterViewOnly"},
               {"CluCreate", Tr("Cluster Create"), "chkClusterCreate"},
               {"CluEdit", Tr("Cluster Edit"), "chkClusterEdit"},
               {"CluDelete", Tr("Cluster Delete"), "chkClusterDelete"}}}},
        .groupsPerRow = 2,
        .putOrder = {"Sec",       "SecV",      "ChgPwd",  "SysDf",       "SysDfV",     "ASPG",   "ASPGV",
                     "CatPG",     "CatPGV",    "CrcPG",   "CrcPGV",      "CrCnv",      "CrCnvV", "MSPG",
                     "CluCreate", "CluDelete", "CluEdit", "CluViewOnly", "EditPatGrp", "PatGrpV"},
        .alwaysNo = {"CrCnv", "CrCnvV"}};
}

ProfileSpec ReportingProfileSpec() {
    return {.formName = "frmSecurity_ReportingProfiles",
            .caption = Tr("Security Analyzer Profiles"),
            .subject = Tr("Analyzer Profile"),
            .word = "RPrf",
            .availableRequest = "AvlRpOp",
            .editCaption = "Edit Security Analyzer Profile",
            .groups = {{Tr("Reports"),
                        {{"RepAcqSer", Tr("Acquisitions and serials reports")},
                         {"RepCallSl", Tr("Call slip reports")},
                         {"RepCat", Tr("Cataloging reports")},
                         {"RepCatOpac", Tr("Cataloging and public catalogue reports")},
                         {"RepLocUb", Tr("Local and universal borrowing reports")},
                         {"RepMedSched", Tr("Media scheduling reports")},
                         {"RepRemStrg", Tr("Remote storage reports")},
                         {"RepSysAdm", Tr("System administration reports")},
                         {"RepDbMod", Tr("Change the reporting database")}}}},
            .putOrder = {"RepDbMod", "RepSysAdm", "RepCat", "RepAcqSer", "RepCallSl", "RepMedSched",
                         "RepCatOpac", "RepRemStrg", "RepLocUb"},
            .hasLocations = false,
            .hasLevel = true};
}

ProfileSpec GlobalDataChangeProfileSpec() {
    return {.formName = "frmSecurity_GlobalDataChangeProfiles",
            .caption = Tr("Security Global Data Change Profiles"),
            .subject = Tr("Global Data Change Profile"),
            .word = "GDCPrf",
            .availableRequest = "AvlGDCPrf",
            .editCaption = "Edit Security Global Data Change Profile",
            .groups = {{Tr("Bibliographic records"),
                        {{"ViewRSB", Tr("View bibliographic rule sets")},
                         {"PreRSB", Tr("Preview bibliographic rule sets")},
                         {"AddRSB", Tr("Add bibliographic rule sets")},
                         {"UpdRSB", Tr("Change bibliographic rule sets")},
                         {"DelRSB", Tr("Delete bibliographic rule sets")},
                         {"DelRRSB", Tr("Delete bibliographic records by rule sets")},
                         {"DataCB", Tr("Run data changes of bibliographic records")},
                         {"ScanB", Tr("Scan bibliographic records")},
                         {"IdxOB", Tr("Index bibliographic records only")},
                         {"HistB", Tr("View the history of bibliographic jobs")},
                         {"LogsB", Tr("View the logs of bibliographic jobs")},
                         {"FilesB", Tr("View the files of bibliographic jobs")}}},
                       {Tr("Authority records"),
                        {{"ViewRSA", Tr("View authority rule sets")},
                         {"PreRSA", Tr("Preview authority rule sets")},
                         {"AddRSA", Tr("Add authority rule sets")},
                         {"UpdRSA", Tr("Change authority rule sets")},
                         {"DelRSA", Tr("Delete authority rule sets")},
                         {"DelRRSA", Tr("Delete authority records by rule sets")},
                         {"DataCA", Tr("Run data changes of authority records")},
                         {"ScanA", Tr("Scan authority records")},
                         {"HistA", Tr("View the history of authority jobs")},
                         {"LogsA", Tr("View the logs of authority jobs")},
                         {"FilesA", Tr("View the files of authority jobs")}}},
                       {Tr("Holdings records"),
                        {{"ViewRSM", Tr("View holdings rule sets")},
                         {"PreRSM", Tr("Preview holdings rule sets")},
                         {"AddRSM", Tr("Add holdings rule sets")},
                         {"UpdRSM", Tr("Change holdings rule sets")},
                         {"DelRSM", Tr("Delete holdings rule sets")},
                         {"DelRRSM", Tr("Delete holdings records by rule sets")},
                         {"DataCM", Tr("Run data changes of holdings records")},
                         {"ScanM", Tr("Scan holdings records")},
                         {"HistM", Tr("View the history of holdings jobs")},
                         {"LogsM", Tr("View the logs of holdings jobs")},
                         {"FilesM", Tr("View the files of holdings jobs")}}},
                       {Tr("Scan rules and data change rules"),
                        {{"ViewSR", Tr("View scan rules")},
                         {"AddSR", Tr("Add scan rules")},
                         {"UpdSR", Tr("Change scan rules")},
                         {"DelSR", Tr("Delete scan rules")},
                         {"ViewDCR", Tr("View data change rules")},
                         {"AddDCR", Tr("Add data change rules")},
                         {"UpdDCR", Tr("Change data change rules")},
                         {"DelDCR", Tr("Delete data change rules")}}},
                       {Tr("Authority loads"),
                        {{"LoadAL", Tr("Load authority records")},
                         {"HistAL", Tr("View the history of authority loads")},
                         {"LogsAL", Tr("View the logs of authority loads")},
                         {"FilesAL", Tr("View the files of authority loads")}}},
                       {Tr("Stopping jobs"),
                        {{"KillDC", Tr("Stop data change jobs")},
                         {"KillS", Tr("Stop scan jobs")},
                         {"KillIdxO", Tr("Stop index-only jobs")},
                         {"KillAL", Tr("Stop authority loads")}}}}};
}

} // namespace sysadmin
