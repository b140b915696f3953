#pragma once

#include "framework/forms/GridRow.h"

#include <QCollator>

#include <optional>
#include <vector>

namespace sysadmin {

/// The order of a grid's rows by one column. Numbers and dates count by value where the whole column holds
/// such; texts as a person sorts them: whatever the case, digits within them by value. Equal cells stay in
/// the order in which the rows came. Keys are computed once per row, so that comparing is cheap.
class GridOrder {
public:
    GridOrder();

    int Column() const { return m_column; }
    Qt::SortOrder Direction() const { return m_direction; }
    /// Orders by the column from now on; -1: the order in which the rows came.
    void Set(int column, Qt::SortOrder direction);

    /// Computes the keys of all rows.
    void Build(const QList<GridRow>& rows);
    /// Computes the key of a new last row or a rewritten one. False when the column is of another kind with
    /// it, so that all keys were computed anew and the order of the others may be another one.
    bool Update(const QList<GridRow>& rows, int place);
    void Remove(int place);
    /// Whether the row in place `a` stands before the one in place `b`.
    bool Before(int a, int b) const;

private:
    enum class Kind { None, Number, Date, Text };

    Kind KindOf(const QList<GridRow>& rows) const;
    std::optional<double> ReadValue(const QString& cell) const;
    void Append(const QString& cell);
    int Count() const;
    int Compare(int a, int b) const;

    QCollator m_collator;
    int m_column = -1;
    Qt::SortOrder m_direction = Qt::AscendingOrder;
    Kind m_kind = Kind::None;
    std::vector<double> m_values;
    std::vector<QCollatorSortKey> m_texts;
};

} // namespace sysadmin
