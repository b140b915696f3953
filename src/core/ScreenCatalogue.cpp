#include "core/ScreenCatalogue.h"

#include <QCoreApplication>

#include <algorithm>

namespace sysadmin {

namespace {

struct Group {
    const char* key;
    const char* caption;
};

struct Item {
    const char* group;
    const char* key;
    const char* icon;
    const char* caption;
};

// clang-format off
constexpr Group GroupTable[] = {
    {"Acquisitions", QT_TRANSLATE_NOOP("ScreenCatalogue", "Acquisitions")},
    {"CallSlips", QT_TRANSLATE_NOOP("ScreenCatalogue", "Call Slips")},
    {"Cataloging", QT_TRANSLATE_NOOP("ScreenCatalogue", "Cataloging")},
    {"Circulation", QT_TRANSLATE_NOOP("ScreenCatalogue", "Circulation")},
    {"OPAC", QT_TRANSLATE_NOOP("ScreenCatalogue", "OPAC Configuration")},
    {"Search", QT_TRANSLATE_NOOP("ScreenCatalogue", "Search")},
    {"Security", QT_TRANSLATE_NOOP("ScreenCatalogue", "Security")},
    {"System", QT_TRANSLATE_NOOP("ScreenCatalogue", "System")},
    {"WebServices", QT_TRANSLATE_NOOP("ScreenCatalogue", "Web Services")},
    {"Tools", QT_TRANSLATE_NOOP("ScreenCatalogue", "Tools")},
};

constexpr Item ItemTable[] = {
    {"Acquisitions", "Acquisitions_AdjustReasons", "Acq_AdjustReason", QT_TRANSLATE_NOOP("ScreenCatalogue", "Adjust Reasons")},
    {"Acquisitions", "Acquisitions_ClaimTypes", "Acq_ClaimType", QT_TRANSLATE_NOOP("ScreenCatalogue", "Claim Types")},
    {"Acquisitions", "Acquisitions_FiscalTypes", "Acq_FiscalPeriod", QT_TRANSLATE_NOOP("ScreenCatalogue", "Fiscal Periods")},
    {"Acquisitions", "Acquisitions_FundTypes", "Acq_FundType", QT_TRANSLATE_NOOP("ScreenCatalogue", "Fund Types")},
    {"Acquisitions", "Acquisitions_MarkReasons", "Acq_MarkReason", QT_TRANSLATE_NOOP("ScreenCatalogue", "Mark Reasons")},
    {"Acquisitions", "Acquisitions_POTypes", "Acq_POType", QT_TRANSLATE_NOOP("ScreenCatalogue", "PO Types")},
    {"Acquisitions", "Acquisitions_PolicyDefinitions", "Acq_PolicyDefinition", QT_TRANSLATE_NOOP("ScreenCatalogue", "Policy Definitions")},
    {"Acquisitions", "Acquisitions_VendorReports", "Acq_VendorReport", QT_TRANSLATE_NOOP("ScreenCatalogue", "Vendor Reports")},
    {"Acquisitions", "Acquisitions_VendorTypes", "Acq_VendorType", QT_TRANSLATE_NOOP("ScreenCatalogue", "Vendor Types")},
    {"CallSlips", "CallSlip_NoFillReasons", "CallSlip_NoFillReason", QT_TRANSLATE_NOOP("ScreenCatalogue", "No-Fill Reasons")},
    {"CallSlips", "CallSlip_Rules", "CallSlip_Rule", QT_TRANSLATE_NOOP("ScreenCatalogue", "Rules")},
    {"CallSlips", "CallSlip_Definitions", "CallSlip_Queue", QT_TRANSLATE_NOOP("ScreenCatalogue", "Queues")},
    {"Cataloging", "Catalog_AuthorityDuplicateDetection", "Cat_AuthorityDuplicate", QT_TRANSLATE_NOOP("ScreenCatalogue", "Authority Duplicate Detection Profiles")},
    {"Cataloging", "Catalog_BibDuplicateDetection", "Cat_BibDuplicate", QT_TRANSLATE_NOOP("ScreenCatalogue", "Bibliographic Duplicate Detection Profiles")},
    {"Cataloging", "Catalog_BulkImportRules", "Cat_BulkImportRule", QT_TRANSLATE_NOOP("ScreenCatalogue", "Bulk Import Rules")},
    {"Cataloging", "Catalog_CallNumberHierarchy", "Cat_CallNumberHierarchy", QT_TRANSLATE_NOOP("ScreenCatalogue", "Call Number Hierarchy")},
    {"Cataloging", "Catalog_MARCFieldOrderingRules", "Cat_FieldOrderingRule", QT_TRANSLATE_NOOP("ScreenCatalogue", "MARC Field Ordering Rules")},
    {"Cataloging", "Catalog_Miscellaneous", "Cat_Miscellaneous", QT_TRANSLATE_NOOP("ScreenCatalogue", "Miscellaneous")},
    {"Cataloging", "Catalog_PolicyDefinitions", "Cat_PolicyDefinition", QT_TRANSLATE_NOOP("ScreenCatalogue", "Policy Definitions")},
    {"Cataloging", "Catalog_RDAToolkit", "Cat_RDAToolkit", QT_TRANSLATE_NOOP("ScreenCatalogue", "RDA Toolkit")},
    {"Circulation", "Circ_Calendars", "Circ_Calendar", QT_TRANSLATE_NOOP("ScreenCatalogue", "Calendars")},
    {"Circulation", "Circ_Clusters", "Circ_Cluster", QT_TRANSLATE_NOOP("ScreenCatalogue", "Cluster Maintenance")},
    {"Circulation", "Circulation_Miscellaneous", "Circ_Miscellaneous", QT_TRANSLATE_NOOP("ScreenCatalogue", "Miscellaneous")},
    {"Circulation", "Circulation_PatronGroups", "Circ_PatronGroup", QT_TRANSLATE_NOOP("ScreenCatalogue", "Patron Groups")},
    {"Circulation", "Circulation_PatronGroupMapping", "Circ_PatronGroupMapping", QT_TRANSLATE_NOOP("ScreenCatalogue", "Patron Group Mapping")},
    {"Circulation", "Circulation_PatronNoteTypes", "Circ_PatronNoteType", QT_TRANSLATE_NOOP("ScreenCatalogue", "Patron Note Types")},
    {"Circulation", "Circulation_PatronDefaultDates", "Circ_PatronDefaultDate", QT_TRANSLATE_NOOP("ScreenCatalogue", "Patron Default Dates")},
    {"Circulation", "Circulation_PolicyDefinitions", "Circ_PolicyDefinition", QT_TRANSLATE_NOOP("ScreenCatalogue", "Policy Definitions")},
    {"Circulation", "Circulation_RequestConfigs", "Circ_RequestConfig", QT_TRANSLATE_NOOP("ScreenCatalogue", "Request Configuration")},
    {"Circulation", "Circulation_RequestGroups", "Circ_RequestGroup", QT_TRANSLATE_NOOP("ScreenCatalogue", "Request Groups")},
    {"Circulation", "Circ_UBPolicy", "Circ_UBPolicy", QT_TRANSLATE_NOOP("ScreenCatalogue", "UB Policy Definitions")},
    {"OPAC", "OPAC_MessageRequests", "OPAC_RequestMessage", QT_TRANSLATE_NOOP("ScreenCatalogue", "Call Slip Request Messages")},
    {"OPAC", "OPAC_SortGroups", "OPAC_SortGroup", QT_TRANSLATE_NOOP("ScreenCatalogue", "Holdings Sort Groups")},
    {"OPAC", "OPAC_Misc", "OPAC_Miscellaneous", QT_TRANSLATE_NOOP("ScreenCatalogue", "Miscellaneous")},
    {"OPAC", "OPAC_CircPolicies", "OPAC_SelfRegistration", QT_TRANSLATE_NOOP("ScreenCatalogue", "Patron Self-Registration")},
    {"OPAC", "OPAC_RequestForms", "OPAC_RequestForm", QT_TRANSLATE_NOOP("ScreenCatalogue", "Request Forms")},
    {"Search", "Search_BibLinking", "Search_BibLinking", QT_TRANSLATE_NOOP("ScreenCatalogue", "Bibliographic Record Linking")},
    {"Search", "Search_DatabaseDefinitions", "Search_Database", QT_TRANSLATE_NOOP("ScreenCatalogue", "Database Definitions")},
    {"Search", "Search_HeadingFilter", "Search_HeadingFilter", QT_TRANSLATE_NOOP("ScreenCatalogue", "Heading Filters")},
    {"Search", "Search_HookToHolding", "Search_HookToHolding", QT_TRANSLATE_NOOP("ScreenCatalogue", "Hook To Holdings")},
    {"Search", "Search_CompositeDefinitions", "Search_CompositeIndex", QT_TRANSLATE_NOOP("ScreenCatalogue", "Indexes - Composite Definitions")},
    {"Search", "Search_FieldWeighting", "Search_FieldWeighting", QT_TRANSLATE_NOOP("ScreenCatalogue", "Indexes - Field Weighting")},
    {"Search", "Search_SearchDefinitions", "Search_HeadingIndex", QT_TRANSLATE_NOOP("ScreenCatalogue", "Indexes - Headings && Left-Anchored Definitions")},
    {"Search", "Search_KeywordDefinitions", "Search_KeywordIndex", QT_TRANSLATE_NOOP("ScreenCatalogue", "Indexes - Keyword Definitions")},
    {"Search", "Search_HoldingsKeywordDefinitions", "Search_HoldingsKeywordIndex", QT_TRANSLATE_NOOP("ScreenCatalogue", "Indexes - Holdings Keyword Definitions")},
    {"Search", "Search_SimultaneousSearch", "Search_Simultaneous", QT_TRANSLATE_NOOP("ScreenCatalogue", "Simultaneous Search De-Duplicating")},
    {"Search", "Search_BibDisplay", "Search_TitleListColumn", QT_TRANSLATE_NOOP("ScreenCatalogue", "Title List Column Names")},
    {"Search", "Search_MaterialType", "Search_MaterialType", QT_TRANSLATE_NOOP("ScreenCatalogue", "Title List Material Type Display")},
    {"Security", "Security_AcqSerialsProfile", "Sec_AcqSerialsProfile", QT_TRANSLATE_NOOP("ScreenCatalogue", "Acquisition/Serials Profiles")},
    {"Security", "Security_CatalogingProfile", "Sec_CatalogingProfile", QT_TRANSLATE_NOOP("ScreenCatalogue", "Cataloging Profiles")},
    {"Security", "Security_CirculationProfile", "Sec_CirculationProfile", QT_TRANSLATE_NOOP("ScreenCatalogue", "Circulation Profiles")},
    {"Security", "Security_MasterProfile", "Sec_MasterProfile", QT_TRANSLATE_NOOP("ScreenCatalogue", "Master Profiles")},
    {"Security", "Security_OperatorProfile", "Sec_Operator", QT_TRANSLATE_NOOP("ScreenCatalogue", "Operator Profiles")},
    {"Security", "Security_ReportingProfiles", "Sec_AnalyzerProfile", QT_TRANSLATE_NOOP("ScreenCatalogue", "Analyzer Profiles")},
    {"Security", "Security_GlobalDataChangeProfiles", "Sec_GlobalDataChange", QT_TRANSLATE_NOOP("ScreenCatalogue", "Global Data Change Profiles")},
    {"Security", "Security_Options", "Sec_Option", QT_TRANSLATE_NOOP("ScreenCatalogue", "Security Options")},
    {"System", "System_AccessControlGroups", "Sys_AccessControlGroup", QT_TRANSLATE_NOOP("ScreenCatalogue", "Access Control Groups")},
    {"System", "System_BaseCurrency", "Sys_BaseCurrency", QT_TRANSLATE_NOOP("ScreenCatalogue", "Base Currency")},
    {"System", "System_DefaultAddress", "Sys_DefaultAddress", QT_TRANSLATE_NOOP("ScreenCatalogue", "Default Address")},
    {"System", "System_Events", "Sys_Event", QT_TRANSLATE_NOOP("ScreenCatalogue", "Events")},
    {"System", "System_FineFeeReasons", "Sys_FineFee", QT_TRANSLATE_NOOP("ScreenCatalogue", "Fines/Fees")},
    {"System", "System_ItemTypes", "Sys_ItemType", QT_TRANSLATE_NOOP("ScreenCatalogue", "Item Types")},
    {"System", "System_Locations", "Sys_Location", QT_TRANSLATE_NOOP("ScreenCatalogue", "Locations")},
    {"System", "System_LocLimitGroups", "Sys_LocationLimitGroup", QT_TRANSLATE_NOOP("ScreenCatalogue", "Location Limit Groups")},
    {"System", "System_Misc", "Sys_Miscellaneous", QT_TRANSLATE_NOOP("ScreenCatalogue", "Miscellaneous")},
    {"System", "System_OwningLibraries", "Sys_OwningLibrary", QT_TRANSLATE_NOOP("ScreenCatalogue", "Owning Libraries")},
    {"System", "System_PrintLocations", "Sys_PrintLocation", QT_TRANSLATE_NOOP("ScreenCatalogue", "Print Locations")},
    {"System", "System_StatisticalCategories", "Sys_StatisticalCategory", QT_TRANSLATE_NOOP("ScreenCatalogue", "Statistical Categories")},
    {"WebServices", "WS_LoginSummary", "WS_LoginSummary", QT_TRANSLATE_NOOP("ScreenCatalogue", "Login Summary")},
    {"WebServices", "WS_SelfRegistration", "WS_SelfRegistration", QT_TRANSLATE_NOOP("ScreenCatalogue", "Patron Self-Registration")},
    {"WebServices", "WS_Configuration", "WS_Configuration", QT_TRANSLATE_NOOP("ScreenCatalogue", "Service Configuration")},
    {"Tools", "Tools_Health", "Tool_Health", QT_TRANSLATE_NOOP("ScreenCatalogue", "Health")},
    {"Tools", "Tools_History", "Tool_History", QT_TRANSLATE_NOOP("ScreenCatalogue", "History")},
    {"Tools", "Tools_RuleCheck", "Tool_RuleCheck", QT_TRANSLATE_NOOP("ScreenCatalogue", "Check the Rules")},
    {"Tools", "Tools_LoanTest", "Tool_LoanTest", QT_TRANSLATE_NOOP("ScreenCatalogue", "Test a Loan")},
    {"Tools", "Tools_WhoMay", "Tool_WhoMay", QT_TRANSLATE_NOOP("ScreenCatalogue", "Who May Do This?")},
    {"Tools", "Tools_CompareConfigurations", "Tool_Compare", QT_TRANSLATE_NOOP("ScreenCatalogue", "Compare Configurations")},
};
// clang-format on

QString Translate(const char* caption) {
    return QCoreApplication::translate("ScreenCatalogue", caption);
}

} // namespace

ScreenCatalogue::ScreenCatalogue() {
    for (const Group& group : GroupTable)
        m_groups.append({group.key, Translate(group.caption)});
    for (const Item& item : ItemTable)
        m_entries.append({item.group, Translate(item.caption), item.key, item.icon, {}});
}

void ScreenCatalogue::Contribute(const QString& key, ScreenMaker maker) {
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const ScreenEntry& candidate) { return candidate.key == key; });
    if (entry == m_entries.end())
        qFatal("The navigation table has no item %s", qUtf8Printable(key));
    entry->screen = std::move(maker);
}

const ScreenEntry* ScreenCatalogue::Find(const QString& key) const {
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const ScreenEntry& candidate) { return candidate.key == key; });
    return entry == m_entries.end() ? nullptr : &*entry;
}

} // namespace sysadmin
