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
    /// Orders by the column from now on; -1: the order in which the rows came. False when it is the same
    /// column as before, so that all keys are there.
    bool Set(int column, Qt::SortOrder direction);

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
    /// Brings places, which come in ascending order, into the order of their rows.
    void Sort(std::vector<int>& places) const;

private:
    enum class Kind { None, Number, Date, Text };

    bool ReadAll(const QList<GridRow>& rows, Kind kind);
    QString TextOf(const GridRow& row) const;
    /// The value of a cell in a column of numbers or dates, as a key; none where it is neither blank nor one
    /// of these.
    std::optional<quint64> ReadValue(const QString& cell) const;
    bool TellsKind(const QString& cell) const;
    int Count() const;
    int Compare(int a, int b) const;
    void BuildTexts(const QList<GridRow>& rows);
    quint64 GuessOf(const QString& text) const;
    void SortByText(std::vector<int>& places) const;

    const QList<GridColumn>& m_columns;
    std::vector<MomentReader> m_dates; // the forms in which the column may hold dates
    QCollator m_collator;
    int m_column = -1;
    Qt::SortOrder m_direction = Qt::AscendingOrder;
    Kind m_kind = Kind::None;
    std::vector<quint64> m_values;
    std::vector<QCollatorSortKey> m_texts;
    // Sorting by these and seeing whether the texts are in order then is quicker than sorting texts.
    std::vector<quint64> m_guesses;
    qsizetype m_common = 0; // letters with which the texts begin, all the same
};

} // namespace sysadmin
