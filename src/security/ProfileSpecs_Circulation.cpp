#include "security/ProfileSpec.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("ProfileSpec", text);
}

} // namespace

ProfileSpec CirculationProfileSpec() {
    return {.formName = "frmSecurity_CirculationProfiles",
            .caption = Tr("Security Circulation Profiles"),
            .subject = Tr("Circulation Profile"),
            .word = "CrPrf",
            .availableRequest = "AvlMPrf",
            .editCaption = "Edit Security Circulation Profile",
            .groups = {{Tr("Charge and discharge"),
                        {{"CgRen", Tr("Charge and renew")},
                         {"Dschg", Tr("Discharge")},
                         {"DsBdt", Tr("Backdate discharges")},
                         {"CDD", Tr("Change due dates")},
                         {"SISt", Tr("Set item statuses")},
                         {"PkAndSn", Tr("Pick and scan")},
                         {"CrsRs", Tr("Course reserves")},
                         {"MMRP", Tr("Maintain media reservations and policies")}}},
                       {Tr("Requests and reserves"),
                        {{"ARHR", Tr("Add recall and hold requests")},
                         {"RRHRQ", Tr("Reorder the queue of recall and hold requests")},
                         {"RV", Tr("View reserve lists")},
                         {"RM", Tr("Maintain reserve lists")},
                         {"RC", Tr("Create reserve lists")},
                         {"PSSM", Tr("Print slips and send messages")}}},
                       {Tr("Patrons"),
                        {{"VwPtR", Tr("View patron records")},
                         {"APtR", Tr("Add and change patron records")},
                         {"DPtR", Tr("Delete patron records")},
                         {"ESP", Tr("Edit stub patrons")},
                         {"PP", Tr("Print patron information")},
                         {"RPC", Tr("Reset patron counters")},
                         {"VPCH", Tr("View patron charge history")}}},
                       {Tr("Fines and fees"),
                        {{"AFFR", Tr("Add fine and fee records")},
                         {"MFFR", Tr("Change fine and fee records")},
                         {"FFFR", Tr("Forgive fines and fees")},
                         {"AcPay", Tr("Accept payments")}}},
                       {Tr("Records"),
                        {{"AIRc", Tr("Add item records")},
                         {"DIRc", Tr("Delete item records")},
                         {"DHRc", Tr("Delete holdings records")},
                         {"DBRc", Tr("Delete bibliographic records")},
                         {"HIO", Tr("Work on holdings and items of other locations")}}}},
            .putOrder = {"CgRen", "Dschg", "ARHR",  "AIRc",    "AFFR",  "AcPay", "MFFR", "APtR",
                         "PP",    "CDD",   "DsBdt", "PSSM",    "RRHRQ", "SISt",  "DIRc", "DHRc",
                         "DBRc",  "FFFR",  "CrsRs", "VwPtR",   "RPC",   "DPtR",  "VPCH", "ESP",
                         "RV",    "RM",    "RC",    "PkAndSn", "MMRP",  "HIO"},
            .hasAllLocations = true,
            .listsRequest = "GetCrBlocks",
            .lists = {{"ItemBlocks", Tr("&Item Blocks"), Tr("Available Item Blocks"),
                       Tr("Item Blocks that may be overridden"), "AvlItmBlkID", "AvlItmBlkNm", "SelItmBlkID",
                       "SelItmBlkNm", "IBSt"},
                      {"PatronBlocks", Tr("Patron &Blocks"), Tr("Available Patron Blocks"),
                       Tr("Patron Blocks that may be overridden"), "AvlPatBlkID", "AvlPatBlkNm",
                       "SelPatBlkID", "SelPatBlkNm", "PBSt"},
                      {"PatronIds", Tr("Patron I&Ds"), Tr("Available Patron IDs"),
                       Tr("Patron IDs that may be seen"), "API", "APN", "SPI", "SPN", "PSt"}},
            .listsUpdateRequest = "UpdPINs"};
}

} // namespace sysadmin
