#pragma once

#include "framework/forms/GridRow.h"

#include <QHash>

#include <vector>

namespace sysadmin {

/// Where in a list the row with a key stands. Made when it is asked often; whoever changes the list tells it,
/// and a few changes cost next to nothing, however long the list is. Of equal keys the first row counts.
class KeyPlaces {
public:
    /// The place of the row with the key; -1 when there is none.
    int Find(const QList<GridRow>& rows, const QString& key) const;
    /// A row with this key was put into this place.
    void Inserted(int place, const QString& key);
    /// The row with this key was taken out.
    void Removed(const QString& key);
    /// The list has another order: its first row stood in place `order[0]` until now, and so on.
    void Arranged(const QList<GridRow>& rows, const std::vector<int>& order);
    /// The list is another one.
    void Clear();

private:
    bool IsMade() const { return m_count >= 0; }
    bool HasTwins() const { return m_places.size() != m_count; }
    void Make(const QList<GridRow>& rows) const;
    static int LookThrough(const QList<GridRow>& rows, const QString& key);
    void Drift(int by);

    // A row that others come before or go from before is not looked up again: it stands at most so many
    // places beside the one that is noted.
    mutable QHash<QString, int> m_places;
    mutable int m_drift = 0;
    mutable qsizetype m_count = -1; // rows of the list; -1: not made
    mutable int m_asked = 0;        // while it was not made
};

} // namespace sysadmin
