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
    beginResetModel();
    const bool sameOrder = std::all_of(changes->begin(), changes->end(),
                                       [&](const Change& change) { return Apply(change, rows); });
    m_rows = rows;
    if (m_places.size() != m_rows.size()) // of equal keys the first row counts
        m_places.clear();
    if (!sameOrder) {
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
        return a.key == b.key && a.state == b.state && (a.cells.isSharedWith(b.cells) || a.cells == b.cells);
    };
    std::vector<Change> changes;
    qsizetype before = 0;
    qsizetype after = 0;
    while (before < m_rows.size() || after < rows.size()) {
        if (before < m_rows.size() && after < rows.size() && isSame(m_rows[before], rows[after])) {
            ++before;
            ++after;
            continue;
        }
        if (changes.size() == MostChanges)
            return std::nullopt;
        const bool comes =
            before == m_rows.size() || (after + 1 < rows.size() && isSame(m_rows[before], rows[after + 1]));
        changes.push_back({int(after), comes, comes ? rows[after].key : m_rows[before].key});
        ++(comes ? after : before);
    }
    return changes;
}

/// False when the order of all rows may be another one with the row that comes.
bool GridModel::Apply(const Change& change, const QList<GridRow>& rows) {
    const int place = change.place;
    const auto before = [this](int a, int b) { return m_order.Before(a, b); };
    if (!change.comes) {
        m_order.Remove(place);
        for (std::vector<int>* places : {&m_shown, &m_sorted}) {
            std::erase(*places, place);
            for (int& each : *places)
                each -= each > place;
        }
        if (m_places.value(change.key, -1) == place)
            m_places.remove(change.key);
        for (int& each : m_places)
            each -= each > place;
        return true;
    }
    if (!m_order.Insert(rows, place))
        return false;
    for (std::vector<int>* places : {&m_shown, &m_sorted})
        for (int& each : *places)
            each += each >= place;
    for (int& each : m_places)
        each += each >= place;
    m_places.insert(change.key, place);
    if (!m_sorted.empty())
        m_sorted.insert(std::lower_bound(m_sorted.begin(), m_sorted.end(), place, before), place);
    if (Passes(rows[place]))
        m_shown.insert(std::lower_bound(m_shown.begin(), m_shown.end(), place, before), place);
    return true;
}

} // namespace sysadmin
