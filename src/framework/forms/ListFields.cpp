#include "framework/forms/ListFields.h"

#include "core/data/RequestChannel.h"

#include <algorithm>

namespace sysadmin {

void RowsField::SetStoredRows(const QList<GridRow>& rows) {
    m_stored = rows;
    m_draft = rows;
    NotifyChange();
}

void RowsField::SetRows(const QList<GridRow>& rows) {
    m_draft = rows;
    NotifyChange();
}

void RowsField::PutRow(const GridRow& row) {
    const auto place = std::find_if(m_draft.begin(), m_draft.end(),
                                    [&](const GridRow& other) { return other.key == row.key; });
    if (place == m_draft.end())
        m_draft.append(row);
    else
        *place = row;
    NotifyChange();
}

void RowsField::RemoveRow(const QString& key) {
    if (m_draft.removeIf([&](const GridRow& row) { return row.key == key; }) > 0)
        NotifyChange();
}

const GridRow* RowsField::FindRow(const QString& key) const {
    const auto place =
        std::find_if(m_draft.begin(), m_draft.end(), [&](const GridRow& row) { return row.key == key; });
    return place == m_draft.end() ? nullptr : &*place;
}

void CheckedField::SetStoredItems(const QList<CheckedItem>& items) {
    m_stored = items;
    m_draft = items;
    NotifyChange();
}

void CheckedField::SetChecked(qsizetype index, bool checked) {
    if (m_draft.value(index).checked == checked)
        return;
    if (m_single && checked)
        for (CheckedItem& item : m_draft)
            item.checked = false;
    m_draft[index].checked = checked;
    NotifyChange();
}

void CheckedField::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

void PickedField::LoadLists(const QList<GridRow>& available, const QList<GridRow>& selected) {
    m_lists.Load(available, selected);
    NotifyChange();
}

void PickedField::LoadPairs(RequestChannel& channel, const QString& availableId, const QString& availableName,
                            const QString& selectedId, const QString& selectedName) {
    const QList<GridRow> available = ReadPairs(channel, availableId, availableName);
    LoadLists(available, ReadPairs(channel, selectedId, selectedName));
}

void PickedField::Move(const std::function<void(PickedLists&)>& move) {
    move(m_lists);
    NotifyChange();
}

void PickedField::Revert() {
    m_lists.Revert();
    NotifyChange();
}

void PickedField::BecomeNew() {
    // To the server everything is still available: what is selected here has to be sent.
    QStringList selected;
    for (const GridRow& row : m_lists.Selected())
        selected.append(row.key);
    m_lists.Load(m_lists.Available() + m_lists.Selected(), {});
    m_lists.MoveToSelected(selected);
    NotifyChange();
}

QList<GridRow> ReadPairs(RequestChannel& channel, const QString& idTag, const QString& nameTag) {
    QList<GridRow> rows;
    while (channel.NextRecord(idTag))
        rows.append({channel.GetField(idTag), {channel.GetField(nameTag)}, {}});
    return rows;
}

} // namespace sysadmin
