#include "framework/forms/PickedLists.h"

#include <QHash>
#include <QSet>

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

QList<GridRow> PickedLists::Altered() const {
    QHash<QString, qsizetype> loaded;
    for (qsizetype i = 0; i < m_loadedSelected.size(); ++i)
        loaded.insert(m_loadedSelected[i].key, i);
    QList<GridRow> altered;
    for (qsizetype i = 0; i < m_selected.size(); ++i) {
        const auto place = loaded.constFind(m_selected[i].key);
        if (place != loaded.constEnd() &&
            (m_loadedSelected[*place] != m_selected[i] || (m_ranked && *place != i)))
            altered.append(m_selected[i]);
    }
    return altered;
}

bool PickedLists::Changed() const {
    return HasState(m_selected, LoadedAvailable) || HasState(m_available, LoadedSelected) ||
           !Altered().isEmpty();
}

void PickedLists::SetCells(const QStringList& keys, int column, const QString& value) {
    const QSet<QString> wanted(keys.begin(), keys.end());
    for (QList<GridRow>* rows : {&m_available, &m_selected})
        for (qsizetype i = 0; i < rows->size(); ++i) {
            if (!wanted.contains(rows->at(i).key) || rows->at(i).cells.value(column) == value)
                continue;
            QStringList& cells = (*rows)[i].cells;
            while (cells.size() <= column)
                cells.append(QString());
            cells[column] = value;
        }
}

void PickedLists::MoveSelected(const QString& key, qsizetype place) {
    for (qsizetype i = 0; i < m_selected.size(); ++i)
        if (m_selected[i].key == key) {
            m_selected.move(i, std::clamp(place, qsizetype(0), m_selected.size() - 1));
            return;
        }
}

void PickedLists::Arrange(const QStringList& keys, bool selected) {
    QList<GridRow> rest = selected ? m_selected : m_available;
    QList<GridRow> arranged;
    MoveRows(rest, arranged, keys);
    (selected ? m_selected : m_available) = arranged + rest;
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
