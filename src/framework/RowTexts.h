#pragma once

#include "framework/forms/GridRow.h"

#include <vector>

namespace sysadmin {

/// What the filter of a list looks at: the texts of all visible cells in one piece of memory, without case.
/// Looking through it is many times as quick as through the cells, which lie all over the memory.
class RowTexts {
public:
    bool IsMade() const { return !m_starts.empty(); }
    void Make(const QList<GridColumn>& columns, const QList<GridRow>& rows);
    void Clear();
    /// Of each row, whether one of its texts contains this one, in whatever case.
    std::vector<bool> RowsWith(const QString& text) const;

private:
    QString m_texts;
    std::vector<qsizetype> m_starts; // of the rows, and behind the last one
};

/// Whether the filter looks at cells of the column.
inline bool IsSearched(const GridColumn& column) {
    return !column.hidden && !column.yesNo;
}

} // namespace sysadmin
