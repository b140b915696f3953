#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/RowCells.h"
#include "framework/forms/ShownDate.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace sysadmin {

/// Pixels at 100 % for a width that is given in twips.
constexpr int Twips(int twips) {
    return twips / 15;
}

/// A column of a list.
struct GridColumn {
    QString caption{};
    int width = 0; ///< pixels at 100 %; 0 takes what is left. Where all have one, they grow with the window.
    bool hidden = false;
    bool yesNo = false;   ///< cells are Y or N, shown as a mark or nothing
    QString mark{};       ///< of Y; empty: a check mark
    QString tag{};        ///< of its cells in the reply that fills the list
    QString dateFormat{}; ///< cells hold dates in this form, shown as people here read them; other cells as
                          ///< they are
    QList<PickItem> items{}; ///< cells hold ids of these, shown by their texts; other cells as they are
    bool operator==(const GridColumn&) const = default;
};

/// The tags of columns' cells.
inline QStringList TagsOf(const QList<GridColumn>& columns) {
    QStringList tags;
    for (const GridColumn& column : columns)
        tags.append(column.tag);
    return tags;
}

/// A cell of the column as text for people.
inline QString ShownText(const GridColumn& column, const QString& cell) {
    for (const PickItem& item : column.items)
        if (item.id == cell)
            return item.text;
    return column.dateFormat.isEmpty() ? cell : ShownDate(cell, column.dateFormat);
}

/// A record in a list: what the server knows it by, its cells in column order, and for attached things the
/// row state ("A" loaded as available, "S" loaded as selected, or a digit that travels with the row).
struct GridRow {
    QString key;
    RowCells cells;
    QChar state;
    bool operator==(const GridRow&) const = default;
};

} // namespace sysadmin

Q_DECLARE_TYPEINFO(sysadmin::GridRow, Q_RELOCATABLE_TYPE);
