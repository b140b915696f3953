#include "framework/forms/PickedLists.h"

#include <QSet>

#include <algorithm>
#include <atomic>

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

} // namespace

void PickedLists::List::NoteChange() {
    static std::atomic<quint64> last = 0;
    revision = ++last;
}

void PickedLists::List::Replace(const QList<GridRow>& with) {
    rows = with;
    places.Clear();
    NoteChange();
}

void PickedLists::Load(const QList<GridRow>& available, const QList<GridRow>& selected) {
    m_available.Replace(available);
    m_selected.Replace(selected);
    Accept();
}

void PickedLists::Move(List& from, List& to, const QStringList& keys) {
    std::vector<int> moved; // places, as they are before anything moves
    std::vector<bool> moves(size_t(from.rows.size()));
    for (const QString& key : keys) {
        const int place = from.places.Find(from.rows, key);
        if (place < 0 || moves[size_t(place)])
            continue;
        moves[size_t(place)] = true;
        moved.push_back(place);
    }
    for (const int place : moved) {
        const GridRow& row = from.rows.at(place);
        from.places.Removed(row.key);
        to.places.Inserted(int(to.rows.size()), row.key);
        to.rows.append(row);
    }
    if (!moved.empty()) {
        GridRow* const rows = from.rows.data();
        qsizetype left = *std::min_element(moved.begin(), moved.end());
        for (qsizetype i = left; i < from.rows.size(); ++i)
            if (!moves[size_t(i)])
                rows[left++] = std::move(rows[i]);
        from.rows.resize(left);
    }
    from.NoteChange();
    to.NoteChange();
}

void PickedLists::MoveToSelected(const QStringList& keys) {
    Move(m_available, m_selected, keys);
}

void PickedLists::MoveToAvailable(const QStringList& keys) {
    Move(m_selected, m_available, keys);
}

void PickedLists::MoveAll(List& from, List& to) {
    to.Replace(to.rows + from.rows);
    from.Replace({});
}

void PickedLists::MoveAllToSelected() {
    MoveAll(m_available, m_selected);
}

void PickedLists::MoveAllToAvailable() {
    MoveAll(m_selected, m_available);
}

QList<GridRow> PickedLists::Added() const {
    return RowsInState(Selected(), LoadedAvailable);
}

QList<GridRow> PickedLists::Removed() const {
    return RowsInState(Available(), LoadedSelected);
}

/// Gives the altered rows, one after the other, to a function that says whether it wants more.
template <class Found>
void PickedLists::FindAltered(const Found& found) const {
    const QList<GridRow>& loaded = m_loadedSelected.rows;
    const QList<GridRow>& rows = Selected();
    qsizetype next = 0; // mostly the rows stand as they were loaded
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const GridRow& row = rows.at(i);
        if (next >= loaded.size() || loaded.at(next).key.constData() != row.key.constData()) {
            const int place = m_loadedSelected.places.Find(loaded, row.key);
            if (place < 0)
                continue;
            next = place;
        }
        const GridRow& before = loaded.at(next);
        const bool isSame = before.state == row.state && before.cells == row.cells;
        if ((!isSame || (m_ranked && next != i)) && !found(row))
            return;
        ++next;
    }
}

QList<GridRow> PickedLists::Altered() const {
    QList<GridRow> altered;
    FindAltered([&](const GridRow& row) {
        altered.append(row);
        return true;
    });
    return altered;
}

bool PickedLists::Changed() const {
    bool isAltered = HasState(Selected(), LoadedAvailable) || HasState(Available(), LoadedSelected);
    if (!isAltered)
        FindAltered([&](const GridRow&) { return !(isAltered = true); });
    return isAltered;
}

void PickedLists::SetCells(const QStringList& keys, int column, const QString& value) {
    const QSet<QString> wanted(keys.begin(), keys.end());
    for (List* list : {&m_available, &m_selected}) {
        bool isChanged = false;
        for (qsizetype i = 0; i < list->rows.size(); ++i) {
            const GridRow& row = list->rows.at(i);
            if (!wanted.contains(row.key) || row.cells.value(column) == value)
                continue;
            QStringList& cells = list->rows[i].cells.Own();
            while (cells.size() <= column)
                cells.append(QString());
            cells[column] = value;
            isChanged = true;
        }
        if (isChanged)
            list->NoteChange();
    }
}

void PickedLists::MoveSelected(const QString& key, qsizetype place) {
    const int from = m_selected.places.Find(m_selected.rows, key);
    if (from < 0)
        return;
    const qsizetype to = std::clamp(place, qsizetype(0), m_selected.rows.size() - 1);
    m_selected.rows.move(from, to);
    m_selected.places.Removed(key);
    m_selected.places.Inserted(int(to), key);
    m_selected.NoteChange();
}

void PickedLists::Arrange(const QStringList& keys, bool selected) {
    List& list = selected ? m_selected : m_available;
    List rest = list;
    List arranged;
    Move(rest, arranged, keys);
    list.Replace(arranged.rows + rest.rows);
}

void PickedLists::Arrange(const std::vector<int>& order, bool selected) {
    if (std::is_sorted(order.begin(), order.end()))
        return;
    List& list = selected ? m_selected : m_available;
    QList<GridRow> arranged;
    arranged.reserve(list.rows.size());
    for (const int place : order)
        arranged.append(std::move(list.rows[place]));
    list.rows = std::move(arranged);
    list.places.Arranged(list.rows, order);
    list.NoteChange();
}

void PickedLists::Accept() {
    SetStates(m_available.rows, LoadedAvailable);
    SetStates(m_selected.rows, LoadedSelected);
    m_available.NoteChange();
    m_selected.NoteChange();
    m_loadedAvailable = m_available;
    m_loadedSelected = m_selected;
}

void PickedLists::Revert() {
    m_available = m_loadedAvailable;
    m_selected = m_loadedSelected;
}

} // namespace sysadmin
