#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace sysadmin {

/// A column of a ranked list.
struct clsColumn {
    int RowID = 0;       ///< its place, from 0
    int ColumnWidth = 0; ///< pixels at 100 %; 0 takes what is left
    bool HiddenColumn = false;
    QString ColumnName{};
    QString ColumDataType{}; ///< a note of the caller's; cells are shown as text
};

/// A rule of a ranked list.
struct clsRow {
    QString RowData{};        ///< what the server knows the rule by
    int RowID = 0;            ///< its rank when the list was made, from 1
    QStringList ColumnData{}; ///< its cells by column
};

/// A list that is added to and gone through in order.
template <class Element>
class RankedCollection {
public:
    int Count() const { return int(m_elements.size()); }
    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }

protected:
    QList<Element> m_elements;
};

/// The columns in display order.
class clsColumns : public RankedCollection<clsColumn> {
public:
    void Add(const QString& name, int width = 0, bool hidden = false, const QString& dataType = {}) {
        m_elements.append({Count(), width, hidden, name, dataType});
    }
};

/// The rules in their order.
class clsRows : public RankedCollection<clsRow> {
public:
    /// Adds a rule behind the others, ranked behind them.
    void Add(const QString& rowData, const QStringList& columnData) {
        m_elements.append({rowData, Count() + 1, columnData});
    }
    /// Adds a rule as it is.
    void Add(const clsRow& row) { m_elements.append(row); }
    /// Removes the rule in this place, from 0.
    void Remove(int place) { m_elements.removeAt(place); }
};

/// The description of a list of rules that are tried in rank order: what `frmSortOrder` shows and sends.
struct clsGrid {
    QString Caption{}; ///< what is sorted; the dialog's title says it
    sysadmin::clsRows clsRows{};
    sysadmin::clsColumns clsColumns{}; ///< none: "Name" and "ID"
    int HelpId = 0;                    ///< number of the dialog's help topic
    QString SendRequestName{};         ///< stores the new order
    QString RuleRankTag{};             ///< a rule's new rank
    QString PreviousRankTag{};         ///< its rank before the move; empty: not sent
    QString IdTag{};                   ///< what the server knows it by; empty: not sent
    int GridWidth = 0;                 ///< pixels at 100 %; 0: as wide as what is in it
    QString Selected{};   ///< `RowData` of the rule that is selected at first; empty: the first one
    bool Changed = false; ///< a new order was saved: `clsRows` is in that order
    /// Reads the rules as they are stored now, for an order that was refused because others have changed
    /// them; none when that failed and the operator was told.
    std::function<sysadmin::clsRows()> Reread{};
};

} // namespace sysadmin
