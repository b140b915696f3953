#pragma once

#include "core/ScreenCatalogue.h"
#include "wire/Area.h"

namespace sysadmin {

class SecurityProfile;

/// The areas in which an operator must have a right, to change or to view, to be offered the item; none:
/// every operator who may use the program is.
QList<wire::Area> AreasNeeded(const ScreenEntry& entry);

/// A group of the navigation bar with its items.
struct NavigationGroup {
    QString key;
    QString caption;
    QList<ScreenEntry> items;
};

/// What the navigation bar offers: the navigation table, from which start-up takes what the operator may not
/// use.
class Navigation {
public:
    /// The whole table.
    explicit Navigation(const ScreenCatalogue& catalogue);

    /// Takes a group away; false when it is not there.
    bool RemoveGroup(const QString& group);
    /// Takes an item out of a group; false when it is not there.
    bool RemoveItem(const QString& group, const QString& item);

    /// Takes away what the profile denies. True when the operator may use the program: a group is left (the
    /// web services, which hang on a flag and not on a right, and the tools are not counted) and no removal
    /// failed.
    bool TrimToRights(const SecurityProfile& profile);

    /// What is left of the table, including items whose screen nobody contributed.
    const QList<NavigationGroup>& Groups() const { return m_groups; }
    /// What there is to see: groups and items with a screen behind them.
    QList<NavigationGroup> ShownGroups() const;

private:
    bool Has(const QString& group) const;

    QList<NavigationGroup> m_groups;
};

} // namespace sysadmin
