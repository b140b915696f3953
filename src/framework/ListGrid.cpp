#include "framework/ListGrid.h"

#include "core/Prefs.h"
#include "framework/GridDelegate.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>

namespace sysadmin {

namespace {

/// What a column's heading needs with the mark of the order beside it. (The header view itself keeps as much
/// room for that mark as it is high.)
int HeadingWidth(const QTableView& grid, int column) {
    constexpr int Any = 1000;
    const QHeaderView* header = grid.horizontalHeader();
    QStyleOptionHeader option;
    option.initFrom(header);
    option.rect = {0, 0, Any, header->height()};
    option.sortIndicator =
        header->isSortIndicatorShown() ? QStyleOptionHeader::SortUp : QStyleOptionHeader::None;
    const int around = Any - grid.style()->subElementRect(QStyle::SE_HeaderLabel, &option, header).width();
    const QString caption = grid.model()->headerData(column, Qt::Horizontal).toString();
    return header->fontMetrics().horizontalAdvance(caption) + around + 1;
}

} // namespace

ListGrid::ListGrid(const QString& name, const QList<GridColumn>& columns, QWidget* parent)
    : QTableView(parent)
    , m_model(columns) {
    setObjectName(name);
    setModel(&m_model);
    setItemDelegate(new GridDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    FitRowHeight();
    // Without a column at first, so that the first click on any column sorts ascending.
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    SetSortable(true);
    SetUpColumns();
    SetUpFilter();
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (!EditCell(index))
            emit RowActivated(m_model.RowAt(index.row()).key);
    });
    connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (const CellEdit* edit = m_model.EditOf(index); edit && edit->kind == CellEdit::Kind::Check)
            EditCell(index);
    });
    connect(&m_model, &QAbstractItemModel::layoutChanged, this, [this] {
        m_sinceTyping.invalidate();
        scrollTo(currentIndex());
    });
}

ListGrid::~ListGrid() {
    // A box that was never placed has no parent that would delete it.
    if (m_filterBox && !m_filterBox->parent())
        delete m_filterBox;
}

void ListGrid::SetUpColumns() {
    QHeaderView* header = horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    bool anyStretches = false;
    for (int i = 0; i < m_model.columnCount(); ++i) {
        const GridColumn& column = m_model.Columns()[i];
        setColumnHidden(i, column.hidden);
        if (column.hidden)
            continue;
        if (column.width == 0) {
            header->setSectionResizeMode(i, QHeaderView::Stretch);
            anyStretches = true;
        } else {
            header->resizeSection(i, std::max(column.width, HeadingWidth(*this, i)));
        }
    }
    header->setStretchLastSection(!anyStretches);
    m_shares = !anyStretches;
}

void ListGrid::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    ShareRoom();
}

// Columns that all have a width given keep its proportions in a window that leaves them more.
void ListGrid::ShareRoom() {
    int given = 0;
    for (int column : VisibleColumns())
        given += m_model.Columns()[column].width;
    if (!m_shares || given == 0)
        return;
    m_sharing = true;
    const double share = std::max(1.0, double(viewport()->width()) / given);
    QHeaderView* header = horizontalHeader();
    for (int column : VisibleColumns())
        header->resizeSection(
            column, std::max(int(m_model.Columns()[column].width * share), HeadingWidth(*this, column)));
    m_sharing = false;
}

void ListGrid::SetUpFilter() {
    m_filterBox = new QLineEdit;
    m_filterBox->setObjectName("txtFilter_" + objectName());
    m_filterBox->setPlaceholderText(tr("Filter"));
    m_filterBox->setAccessibleName(tr("Filter"));
    m_filterBox->setClearButtonEnabled(true);
    m_filterBox->setToolTip(tr("Shows only rows that contain this text (Ctrl+F)"));
    m_filterBox->installEventFilter(this);
    connect(m_filterBox, &QObject::destroyed, this, [this] { m_filterBox = nullptr; });
    connect(m_filterBox, &QLineEdit::textChanged, this, &ListGrid::ApplyFilter);
}

void ListGrid::KeepColumns(const Prefs& prefs, const QString& name) {
    QHeaderView* header = horizontalHeader();
    const QVariantMap widths = prefs.Remembered(name + "/Widths").toMap();
    for (int column : VisibleColumns())
        if (const int width = widths.value(QString::number(column)).toInt();
            width > 0 && header->sectionResizeMode(column) == QHeaderView::Interactive)
            header->resizeSection(column, width);
    m_shares = m_shares && widths.isEmpty();
    const QVariantList order = prefs.Remembered(name + "/Order").toList();
    if (const int column = order.value(0, -1).toInt();
        isSortingEnabled() && VisibleColumns().contains(column))
        sortByColumn(column, Qt::SortOrder(order.value(1).toInt()));

    connect(header, &QHeaderView::sectionResized, this, [this, &prefs, name](int column, int, int width) {
        // Only what the operator drags is his choice; the rest follows from the room there is.
        if (m_sharing || !(QGuiApplication::mouseButtons() & Qt::LeftButton) ||
            horizontalHeader()->sectionResizeMode(column) != QHeaderView::Interactive)
            return;
        m_shares = false;
        QVariantMap kept = prefs.Remembered(name + "/Widths").toMap();
        kept[QString::number(column)] = width;
        prefs.Remember(name + "/Widths", kept);
    });
    connect(header, &QHeaderView::sectionClicked, this, [this, &prefs, name] {
        if (isSortingEnabled())
            prefs.Remember(name + "/Order", QVariantList{m_model.SortColumn(), int(m_model.SortDirection())});
    });
}

int ListGrid::WidthOfContents() const {
    constexpr int Sample = 200; // rows; a list may have 100,000
    constexpr int CellMargins = 24;
    int width = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    for (int column : VisibleColumns()) {
        int widest = HeadingWidth(*this, column);
        for (int row = 0; row < std::min(Sample, m_model.rowCount()); ++row)
            widest = std::max(widest,
                              fontMetrics().horizontalAdvance(m_model.CellText(row, column)) + CellMargins);
        const bool isGiven = horizontalHeader()->sectionResizeMode(column) == QHeaderView::Interactive;
        const int given =
            m_shares ? m_model.Columns()[column].width : horizontalHeader()->sectionSize(column);
        width += isGiven ? std::max(given, HeadingWidth(*this, column)) : widest;
    }
    return width;
}

// One height for all rows, known without asking any of them.
void ListGrid::FitRowHeight() {
    verticalHeader()->setMinimumSectionSize(fontMetrics().height());
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
}

void ListGrid::FocusFilter() {
    if (!m_filterBox || !m_filterBox->isVisible())
        return;
    m_filterBox->setFocus(Qt::ShortcutFocusReason);
    m_filterBox->selectAll();
}

void ListGrid::SetMultiSelect(bool multiSelect) {
    setSelectionMode(multiSelect ? ExtendedSelection : SingleSelection);
}

void ListGrid::SetSelectsMany() {
    SetMultiSelect(true);
    m_selectsMany = true;
}

void ListGrid::SetSortable(bool sortable) {
    if (!sortable)
        sortByColumn(-1, Qt::AscendingOrder);
    setSortingEnabled(sortable);
    horizontalHeader()->setSectionsClickable(sortable);
}

void ListGrid::SetRanked() {
    m_ranked = true;
    SetSortable(false);
    m_model.SetRanked(true);
    setDragDropMode(InternalMove);
    setDragDropOverwriteMode(false);
    setDropIndicatorShown(true);
}

void ListGrid::SetEdits(const QHash<int, CellEdit>& edits) {
    m_edits = edits;
    m_model.SetEdits(edits);
}

void ListGrid::SetEditable(bool editable) {
    m_model.SetEditable(editable);
}

void ListGrid::SetRows(const QList<GridRow>& rows) {
    m_quiet = true;
    m_model.SetFilter({});
    if (m_filterBox)
        m_filterBox->clear();
    m_model.SetRows(rows);
    m_sinceTyping.invalidate();
    scrollToTop();
    SelectRow(0);
    m_quiet = false;
    emit SelectionMoved();
}

void ListGrid::ReplaceRows(const QList<GridRow>& rows) {
    if (!rows.isSharedWith(m_model.Rows()))
        ChangeInPlace([&] { m_model.ReplaceRows(rows); });
}

void ListGrid::PutRows(const QList<GridRow>& rows) {
    if (!rows.isEmpty())
        ChangeInPlace([&] { m_model.PutRows(rows); });
}

template <class Change>
void ListGrid::ChangeInPlace(const Change& change) {
    m_quiet = true;
    const QStringList keys = SelectedKeys();
    const int scrolled = verticalScrollBar()->value();
    const int column = currentIndex().column();
    change();
    updateGeometries();
    verticalScrollBar()->setValue(scrolled);
    SelectDisplayRowsOrFirst(m_model.DisplayRowsOf(keys));
    if (column >= 0 && currentIndex().isValid() && !m_edits.isEmpty())
        selectionModel()->setCurrentIndex(m_model.index(currentIndex().row(), column),
                                          QItemSelectionModel::NoUpdate);
    m_quiet = false;
    emit SelectionMoved();
}

void ListGrid::PutRow(const GridRow& row, const QString& formerKey) {
    m_quiet = true;
    m_model.PutRow(row, formerKey);
    int displayRow = m_model.DisplayRow(row.key);
    if (displayRow < 0 && m_filterBox) {
        m_filterBox->clear();
        displayRow = m_model.DisplayRow(row.key);
    }
    SelectRow(displayRow);
    m_quiet = false;
    emit SelectionMoved();
}

void ListGrid::RemoveRow(const QString& key) {
    const int displayRow = m_model.DisplayRow(key);
    const bool wasSelected = SelectedPlaces().contains(displayRow);
    m_quiet = true;
    m_model.RemoveRow(key);
    if (wasSelected)
        SelectRow(std::min(displayRow, m_model.rowCount() - 1));
    m_quiet = false;
    emit SelectionMoved();
}

QString ListGrid::SelectedKey() const {
    const GridRow* row = SelectedRow();
    return row ? row->key : QString();
}

QStringList ListGrid::SelectedKeys() const {
    QStringList keys;
    for (int displayRow : SelectedPlaces())
        keys.append(m_model.RowAt(displayRow).key);
    return keys;
}

const GridRow* ListGrid::SelectedRow() const {
    const QModelIndex current = currentIndex();
    if (!m_selectsMany && current.isValid() && selectionModel()->isSelected(current))
        return &m_model.RowAt(current.row());
    const QList<int> places = SelectedPlaces();
    if (m_selectsMany && places.size() > 1)
        return nullptr;
    return places.isEmpty() ? nullptr : &m_model.RowAt(places.first());
}

bool ListGrid::SelectKey(const QString& key) {
    const int displayRow = m_model.DisplayRow(key);
    if (displayRow < 0)
        return false;
    SelectRow(displayRow);
    return true;
}

void ListGrid::SelectKeys(const QStringList& keys) {
    SelectDisplayRows(m_model.DisplayRowsOf(keys));
}

// Ascending; none of them empties the selection.
void ListGrid::SelectDisplayRows(const std::vector<int>& displayRows) {
    const int first = displayRows.empty() ? -1 : displayRows.front();
    if (first < 0 || selectionMode() == SingleSelection) {
        SelectRow(first);
        return;
    }
    const int last = m_model.columnCount() - 1;
    QItemSelection selection;
    for (size_t i = 0; i < displayRows.size(); ++i) {
        const int from = displayRows[i];
        while (i + 1 < displayRows.size() && displayRows[i + 1] == displayRows[i] + 1)
            ++i;
        selection.append(QItemSelectionRange(m_model.index(from, 0), m_model.index(displayRows[i], last)));
    }
    const bool wasQuiet = m_quiet;
    m_quiet = true;
    // Emptied first: the difference between two selections of many ranges takes long.
    selectionModel()->clear();
    selectionModel()->setCurrentIndex(m_model.index(first, VisibleColumns().value(0)),
                                      QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    scrollTo(currentIndex());
    m_quiet = wasQuiet;
    if (!m_quiet)
        emit SelectionMoved();
}

void ListGrid::SelectRow(int displayRow) {
    selectionModel()->setCurrentIndex(m_model.index(displayRow, VisibleColumns().value(0)),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (displayRow < 0)
        selectionModel()->clear();
    else
        scrollTo(currentIndex());
}

// Without any of its rows left, the first one is selected: Enter and the buttons then have their record.
void ListGrid::SelectDisplayRowsOrFirst(const std::vector<int>& displayRows) {
    if (displayRows.empty() && m_model.rowCount() > 0)
        SelectRow(0);
    else
        SelectDisplayRows(displayRows);
}

void ListGrid::ApplyFilter(const QString& text) {
    const bool wasQuiet = m_quiet;
    m_quiet = true;
    std::vector<int> places; // which stay, as the rows do
    for (const int displayRow : SelectedPlaces())
        places.push_back(m_model.PlaceAt(displayRow));
    m_model.SetFilter(text);
    SelectDisplayRowsOrFirst(m_model.DisplayRows(places));
    m_quiet = wasQuiet;
    if (!m_quiet)
        emit SelectionMoved();
}

qsizetype ListGrid::SelectedCount() const {
    return SelectedPlaces().size();
}

// Taken from the ranges: asking row by row takes long when many are selected.
QList<int> ListGrid::SelectedPlaces() const {
    QList<int> places;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            places.append(row);
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

QList<int> ListGrid::VisibleColumns() const {
    QList<int> columns;
    for (int i = 0; i < m_model.columnCount(); ++i)
        if (!m_model.Columns()[i].hidden)
            columns.append(i);
    return columns;
}

void ListGrid::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (!m_quiet)
        emit SelectionMoved();
}

void ListGrid::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        FitRowHeight();
}

void ListGrid::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (m_model.rowCount() > 0 || m_model.Rows().isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                     tr("No row contains this text."));
}

} // namespace sysadmin

#include "moc_ListGrid.cpp"
