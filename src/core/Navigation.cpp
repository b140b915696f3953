#include "core/Navigation.h"

#include "core/data/SecurityProfile.h"

#include <algorithm>

namespace sysadmin {

namespace {

const char* const WebServicesGroup = "WebServices";

} // namespace

Navigation::Navigation(const ScreenCatalogue& catalogue) {
    for (const ScreenGroup& group : catalogue.Groups()) {
        NavigationGroup made{group.key, group.caption, {}};
        for (const ScreenEntry& entry : catalogue.Entries())
            if (entry.groupKey == group.key)
                made.items.append(entry);
        m_groups.append(made);
    }
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
    const auto removeGroups = [&](const QStringList& groups) {
        for (const QString& group : groups)
            allRemoved &= RemoveGroup(group);
    };

    if (!profile.AcqAccess())
        removeGroups({"Acquisitions"});
    if (!profile.CatAccess())
        removeGroups({"Cataloging"});
    if (!profile.CircAccess())
        removeGroups({"Circulation", "Tools"});
    else if (!profile.PatronGroupAccess())
        allRemoved &= RemoveItem("Circulation", "Circulation_PatronGroups");
    if (!profile.SecurityAccess())
        removeGroups({"Security"});
    // Catalogue, call slips and search are reachable only with the system right.
    if (!profile.SystemAccess())
        removeGroups({"System", "OPAC", "CallSlips", "Search"});
    if (!profile.MainWindowFlag())
        removeGroups({WebServicesGroup});

    const bool anyLeft = std::any_of(m_groups.begin(), m_groups.end(), [](const NavigationGroup& group) {
        return group.key != WebServicesGroup;
    });
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
