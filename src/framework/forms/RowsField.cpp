#include "framework/forms/RowsField.h"

#include "core/data/RequestChannel.h"

#include <QSet>

#include <algorithm>

namespace sysadmin {

namespace {

QHash<QString, qsizetype> PlacesOf(const QList<GridRow>& rows) {
    QHash<QString, qsizetype> places;
    places.reserve(rows.size());
    for (qsizetype i = rows.size(); i-- > 0;) // from the end: of equal keys the first row counts
        places.insert(rows[i].key, i);
    return places;
}

const GridRow* Find(const QList<GridRow>& rows, const QString& key) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const GridRow& other) { return other.key == key; });
    return row == rows.end() ? nullptr : &*row;
}

} // namespace

const QString& RowCodes::Of(RowState state) const {
    switch (state) {
    case RowState::Added:
        return added;
    case RowState::Changed:
        return changed;
    case RowState::Removed:
        return removed;
    case RowState::Unchanged:
        break;
    }
    return unchanged;
}

RowsField::RowsField(Form& form, const FieldSpec& spec, const QList<GridColumn>& columns,
                     const RowsSpec& rows)
    : Field(form, Kind::Rows, spec)
    , m_columns(columns)
    , m_rowsSpec(rows) {
    for (auto edit = m_rowsSpec.edits.begin(); edit != m_rowsSpec.edits.end(); ++edit)
        if (edit->kind == CellEdit::Kind::Choice)
            m_columns[edit.key()].items = edit->items;
}

GridRow RowsField::ShownRow(const GridRow& row) const {
    GridRow shown = row;
    for (auto column = m_rowsSpec.shown.begin(); column != m_rowsSpec.shown.end(); ++column)
        if (column.key() < shown.cells.size())
            shown.cells[column.key()] = column.value()(row);
    return shown;
}

QList<GridRow> RowsField::ShownRows() const {
    if (m_rowsSpec.shown.isEmpty())
        return m_draft; // shared: whoever shows it need not compare row by row
    QList<GridRow> rows;
    rows.reserve(m_draft.size());
    for (const GridRow& row : m_draft)
        rows.append(ShownRow(row));
    return rows;
}

void RowsField::SetStoredRows(const QList<GridRow>& rows) {
    m_draft = rows;
    NumberAnew();
    m_stored = m_draft;
    NotifyChange();
}

void RowsField::SetRows(const QList<GridRow>& rows) {
    m_draft = rows;
    NumberAnew();
    NotifyEdit();
}

void RowsField::PutRows(const QList<GridRow>& rows) {
    QHash<QString, qsizetype> places = PlacesOf(m_draft);
    for (const GridRow& row : rows) {
        const auto place = places.constFind(row.key);
        if (place != places.constEnd()) {
            m_draft[*place] = row;
        } else {
            places.insert(row.key, m_draft.size());
            m_draft.append(row);
        }
    }
    NumberAnew();
    NotifyEdit();
}

void RowsField::ReplaceRow(const QString& key, const GridRow& row) {
    if (const qsizetype place = key.isEmpty() ? -1 : PlaceOf(key); place >= 0)
        m_draft[place] = row;
    else
        m_draft.append(row);
    NumberAnew();
    NotifyEdit();
}

void RowsField::RemoveRows(const QStringList& keys) {
    const QSet<QString> gone(keys.begin(), keys.end());
    if (m_draft.removeIf([&](const GridRow& row) { return gone.contains(row.key); }) == 0)
        return;
    NumberAnew();
    NotifyEdit();
}

void RowsField::SetCells(const QStringList& keys, int column, const QString& value) {
    const QHash<QString, qsizetype> places = PlacesOf(m_draft);
    bool any = false;
    for (const QString& key : keys) {
        const auto place = places.constFind(key);
        if (place == places.constEnd() || m_draft.at(*place).cells.value(column) == value)
            continue;
        QStringList& cells = m_draft[*place].cells.Own();
        while (cells.size() <= column)
            cells.append(QString());
        cells[column] = value;
        any = true;
    }
    if (any)
        NotifyEdit();
}

void RowsField::MoveRow(const QString& key, qsizetype place) {
    const qsizetype from = PlaceOf(key);
    const qsizetype to = std::clamp(place, qsizetype(0), m_draft.size() - 1);
    if (from < 0 || from == to)
        return;
    m_draft.move(from, to);
    NumberAnew();
    NotifyEdit();
}

void RowsField::NumberAnew() {
    const int column = m_rowsSpec.rankColumn;
    if (!m_rowsSpec.ranked || column < 0)
        return;
    for (qsizetype i = 0; i < m_draft.size(); ++i)
        if (const QString rank = QString::number(i + 1); m_draft.at(i).cells.value(column) != rank) {
            QStringList& cells = m_draft[i].cells.Own();
            while (cells.size() <= column)
                cells.append(QString());
            cells[column] = rank;
        }
}

const GridRow* RowsField::FindRow(const QString& key) const {
    return Find(m_draft, key);
}

qsizetype RowsField::PlaceOf(const QString& key) const {
    const GridRow* row = FindRow(key);
    return row ? row - m_draft.constData() : -1;
}

QString RowsField::NewKey() {
    return QChar(1) + QString::number(++m_newRows);
}

QList<std::pair<GridRow, RowState>> RowsField::Changes() const {
    const QHash<QString, qsizetype> drafts = PlacesOf(m_draft);
    const QHash<QString, qsizetype> stored = PlacesOf(m_stored);
    const auto compare = [](const GridRow& before, const GridRow& now) {
        return before == now ? RowState::Unchanged : RowState::Changed;
    };
    QList<std::pair<GridRow, RowState>> changes;
    for (const GridRow& row : m_stored) {
        const auto place = drafts.constFind(row.key);
        if (place == drafts.constEnd())
            changes.append({row, RowState::Removed});
        else if (!m_rowsSpec.ranked)
            changes.append({m_draft[*place], compare(row, m_draft[*place])});
    }
    for (qsizetype i = 0; i < m_draft.size(); ++i) {
        const GridRow& row = m_draft[i];
        const auto place = stored.constFind(row.key);
        if (place == stored.constEnd())
            changes.append({row, RowState::Added});
        else if (m_rowsSpec.ranked)
            changes.append({row, *place == i ? compare(m_stored[*place], row) : RowState::Changed});
    }
    return changes;
}

QString RowsField::Refusal(const GridRow& row, const GridRow* former) const {
    return m_rowsSpec.check ? m_rowsSpec.check(row, former) : QString();
}

void RowsField::Load(RequestChannel& channel) {
    if (m_rowsSpec.marker.isEmpty())
        return;
    QList<GridRow> rows =
        ReadRows(channel, m_rowsSpec.marker, m_rowsSpec.keyTag, TagsOf(m_columns) + m_rowsSpec.moreTags);
    if (m_rowsSpec.belongs)
        rows.removeIf([this](const GridRow& row) { return !m_rowsSpec.belongs(row); });
    // Where the first cell stands for a key, rows may begin alike (two parts of one MARC field).
    QSet<QString> keys;
    for (GridRow& row : rows) {
        if (m_rowsSpec.keyTag.isEmpty() && keys.contains(row.key))
            row.key = NewKey();
        keys.insert(row.key);
    }
    SetStoredRows(rows);
}

void RowsField::Put(RequestChannel& channel) const {
    const bool tellsStates =
        std::any_of(m_rowsSpec.puts.begin(), m_rowsSpec.puts.end(),
                    [](const RowTag& put) { return put.source == RowTag::Source::State; });
    if (!tellsStates) { // the rows as they are now replace those that the server has
        for (qsizetype i = 0; i < m_draft.size(); ++i)
            PutOne(channel, m_draft[i], RowState::Unchanged, i + 1);
        return;
    }
    const QHash<QString, qsizetype> places = PlacesOf(m_draft);
    for (const auto& [row, state] : Changes())
        if (state != RowState::Unchanged || !m_rowsSpec.onlyChanged)
            PutOne(channel, row, state, places.value(row.key, -1) + 1);
}

void RowsField::PutRemoval(RequestChannel& channel) const {
    for (const GridRow& row : m_stored)
        PutOne(channel, row, RowState::Removed, 0);
}

void RowsField::PutOne(RequestChannel& channel, const GridRow& row, RowState state, qsizetype rank) const {
    for (const RowTag& put : m_rowsSpec.puts) {
        switch (put.source) {
        case RowTag::Source::Key:
            channel.PutField(put.tag, IsNewKey(row.key) ? QString() : row.key);
            break;
        case RowTag::Source::Cell:
            channel.PutField(put.tag, row.cells.value(put.column));
            break;
        case RowTag::Source::Amount: {
            const QString amount = row.cells.value(put.column).trimmed();
            channel.PutField(put.tag, amount.isEmpty() ? QString(" ") : amount);
            break;
        }
        case RowTag::Source::State:
            channel.PutField(put.tag, m_rowsSpec.codes.Of(state));
            break;
        case RowTag::Source::Rank:
            channel.PutField(put.tag, QString::number(rank));
            break;
        case RowTag::Source::Fixed:
            channel.PutField(put.tag, put.fixed());
            break;
        }
    }
}

void RowsField::Accept() {
    m_stored = m_draft;
}

void RowsField::Revert() {
    m_draft = m_stored;
    NotifyChange();
}

void RowsField::BecomeNew() {
    for (GridRow& row : m_draft)
        row.key = NewKey();
    m_stored.clear();
    NotifyChange();
}

QStringList RowsField::Words() const {
    QStringList words;
    for (const GridRow& row : ShownRows())
        words << InWords(row, m_columns);
    return words;
}

QString RowsField::PlainCaption() const {
    const QString own = Field::PlainCaption();
    return own.isEmpty() && !m_columns.isEmpty() ? m_columns.first().caption : own;
}

void RowsField::GiveDraft(const std::any& draft) {
    m_draft = std::any_cast<QList<GridRow>>(draft);
    // What the server does not have any more by its key has to be added again.
    const QHash<QString, qsizetype> stored = PlacesOf(m_stored);
    for (GridRow& row : m_draft)
        if (!m_rowsSpec.keyTag.isEmpty() && !IsNewKey(row.key) && !stored.contains(row.key))
            row.key = NewKey();
    NotifyChange();
}

QList<GridRow> ReadRows(const RequestChannel& channel, const QString& marker, const QString& keyTag,
                        const QStringList& cellTags, const QString& otherMarker) {
    const wire::ReceivedFields& reply = channel.Reply();
    const int begins = reply.FindTag(marker);
    const int ends = reply.FindTag(otherMarker);
    const int keyed = keyTag.isEmpty() ? begins : reply.FindTag(keyTag);
    const auto tags = std::make_shared<wire::RecordTags>(reply, cellTags);
    QList<GridRow> rows;
    for (qsizetype next = 0; next < reply.Count();) {
        const qsizetype begin = next++;
        if (reply.TagAt(begin) != begins)
            continue;
        while (next < reply.Count() && reply.TagAt(next) != begins && reply.TagAt(next) != ends)
            ++next;
        qsizetype key = begin;
        while (key < next && reply.TagAt(key) != keyed)
            ++key;
        rows.append(
            {key < next ? reply.ValueAt(key) : QString(), wire::ReceivedRecord(tags, begin, next), {}});
    }
    return rows;
}

QString InWords(const GridRow& row, const QList<GridColumn>& columns) {
    QStringList words;
    for (qsizetype i = 0; i < row.cells.size(); ++i) {
        const GridColumn column = columns.value(i);
        const bool isOn = row.cells[i] == u"Y";
        if (column.hidden || row.cells[i].isEmpty() || (column.yesNo && !isOn))
            continue;
        words << (column.yesNo ? column.caption : ShownText(column, row.cells[i]));
    }
    return words.join(", ");
}

} // namespace sysadmin
