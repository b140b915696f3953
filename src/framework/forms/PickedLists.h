#pragma once

#include "framework/forms/KeyPlaces.h"

namespace sysadmin {

/// Two lists between which rows are moved, available and selected. Every row keeps where it was loaded (state
/// 'A' or 'S'), so that only moved rows need to be sent, and a row that went out and came back counts as
/// unmoved.
class PickedLists {
public:
    static constexpr QChar LoadedAvailable = u'A';
    static constexpr QChar LoadedSelected = u'S';

    /// `ranked`: the order of the selected rows counts as a change.
    explicit PickedLists(bool ranked = false)
        : m_ranked(ranked) {}

    /// Takes what the server has; the rows' own states are replaced.
    void Load(const QList<GridRow>& available, const QList<GridRow>& selected);
    const QList<GridRow>& Available() const { return m_available.rows; }
    const QList<GridRow>& Selected() const { return m_selected.rows; }
    /// Another number whenever the list may be another one; the same after a change was taken back.
    quint64 Revision(bool selected) const { return (selected ? m_selected : m_available).revision; }

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
    /// The selected rows that were loaded as selected and differ from that, in a cell or, of ranked rows, in
    /// their place; in list order.
    QList<GridRow> Altered() const;
    bool Changed() const;

    /// Sets a cell of the rows with these keys, wherever they are.
    void SetCells(const QStringList& keys, int column, const QString& value);
    /// Brings a selected row to another place, counted from 0.
    void MoveSelected(const QString& key, qsizetype place);
    /// Brings the selected rows, or the available ones, into the order of the keys; others stay behind them.
    void Arrange(const QStringList& keys, bool selected);
    /// The same by places: the row in place `order[0]` becomes the first one, and so on. Names each place
    /// once.
    void Arrange(const std::vector<int>& order, bool selected);

    /// The lists were saved: each row belongs where it is now.
    void Accept();
    /// Back to the lists as last loaded or saved, order included.
    void Revert();

private:
    struct List {
        QList<GridRow> rows{};
        KeyPlaces places{};
        quint64 revision = 0;
        void NoteChange();
        void Replace(const QList<GridRow>& with);
    };
    static void Move(List& from, List& to, const QStringList& keys);
    static void MoveAll(List& from, List& to);
    template <class Found>
    void FindAltered(const Found& found) const;

    bool m_ranked = false;
    List m_available;
    List m_selected;
    List m_loadedAvailable;
    List m_loadedSelected;
};

} // namespace sysadmin
