#include "framework/forms/ListFields.h"

#include "core/data/RequestChannel.h"

#include <QSet>

namespace sysadmin {

void CheckedField::SetStoredItems(const QList<CheckedItem>& items) {
    m_stored = items;
    m_draft = items;
    NotifyChange();
}

void CheckedField::SetChecked(qsizetype index, bool checked) {
    if (m_draft.value(index).checked == checked)
        return;
    m_draft[index].checked = checked;
    NotifyEdit();
}

void CheckedField::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

void CheckedField::GiveDraft(const std::any& draft) {
    m_draft = std::any_cast<QList<CheckedItem>>(draft);
    NotifyChange();
}

QStringList CheckedField::Words() const {
    QStringList words;
    for (const CheckedItem& item : m_draft)
        if (item.checked)
            words << item.text;
    return words;
}

void PickedField::LoadLists(const QList<GridRow>& available, const QList<GridRow>& selected) {
    m_lists.Load(available, selected);
    NotifyChange();
}

void PickedField::Load(RequestChannel& channel) {
    const PickedTags& tags = m_picked.tags;
    if (tags.availableId.isEmpty())
        return;
    const QStringList more = TagsOf(m_picked.more);
    LoadLists(
        ReadRows(channel, tags.availableId, {}, QStringList{tags.availableName} + more, tags.selectedId),
        ReadRows(channel, tags.selectedId, {}, QStringList{tags.selectedName} + more, tags.availableId));
}

void PickedField::Put(RequestChannel& channel) const {
    const PickedTags& tags = m_picked.tags;
    if (tags.availableId.isEmpty())
        return;
    const auto put = [&](const QList<GridRow>& rows, const QString& state) {
        for (const GridRow& row : rows) {
            channel.PutField(tags.selectedId, row.key);
            if (!tags.state.isEmpty())
                channel.PutField(tags.state, state);
        }
    };
    if (tags.state.isEmpty()) {
        put(m_lists.Selected(), {});
        return;
    }
    put(m_lists.Removed(), tags.removed);
    put(m_lists.Added(), tags.added);
}

void PickedField::Move(const std::function<void(PickedLists&)>& move) {
    move(m_lists);
    NotifyEdit();
}

QString PickedField::Veto(const QStringList& keys, bool toSelected) const {
    return m_picked.veto ? m_picked.veto(RowsOf(keys, toSelected), toSelected) : QString();
}

QStringList PickedField::Admit(const QStringList& keys, bool toSelected, Prompter& prompter,
                               QWidget* parent) const {
    return m_picked.admit ? m_picked.admit(RowsOf(keys, toSelected), toSelected, prompter, parent) : keys;
}

QList<GridRow> PickedField::RowsOf(const QStringList& keys, bool toSelected) const {
    const QSet<QString> wanted(keys.begin(), keys.end());
    QList<GridRow> rows;
    for (const GridRow& row : toSelected ? m_lists.Available() : m_lists.Selected())
        if (wanted.contains(row.key))
            rows.append(row);
    return rows;
}

void PickedField::GiveDraft(const std::any& draft) {
    const auto given = std::any_cast<PickedLists>(draft);
    const auto keysOf = [](const QList<GridRow>& rows) {
        QStringList keys;
        for (const GridRow& row : rows)
            keys.append(row.key);
        return keys;
    };
    // The draft is which rows are selected; what the server has may be something else than it was then.
    m_lists.Revert();
    m_lists.MoveToSelected(keysOf(given.Selected()));
    m_lists.MoveToAvailable(keysOf(given.Available()));
    if (!m_picked.edits.isEmpty() || m_picked.settings || m_picked.ask)
        for (const GridRow& row : given.Selected())
            for (int column = 0; column < row.cells.size(); ++column)
                m_lists.SetCells({row.key}, column, row.cells[column]);
    m_lists.Arrange(keysOf(given.Selected()), true);
    m_lists.Arrange(keysOf(given.Available()), false);
    NotifyChange();
}

QStringList PickedField::Words() const {
    QStringList words;
    for (const GridRow& row : m_lists.Selected())
        words << InWords(row, QList<GridColumn>{{}} + m_picked.more);
    return words;
}

QString PickedField::PlainCaption() const {
    QString caption = QString(m_names.selectedCaption).remove('&');
    while (caption.endsWith(':'))
        caption.chop(1);
    return caption.isEmpty() ? Field::PlainCaption() : caption;
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
