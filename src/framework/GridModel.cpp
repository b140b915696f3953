#include "framework/GridModel.h"

#include <algorithm>
#include <numeric>

namespace sysadmin {

GridModel::GridModel(const QList<GridColumn>& columns, QObject* parent)
    : QAbstractTableModel(parent)
    , m_columns(columns) {
    m_matcher.setCaseSensitivity(Qt::CaseInsensitive);
}

void GridModel::SetCaption(int column, const QString& caption) {
    m_columns[column].caption = caption;
    emit headerDataChanged(Qt::Horizontal, column, column);
}

void GridModel::SetRows(const QList<GridRow>& rows) {
    beginResetModel();
    m_rows = rows;
    m_places.Clear();
    m_texts.Clear();
    m_sorted.clear();
    m_order.Build(m_rows);
    Arrange();
    endResetModel();
}

void GridModel::PutRow(const GridRow& row, const QString& formerKey) {
    int place = formerKey.isEmpty() ? -1 : PlaceOf(formerKey);
    if (place < 0)
        place = PlaceOf(row.key);
    m_sorted.clear();
    if (place < 0)
        AppendRow(row);
    else
        RewriteRow(place, row);
}

void GridModel::PutRows(const QList<GridRow>& rows) {
    if (rows.size() == 1) {
        PutRow(rows.first());
        return;
    }
    QList<GridRow> all = m_rows;
    QHash<QString, qsizetype> added;
    for (const GridRow& row : rows) {
        if (const int place = PlaceOf(row.key); place >= 0) {
            all[place] = row;
        } else if (const auto again = added.constFind(row.key); again != added.constEnd()) {
            all[*again] = row;
        } else {
            added.insert(row.key, all.size());
            all.append(row);
        }
    }
    SetRows(all);
}

bool GridModel::RemoveRow(const QString& key) {
    const int place = PlaceOf(key);
    if (place < 0)
        return false;
    const int displayRow = ShownPlace(place);
    if (displayRow >= 0)
        Hide(displayRow);
    m_places.Removed(key);
    m_texts.Clear();
    m_rows.removeAt(place);
    m_order.Remove(place);
    for (int& shown : m_shown)
        shown -= shown > place;
    m_sorted.clear();
    return true;
}

void GridModel::SetFilter(const QString& text) {
    if (text == m_filter)
        return;
    beginResetModel();
    m_filter = text;
    m_matcher.setPattern(text);
    Arrange();
    endResetModel();
}

const GridRow* GridModel::FindRow(const QString& key) const {
    const int place = PlaceOf(key);
    return place < 0 ? nullptr : &m_rows[place];
}

int GridModel::DisplayRow(const QString& key) const {
    const int place = PlaceOf(key);
    return place < 0 ? -1 : ShownPlace(place);
}

QString GridModel::CellText(int displayRow, int column) const {
    const QString cell = RowAt(displayRow).cells.value(column);
    if (m_columns[column].yesNo)
        return cell != u"Y"                       ? QString()
               : m_columns[column].mark.isEmpty() ? QString(QChar(0x2713))
                                                  : m_columns[column].mark;
    return ShownText(m_columns[column], cell);
}

QStringList GridModel::ShownKeys() const {
    QStringList keys;
    keys.reserve(qsizetype(m_shown.size()));
    for (int place : m_shown)
        keys.append(m_rows[place].key);
    return keys;
}

QStringList GridModel::SortedKeys() const {
    QStringList keys;
    keys.reserve(m_rows.size());
    for (int place : SortedPlaces())
        keys.append(m_rows.at(place).key);
    return keys;
}

std::vector<int> GridModel::SortedPlaces() const {
    if (m_shown.size() == size_t(m_rows.size()))
        return m_shown;
    if (m_sorted.size() == size_t(m_rows.size()))
        return m_sorted;
    std::vector<int> sorted(size_t(m_rows.size()));
    std::iota(sorted.begin(), sorted.end(), 0);
    m_order.Sort(sorted);
    return sorted;
}

std::vector<int> GridModel::DisplayRows(const std::vector<int>& places) const {
    std::vector<bool> wanted(size_t(m_rows.size()));
    for (const int place : places)
        wanted[size_t(place)] = true;
    std::vector<int> displayRows;
    for (size_t i = 0; i < m_shown.size() && displayRows.size() < places.size(); ++i)
        if (wanted[size_t(m_shown[i])])
            displayRows.push_back(int(i));
    return displayRows;
}

std::vector<int> GridModel::DisplayRowsOf(const QStringList& keys) const {
    std::vector<int> places;
    for (const QString& key : keys)
        if (const int place = PlaceOf(key); place >= 0)
            places.push_back(place);
    return DisplayRows(places);
}

const CellEdit* GridModel::EditOf(const QModelIndex& index) const {
    const auto edit = m_edits.constFind(index.column());
    return m_editable && index.isValid() && edit != m_edits.constEnd() ? &*edit : nullptr;
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (EditOf(index))
        flags |= Qt::ItemIsEditable;
    if (m_ranked && m_editable)
        flags |= index.isValid() ? Qt::ItemIsDragEnabled : Qt::ItemIsDropEnabled;
    return flags;
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !EditOf(index))
        return false;
    emit CellEdited(RowAt(index.row()).key, index.column(), value.toString());
    return true;
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_shown.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const bool yesNo = m_columns[index.column()].yesNo;
    switch (role) {
    case Qt::EditRole:
        return RowAt(index.row()).cells.value(index.column());
    case Qt::DisplayRole:
        return CellText(index.row(), index.column());
    case Qt::AccessibleTextRole:
        if (yesNo)
            return RowAt(index.row()).cells.value(index.column()) == "Y" ? tr("Yes") : tr("No");
        return CellText(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue<Qt::Alignment>((yesNo ? Qt::AlignHCenter : Qt::AlignLeft) |
                                                  Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < m_columns.size())
        return m_columns[section].caption;
    return {};
}

void GridModel::sort(int column, Qt::SortOrder order) {
    if (m_order.Set(column < m_columns.size() ? column : -1, order))
        m_order.Build(m_rows);
    Rearrange();
}

bool GridModel::Passes(const GridRow& row) const {
    if (m_filter.isEmpty())
        return true;
    const qsizetype count = std::min(m_columns.size(), row.cells.size());
    for (qsizetype i = 0; i < count; ++i)
        if (IsSearched(m_columns[i]) && m_matcher.indexIn(ShownText(m_columns[i], row.cells[i])) >= 0)
            return true;
    return false;
}

void GridModel::Arrange() {
    if (m_sorted.size() != size_t(m_rows.size())) {
        m_sorted.resize(m_rows.size());
        std::iota(m_sorted.begin(), m_sorted.end(), 0);
        m_order.Sort(m_sorted);
    }
    if (m_filter.isEmpty()) {
        m_shown = m_sorted;
        return;
    }
    if (!m_texts.IsMade())
        m_texts.Make(m_columns, m_rows);
    const std::vector<bool> passes = m_texts.RowsWith(m_filter);
    m_shown.clear();
    std::copy_if(m_sorted.begin(), m_sorted.end(), std::back_inserter(m_shown),
                 [&](int place) { return passes[size_t(place)]; });
}

// The shown rows in the sort order as it is now. Selection and current row go along with their rows.
void GridModel::Rearrange() {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const std::vector<int> before = m_shown;
    m_sorted.resize(size_t(m_rows.size()));
    std::iota(m_sorted.begin(), m_sorted.end(), 0);
    m_order.Sort(m_sorted);
    if (before.size() == m_sorted.size()) {
        m_shown = m_sorted;
    } else {
        std::vector<bool> isShown(m_sorted.size());
        for (const int place : before)
            isShown[size_t(place)] = true;
        std::copy_if(m_sorted.begin(), m_sorted.end(), m_shown.begin(),
                     [&](int place) { return isShown[size_t(place)]; });
    }
    const QModelIndexList kept = persistentIndexList();
    if (!kept.isEmpty()) {
        std::vector<int> displayRows(m_rows.size(), -1);
        for (size_t i = 0; i < m_shown.size(); ++i)
            displayRows[m_shown[i]] = int(i);
        QModelIndexList moved;
        for (const QModelIndex& old : kept)
            moved.append(index(displayRows[before[old.row()]], old.column()));
        changePersistentIndexList(kept, moved);
    }
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int GridModel::PlaceOf(const QString& key) const {
    return m_places.Find(m_rows, key);
}

int GridModel::ShownPlace(int place) const {
    const auto shown = std::find(m_shown.begin(), m_shown.end(), place);
    return shown == m_shown.end() ? -1 : int(shown - m_shown.begin());
}

void GridModel::AppendRow(const GridRow& row) {
    const int place = int(m_rows.size());
    m_rows.append(row);
    m_places.Inserted(place, row.key);
    m_texts.Clear();
    if (!m_order.Update(m_rows, place))
        Rearrange();
    if (Passes(row))
        Show(place);
}

void GridModel::RewriteRow(int place, const GridRow& row) {
    if (m_rows.at(place).key != row.key)
        m_places.Clear();
    m_texts.Clear();
    m_rows[place] = row;
    const bool sameOrder = m_order.Update(m_rows, place);
    if (!sameOrder)
        Rearrange();
    const int displayRow = ShownPlace(place);
    if (displayRow < 0) {
        if (Passes(row))
            Show(place);
        return;
    }
    if (!Passes(row)) {
        Hide(displayRow);
        return;
    }
    emit dataChanged(index(displayRow, 0), index(displayRow, columnCount() - 1));
    if (sameOrder)
        Settle(displayRow);
}

void GridModel::Show(int place) {
    const auto before = [this](int a, int b) { return m_order.Before(a, b); };
    const auto target = std::lower_bound(m_shown.begin(), m_shown.end(), place, before);
    const int displayRow = int(target - m_shown.begin());
    beginInsertRows({}, displayRow, displayRow);
    m_shown.insert(target, place);
    endInsertRows();
}

void GridModel::Hide(int displayRow) {
    beginRemoveRows({}, displayRow, displayRow);
    m_shown.erase(m_shown.begin() + displayRow);
    endRemoveRows();
}

// Moves a rewritten row to where it belongs among the others, which are in order.
void GridModel::Settle(int displayRow) {
    const auto before = [this](int a, int b) { return m_order.Before(a, b); };
    const auto row = m_shown.begin() + displayRow;
    const auto later = std::lower_bound(row + 1, m_shown.end(), *row, before);
    if (later != row + 1) {
        beginMoveRows({}, displayRow, displayRow, {}, int(later - m_shown.begin()));
        std::rotate(row, row + 1, later);
        endMoveRows();
        return;
    }
    const auto earlier = std::lower_bound(m_shown.begin(), row, *row, before);
    if (earlier != row) {
        beginMoveRows({}, displayRow, displayRow, {}, int(earlier - m_shown.begin()));
        std::rotate(earlier, row, row + 1);
        endMoveRows();
    }
}

} // namespace sysadmin

#include "moc_GridModel.cpp"
