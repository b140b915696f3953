#include "core/Navigation.h"

#include "core/data/SecurityProfile.h"

#include <algorithm>

namespace sysadmin {

namespace {

const char* const WebServicesGroup = "WebServices";
const char* const ToolsGroup = "Tools";

/// A right without which nobody sees a group, or one of its items.
struct Need {
    const char* group;
    const char* item; ///< null: the whole group
    wire::Area area;
};

// Catalogue, call slips and search are reachable only with the system right; a tool needs the area at which
// it looks.
constexpr Need Needs[] = {
    {"Acquisitions", nullptr, wire::Area::Acquisitions},
    {"Cataloging", nullptr, wire::Area::Cataloging},
    {"Circulation", nullptr, wire::Area::Circulation},
    {"Circulation", "Circulation_PatronGroups", wire::Area::PatronGroups},
    {"Security", nullptr, wire::Area::Security},
    {"System", nullptr, wire::Area::System},
    {"OPAC", nullptr, wire::Area::System},
    {"CallSlips", nullptr, wire::Area::System},
    {"Search", nullptr, wire::Area::System},
    {ToolsGroup, "Tools_LoanTest", wire::Area::Circulation},
    {ToolsGroup, "Tools_RuleCheck", wire::Area::Circulation},
    {ToolsGroup, "Tools_WhoMay", wire::Area::Security},
    {ToolsGroup, "Tools_History", wire::Area::Security},
    {ToolsGroup, "Tools_CompareConfigurations", wire::Area::Security},
};

} // namespace

QList<wire::Area> AreasNeeded(const ScreenEntry& entry) {
    QList<wire::Area> areas;
    for (const Need& need : Needs)
        if (entry.groupKey == need.group && (!need.item || entry.key == need.item))
            areas.append(need.area);
    return areas;
}

Navigation::Navigation(const ScreenCatalogue& catalogue) {
    for (const ScreenGroup& group : catalogue.Groups()) {
        NavigationGroup made{group.key, group.caption, {}};
        for (const ScreenEntry& entry : catalogue.Entries())
            if (entry.groupKey == group.key)
                made.items.append(entry);
        m_groups.append(made);
    }
}

bool Navigation::Has(const QString& group) const {
    return std::any_of(m_groups.begin(), m_groups.end(),
                       [&](const NavigationGroup& candidate) { return candidate.key == group; });
}

bool Navigation::RemoveGroup(const QString& group) {
    return m_groups.removeIf([&](const NavigationGroup& candidate) { return candidate.key == group; }) > 0;
}

bool Navigation::RemoveItem(const QString& group, const QString& item) {
    const auto found = std::find_if(m_groups.begin(), m_groups.end(),
                                    [&](const NavigationGroup& candidate) { return candidate.key == group; });
    if (found == m_groups.end())
        return false;
    return found->items.removeIf([&](const ScreenEntry& candidate) { return candidate.key == item; }) > 0;
}

bool Navigation::TrimToRights(const SecurityProfile& profile) {
    // A removal that fails does not stop the others; it is remembered and refuses the operator in the end.
    bool allRemoved = true;
    for (const Need& need : Needs) {
        if (profile.HasAccess(need.area))
            continue;
        if (!need.item)
            allRemoved &= RemoveGroup(need.group);
        else if (Has(need.group))
            allRemoved &= RemoveItem(need.group, need.item);
    }
    if (!profile.MainWindowFlag())
        allRemoved &= RemoveGroup(WebServicesGroup);

    const bool anyLeft = std::any_of(m_groups.begin(), m_groups.end(), [](const NavigationGroup& group) {
        return group.key != WebServicesGroup && group.key != ToolsGroup;
    });
    if (!anyLeft)
        RemoveGroup(ToolsGroup);
    return anyLeft && allRemoved;
}

QList<NavigationGroup> Navigation::ShownGroups() const {
    QList<NavigationGroup> shown = m_groups;
    for (NavigationGroup& group : shown)
        group.items.removeIf([](const ScreenEntry& item) { return !item.screen.make; });
    shown.removeIf([](const NavigationGroup& group) { return group.items.isEmpty(); });
    return shown;
}

} // namespace sysadmin
