#pragma once

#include "framework/GridOrder.h"
#include "framework/forms/GridRow.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QStringMatcher>

namespace sysadmin {

/// The rows of a grid, filtered and sorted. Fast enough to take 100,000 rows at once: rows are kept as they
/// are handed over, and display order is a list of indexes.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit GridModel(const QList<GridColumn>& columns, QObject* parent = nullptr);

    const QList<GridColumn>& Columns() const { return m_columns; }
    /// All rows, those that the filter hides too, in the order in which they came.
    const QList<GridRow>& Rows() const { return m_rows; }
    /// Replaces all rows; filter and sort order stay.
    void SetRows(const QList<GridRow>& rows);
    /// Adds the row at the end of the list or rewrites the one that has `formerKey` (or, without it, the
    /// row's own key). Its place in the display follows the sort order.
    void PutRow(const GridRow& row, const QString& formerKey = {});
    /// False when there is no such row.
    bool RemoveRow(const QString& key);
    /// Shows only rows with this text, in whatever case, in a visible cell; empty shows all.
    void SetFilter(const QString& text);
    const QString& Filter() const { return m_filter; }

    /// The column of the sort order; -1 when rows stand in the order in which they came.
    int SortColumn() const { return m_order.Column(); }
    Qt::SortOrder SortDirection() const { return m_order.Direction(); }

    /// The row with the key, hidden by the filter or not; null when there is none.
    const GridRow* FindRow(const QString& key) const;
    /// Where the row with the key is shown; -1 when it is not.
    int DisplayRow(const QString& key) const;
    /// The row shown in this place.
    const GridRow& RowAt(int displayRow) const { return m_rows[m_shown[displayRow]]; }
    /// What the grid says in a cell.
    QString CellText(int displayRow, int column) const;
    /// The keys of the shown rows in display order.
    QStringList ShownKeys() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// Sorts by the column; -1 goes back to the order in which the rows came.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    bool Passes(const GridRow& row) const;
    void Arrange();
    void Rearrange();
    int PlaceOf(const QString& key) const;
    int ShownPlace(int place) const;
    void AppendRow(const GridRow& row);
    void RewriteRow(int place, const GridRow& row);
    void Show(int place);
    void Hide(int displayRow);
    void Settle(int displayRow);

    QList<GridColumn> m_columns;
    QList<GridRow> m_rows;
    std::vector<int> m_shown;  // display order: places in m_rows
    std::vector<int> m_sorted; // the same without filter; empty when it must be computed
    GridOrder m_order;
    QString m_filter;
    QStringMatcher m_matcher;
    mutable QHash<QString, int> m_places; // key to place in m_rows, filled when first asked
};

} // namespace sysadmin
