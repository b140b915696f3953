#pragma once

#include "framework/MomentReader.h"
#include "framework/forms/GridRow.h"

#include <QCollator>

#include <optional>
#include <vector>

namespace sysadmin {

/// The order of a grid's rows by what one column shows. Numbers and dates count by value where the whole
/// column holds such; texts as a person sorts them: whatever the case, digits within them by value. Equal
/// cells stay in the order in which the rows came. Keys are computed once per row, so that comparing is
/// cheap.
class GridOrder {
public:
    explicit GridOrder(const QList<GridColumn>& columns);

    int Column() const { return m_column; }
    Qt::SortOrder Direction() const { return m_direction; }
    /// Orders by the column from now on; -1: the order in which the rows came.
    void Set(int column, Qt::SortOrder direction);

    /// Computes the keys of all rows.
    void Build(const QList<GridRow>& rows);
    /// Computes the key of a new last row or a rewritten one. False when the column is of another kind with
    /// it, so that all keys were computed anew and the order of the others may be another one.
    bool Update(const QList<GridRow>& rows, int place);
    /// Computes the key of a row that comes in between, or of the last one; false as above.
    bool Insert(const QList<GridRow>& rows, int place);
    void Remove(int place);
    /// Whether the row in place `a` stands before the one in place `b`.
    bool Before(int a, int b) const;

private:
    enum class Kind { None, Number, Date, Text };

    bool ReadAll(const QList<GridRow>& rows, Kind kind);
    QString TextOf(const GridRow& row) const;
    /// The value of a cell in a column of numbers or dates; none where it is neither blank nor one of these.
    std::optional<double> ReadValue(const QString& cell) const;
    bool TellsKind(const QString& cell) const;
    int Count() const;
    int Compare(int a, int b) const;

    const QList<GridColumn>& m_columns;
    std::vector<MomentReader> m_dates; // the forms in which the column may hold dates
    QCollator m_collator;
    int m_column = -1;
    Qt::SortOrder m_direction = Qt::AscendingOrder;
    Kind m_kind = Kind::None;
    std::vector<double> m_values;
    std::vector<QCollatorSortKey> m_texts;
};

} // namespace sysadmin
