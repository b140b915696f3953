#include "framework/GridModel.h"

#include <algorithm>

// Rows that differ from the present ones in a few places: what is known of all others stays.
namespace sysadmin {

void GridModel::ReplaceRows(const QList<GridRow>& rows) {
    const auto changes = ChangesTo(rows);
    if (!changes) {
        SetRows(rows);
        return;
    }
    if (changes->empty())
        return;
    beginResetModel();
    m_texts.Clear();
    // A row that changes its place comes before it goes or the other way; its key goes first.
    for (const Change& change : *changes)
        if (!change.comes)
            m_places.Removed(change.key);
    for (const Change& change : *changes)
        if (change.comes)
            m_places.Inserted(change.place, change.key);
    // The list stays the model's own: sharing the other one would make the next change copy all of it.
    const bool sameOrder = std::all_of(changes->begin(), changes->end(),
                                       [&](const Change& change) { return Apply(change, rows); });
    if (!sameOrder) {
        m_rows = rows;
        m_places.Clear();
        m_sorted.clear();
        m_order.Build(m_rows);
        Arrange();
    }
    endResetModel();
}

/// The changes, from the front to the end, that make the present rows the other ones; none when they are
/// many.
std::optional<std::vector<GridModel::Change>> GridModel::ChangesTo(const QList<GridRow>& rows) const {
    constexpr size_t MostChanges = 16;
    const auto isSame = [](const GridRow& a, const GridRow& b) {
        return (a.key.constData() == b.key.constData() || a.key == b.key) && a.state == b.state &&
               a.cells == b.cells;
    };
    std::vector<Change> changes;
    qsizetype before = 0;
    qsizetype after = 0;
    while (before < m_rows.size() || after < rows.size()) {
        if (before < m_rows.size() && after < rows.size() && isSame(m_rows.at(before), rows.at(after))) {
            ++before;
            ++after;
            continue;
        }
        if (changes.size() == MostChanges)
            return std::nullopt;
        const bool comes = before == m_rows.size() ||
                           (after + 1 < rows.size() && isSame(m_rows.at(before), rows.at(after + 1)));
        changes.push_back({int(after), comes, comes ? rows.at(after).key : m_rows.at(before).key});
        ++(comes ? after : before);
    }
    return changes;
}

/// False when the order of all rows may be another one with the row that comes.
bool GridModel::Apply(const Change& change, const QList<GridRow>& rows) {
    const int place = change.place;
    const auto before = [this](int a, int b) { return m_order.Before(a, b); };
    if (!change.comes) {
        m_rows.removeAt(place);
        m_order.Remove(place);
        for (std::vector<int>* places : {&m_shown, &m_sorted}) {
            std::erase(*places, place);
            for (int& each : *places)
                each -= each > place;
        }
        return true;
    }
    m_rows.insert(place, rows.at(place));
    if (!m_order.Insert(m_rows, place))
        return false;
    for (std::vector<int>* places : {&m_shown, &m_sorted})
        for (int& each : *places)
            each += each >= place;
    if (!m_sorted.empty())
        m_sorted.insert(std::lower_bound(m_sorted.begin(), m_sorted.end(), place, before), place);
    if (Passes(m_rows.at(place)))
        m_shown.insert(std::lower_bound(m_shown.begin(), m_shown.end(), place, before), place);
    return true;
}

} // namespace sysadmin
