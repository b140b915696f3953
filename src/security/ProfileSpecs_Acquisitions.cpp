#include "security/ProfileSpec.h"

#include <QCoreApplication>

namespace sysadmin {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("ProfileSpec", text);
}

} // namespace

ProfileSpec AcqSerialsProfileSpec() {
    return {.formName = "frmSecurity_AcqSerProfiles",
            .caption = Tr("Security Acquisitions/Serials Profiles"),
            .subject = Tr("Acquisitions/Serials Profile"),
            .word = "ASPrf",
            .availableRequest = "AvlASPrf",
            .editCaption = "Edit Security Acquisitions/Serials Profile",
            .groups = {{Tr("Orders"),
                        {{"VwPO", Tr("View purchase orders")},
                         {"APO", Tr("Add and change purchase orders")},
                         {"AppPO", Tr("Approve purchase orders")},
                         {"PDl", Tr("Delete purchase orders")},
                         {"ODl", Tr("Delete order line items")},
                         {"Recv", Tr("Receive")},
                         {"VwPC", Tr("View price changes")},
                         {"OcWrn", Tr("Continue past overcommit warnings")},
                         {"OeWrn", Tr("Continue past overexpend warnings")}}},
                       {Tr("Invoices and vendors"),
                        {{"VwInv", Tr("View invoices")},
                         {"AInv", Tr("Add and change invoices")},
                         {"ApInv", Tr("Approve invoices")},
                         {"IDl", Tr("Delete invoices")},
                         {"CM", Tr("Enter credit memos")},
                         {"VwVnd", Tr("View vendors")},
                         {"AVnd", Tr("Add and change vendors")},
                         {"VDl", Tr("Delete vendors")}}},
                       {Tr("Ledgers and funds"),
                        {{"VLF", Tr("View ledgers and funds")},
                         {"ALF", Tr("Add and change ledgers and funds")},
                         {"LDl", Tr("Delete ledgers")},
                         {"CFA", Tr("Change fund allocations")},
                         {"FCls", Tr("Close fiscal periods")}}},
                       {Tr("Serials"),
                        {{"VwSCI", Tr("View serials check-in")},
                         {"SCI", Tr("Check in serials")},
                         {"SCClm", Tr("Claim serials")},
                         {"AClm", Tr("Claim orders")},
                         {"VSPtn", Tr("View subscription patterns")},
                         {"ASPtn", Tr("Add and change subscription patterns")},
                         {"DSC", Tr("Delete serial components")}}},
                       {Tr("Items and binding"),
                        {{"VI", Tr("View items")},
                         {"AI", Tr("Add and change items")},
                         {"DI", Tr("Delete items")},
                         {"CLIB", Tr("Change the owning library")},
                         {"HIO", Tr("Work on holdings and items of other locations")},
                         {"BVwVolIs", Tr("View volumes and issues for binding")},
                         {"BEdVol", Tr("Change volumes for binding")},
                         {"BEdIs", Tr("Change issues for binding")},
                         {"BPrnt", Tr("Print binding slips")}}},
                       {Tr("Electronic data interchange"),
                        {{"EI", Tr("Receive electronic invoices")},
                         {"EO", Tr("Send electronic orders")},
                         {"EM", Tr("Exchange electronic messages")}}}},
            .putOrder = {"APO",    "Recv",  "ODl",   "AI",   "VI",   "SCI",   "VwSCI", "OcWrn", "AInv",
                         "VwInv",  "ALF",   "VLF",   "FCls", "AVnd", "VwVnd", "AClm",  "ASPtn", "VSPtn",
                         "EI",     "EO",    "EM",    "HIO",  "VwPO", "AppPO", "DI",    "OeWrn", "IDl",
                         "ApInv",  "LDl",   "CFA",   "CM",   "VDl",  "SCClm", "VwPC",  "PDl",   "BVwVolIs",
                         "BEdVol", "BEdIs", "BPrnt", "CLIB", "DSC"}};
}

} // namespace sysadmin
