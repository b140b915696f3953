#include "framework/forms/PickedLists.h"

#include <QHash>

#include <algorithm>

namespace sysadmin {

namespace {

void SetStates(QList<GridRow>& rows, QChar state) {
    for (GridRow& row : rows)
        row.state = state;
}

QList<GridRow> RowsInState(const QList<GridRow>& rows, QChar state) {
    QList<GridRow> found;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(found),
                 [=](const GridRow& row) { return row.state == state; });
    return found;
}

bool HasState(const QList<GridRow>& rows, QChar state) {
    return std::any_of(rows.begin(), rows.end(), [=](const GridRow& row) { return row.state == state; });
}

// One pass over each list, however many rows move.
void MoveRows(QList<GridRow>& from, QList<GridRow>& to, const QStringList& keys) {
    QHash<QString, qsizetype> places;
    places.reserve(from.size());
    for (qsizetype i = 0; i < from.size(); ++i)
        places.insert(from[i].key, i);
    QList<bool> moved(from.size(), false);
    to.reserve(to.size() + keys.size());
    for (const QString& key : keys) {
        const auto place = places.constFind(key);
        if (place == places.constEnd() || moved[*place])
            continue;
        moved[*place] = true;
        to.append(from[*place]);
    }
    QList<GridRow> left;
    for (qsizetype i = 0; i < from.size(); ++i)
        if (!moved[i])
            left.append(std::move(from[i]));
    from = std::move(left);
}

} // namespace

void PickedLists::Load(const QList<GridRow>& available, const QList<GridRow>& selected) {
    m_available = available;
    m_selected = selected;
    Accept();
}

void PickedLists::MoveToSelected(const QStringList& keys) {
    MoveRows(m_available, m_selected, keys);
}

void PickedLists::MoveToAvailable(const QStringList& keys) {
    MoveRows(m_selected, m_available, keys);
}

void PickedLists::MoveAllToSelected() {
    m_selected += m_available;
    m_available.clear();
}

void PickedLists::MoveAllToAvailable() {
    m_available += m_selected;
    m_selected.clear();
}

QList<GridRow> PickedLists::Added() const {
    return RowsInState(m_selected, LoadedAvailable);
}

QList<GridRow> PickedLists::Removed() const {
    return RowsInState(m_available, LoadedSelected);
}

bool PickedLists::Changed() const {
    return HasState(m_selected, LoadedAvailable) || HasState(m_available, LoadedSelected);
}

void PickedLists::Accept() {
    SetStates(m_available, LoadedAvailable);
    SetStates(m_selected, LoadedSelected);
    m_loadedAvailable = m_available;
    m_loadedSelected = m_selected;
}

void PickedLists::Revert() {
    m_available = m_loadedAvailable;
    m_selected = m_loadedSelected;
}

} // namespace sysadmin
