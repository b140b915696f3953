#pragma once

#include "framework/forms/GridRow.h"

namespace sysadmin {

/// Two lists between which rows are moved, available and selected. Every row keeps where it was loaded (state
/// 'A' or 'S'), so that only moved rows need to be sent, and a row that went out and came back counts as
/// unmoved.
class PickedLists {
public:
    static constexpr QChar LoadedAvailable = u'A';
    static constexpr QChar LoadedSelected = u'S';

    /// Takes what the server has; the rows' own states are replaced.
    void Load(const QList<GridRow>& available, const QList<GridRow>& selected);
    const QList<GridRow>& Available() const { return m_available; }
    const QList<GridRow>& Selected() const { return m_selected; }

    /// Moves the available rows with these keys to the end of the selected ones, in the keys' order; keys
    /// that are not there are passed over.
    void MoveToSelected(const QStringList& keys);
    /// The same the other way.
    void MoveToAvailable(const QStringList& keys);
    void MoveAllToSelected();
    void MoveAllToAvailable();

    /// The selected rows that were loaded as available, in list order.
    QList<GridRow> Added() const;
    /// The available rows that were loaded as selected, in list order.
    QList<GridRow> Removed() const;
    bool Changed() const;

    /// The lists were saved: each row belongs where it is now.
    void Accept();
    /// Back to the lists as last loaded or saved, order included.
    void Revert();

private:
    QList<GridRow> m_available;
    QList<GridRow> m_selected;
    QList<GridRow> m_loadedAvailable;
    QList<GridRow> m_loadedSelected;
};

} // namespace sysadmin
