#pragma once

#include "framework/GridOrder.h"
#include "framework/RowTexts.h"
#include "framework/forms/KeyPlaces.h"
#include "framework/forms/RowsField.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QStringMatcher>

#include <optional>

namespace sysadmin {

/// The rows of a grid, filtered and sorted. Fast enough to take 100,000 rows at once: rows are kept as they
/// are handed over, and display order is a list of indexes.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit GridModel(const QList<GridColumn>& columns, QObject* parent = nullptr);

    const QList<GridColumn>& Columns() const { return m_columns; }
    void SetCaption(int column, const QString& caption);
    /// All rows, those that the filter hides too, in the order in which they came.
    const QList<GridRow>& Rows() const { return m_rows; }
    /// Replaces all rows; filter and sort order stay.
    void SetRows(const QList<GridRow>& rows);
    /// The same for rows that differ from the present ones in few places: what is known of all others stays.
    void ReplaceRows(const QList<GridRow>& rows);
    /// Adds the row at the end of the list or rewrites the one that has `formerKey` (or, without it, the
    /// row's own key). Its place in the display follows the sort order.
    void PutRow(const GridRow& row, const QString& formerKey = {});
    /// The same for many rows at once: one reset, whatever their number.
    void PutRows(const QList<GridRow>& rows);
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
    /// The same of all rows, those that the filter hides too.
    QStringList SortedKeys() const;
    /// Of all rows their places in `Rows()`, in display order.
    std::vector<int> SortedPlaces() const;
    /// The place in `Rows()` of the row that is shown here.
    int PlaceAt(int displayRow) const { return m_shown[size_t(displayRow)]; }
    /// Where the rows in these places of `Rows()` are shown now, ascending, as far as they are.
    std::vector<int> DisplayRows(const std::vector<int>& places) const;
    /// The same of the rows with these keys.
    std::vector<int> DisplayRowsOf(const QStringList& keys) const;

    /// Columns whose cells the operator edits in place, while that is allowed. The model itself changes
    /// nothing: it tells, and whoever owns the rows hands them over anew.
    void SetEdits(const QHash<int, CellEdit>& edits) { m_edits = edits; }
    void SetEditable(bool editable) { m_editable = editable; }
    /// How the cell is edited now; null when it is not.
    const CellEdit* EditOf(const QModelIndex& index) const;
    /// Rows can be dragged to another place while the list is editable.
    void SetRanked(bool ranked) { m_ranked = ranked; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// Sorts by the column; -1 goes back to the order in which the rows came.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

signals:
    /// The operator edited the cell of the row with this key.
    void CellEdited(const QString& key, int column, const QString& value);

private:
    /// A row that goes, or one that comes in between; places are counted as they are by then.
    struct Change {
        int place = 0;
        bool comes = false;
        QString key;
    };
    std::optional<std::vector<Change>> ChangesTo(const QList<GridRow>& rows) const;
    bool Apply(const Change& change, const QList<GridRow>& rows);
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
    GridOrder m_order{m_columns};
    QString m_filter;
    QStringMatcher m_matcher;
    QHash<int, CellEdit> m_edits;
    bool m_editable = false;
    bool m_ranked = false;
    KeyPlaces m_places; // in m_rows
    RowTexts m_texts;   // what the filter looks at; made for the first filter, forgotten when rows change
};

} // namespace sysadmin
