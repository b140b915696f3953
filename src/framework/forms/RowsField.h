#pragma once

#include "core/data/PickLists.h"
#include "framework/forms/Field.h"
#include "framework/forms/RowDialog.h"

#include <QHash>

namespace sysadmin {

/// What becomes of a row when its record is saved; computed from what the server has and the draft.
enum class RowState { Unchanged, Added, Changed, Removed };

/// The codes under which the states travel.
struct RowCodes {
    QString added = "1";
    QString changed = "2";
    QString removed = "3";
    QString unchanged = "0";
    const QString& Of(RowState state) const;
};

/// What a row puts into a request, one tag after the other.
struct RowTag {
    enum class Source { Key, Cell, Amount, State, Rank, Fixed };

    QString tag{};
    Source source = Source::Cell;
    int column = 0;                      ///< of a cell or an amount
    std::function<QString()> fixed = {}; ///< the same for all rows (the key of what they belong to)
};

inline RowTag PutKey(const QString& tag) {
    return {tag, RowTag::Source::Key};
}
inline RowTag PutCell(const QString& tag, int column) {
    return {tag, RowTag::Source::Cell, column};
}
/// The same for an amount of money: one blank when there is none.
inline RowTag PutAmount(const QString& tag, int column) {
    return {tag, RowTag::Source::Amount, column};
}
inline RowTag PutState(const QString& tag) {
    return {tag, RowTag::Source::State};
}
/// The row's place, counted from 1.
inline RowTag PutRank(const QString& tag) {
    return {tag, RowTag::Source::Rank};
}
inline RowTag PutFixed(const QString& tag, std::function<QString()> value) {
    return {tag, RowTag::Source::Fixed, 0, std::move(value)};
}

/// How the operator edits a column's cells in place.
struct CellEdit {
    enum class Kind { Text, Number, Check, Choice };

    Kind kind = Kind::Text;
    int maxLength = 0; ///< of a text; 0: no limit
    int least = 0;     ///< of a number
    int most = 999999;
    QList<PickItem> items{}; ///< of a choice; the cell holds the id
};

/// A button below the grid; without a name there is none.
struct RowButton {
    QString name{};
    QString caption{};
};

/// What is said once about the rows of a field: how they are read, put, shown and edited.
struct RowsSpec {
    QString marker{};       ///< tag that begins a row of the reply; empty: the screen brings the rows
    QString keyTag{};       ///< empty: the marker
    int keyColumn = -1;     ///< the cell that is the key, where the operator enters it
    QStringList moreTags{}; ///< of cells behind those of the columns
    /// Whether a row of the reply is one of this record's; none: all are.
    std::function<bool(const GridRow& row)> belongs{};

    QList<RowTag> puts{};
    RowCodes codes{};
    bool onlyChanged = false; ///< unchanged rows are not put

    bool ranked = false; ///< the order means something: rows move up and down and are numbered anew
    int rankColumn = -1; ///< the column that shows the rank, if any

    QHash<int, CellEdit> edits{}; ///< of the columns that are edited in place
    /// What the grid shows in a column; none: the cell.
    QHash<int, std::function<QString(const GridRow& row)>> shown{};

    RowButton add{};
    RowButton modify{};
    RowButton remove{};
    RowButton up{};
    RowButton down{};
    RowAsker ask{};
    RowCheck check{};
    /// While it holds rows are edited and moved, but none is added or removed.
    std::function<bool()> keepsRows{};
    bool several = false;    ///< several rows can be selected and removed at once
    bool asksInView = false; ///< where nothing can be edited, `modify` shows the row in its dialog, locked
    /// The rows that an entered one stands for; none: itself.
    std::function<QList<GridRow>(const GridRow& entered)> spread{};
    QString removeQuestion{}; ///< may name cells (%1 the first); empty: rows go without a question
    QString removeTitle{};
};

/// A grid of sub-records (phones, domain names, rules). It reads and puts itself; whether a row was added,
/// changed or removed is computed from what the server has and the draft. Rows are known by their keys; a row
/// that the server does not have yet has a key of its own that is never put.
class RowsField : public Field {
public:
    RowsField(Form& form, const FieldSpec& spec, const QList<GridColumn>& columns, const RowsSpec& rows = {});

    const QList<GridColumn>& Columns() const { return m_columns; }
    const RowsSpec& Behaviour() const { return m_rowsSpec; }
    /// Completes the behaviour where it needs what is not there yet when the field is made.
    RowsSpec& Behaviour() { return m_rowsSpec; }
    const QList<GridRow>& Rows() const { return m_draft; }
    /// The row as the grid shows it.
    GridRow ShownRow(const GridRow& row) const;
    QList<GridRow> ShownRows() const;

    void SetStoredRows(const QList<GridRow>& rows);
    void SetRows(const QList<GridRow>& rows);
    /// Adds the row or replaces the one with its key.
    void PutRow(const GridRow& row) { PutRows({row}); }
    /// The same for many, told once.
    void PutRows(const QList<GridRow>& rows);
    /// Writes the row in the place of the one with the key, or adds it.
    void ReplaceRow(const QString& key, const GridRow& row);
    void RemoveRow(const QString& key) { RemoveRows({key}); }
    void RemoveRows(const QStringList& keys);
    /// Sets one column in the rows with these keys, told once.
    void SetCells(const QStringList& keys, int column, const QString& value);
    /// Brings the row to another place of a ranked list, counted from 0; beyond the ends is the end.
    void MoveRow(const QString& key, qsizetype place);
    const GridRow* FindRow(const QString& key) const;
    qsizetype PlaceOf(const QString& key) const;

    /// A key for a row that the server does not have.
    QString NewKey();
    static bool IsNewKey(const QString& key) { return key.startsWith(QChar(1)); }
    /// All rows with their states in the order in which they are put: those that the server has in its order,
    /// removed ones among them, then the added ones; of a ranked list the removed ones, then the draft.
    QList<std::pair<GridRow, RowState>> Changes() const;
    /// The row that the check refuses is not taken; the answer says why, or is empty.
    QString Refusal(const GridRow& row, const GridRow* former) const;

    void Load(RequestChannel& channel) override;
    void Put(RequestChannel& channel) const override;
    /// Puts one row with this state, in a ranked list with this rank.
    void PutOne(RequestChannel& channel, const GridRow& row, RowState state, qsizetype rank = 0) const;
    /// Puts every row that the server has as removed: what goes with a record that is removed itself.
    void PutRemoval(RequestChannel& channel) const;
    void Clear() override { SetStoredRows({}); }
    bool IsChanged() const override { return m_draft != m_stored; }
    bool IsBlank() const override { return m_draft.isEmpty(); }
    bool WantsHeight() const override { return true; }
    void Accept() override;
    void Revert() override;
    void BecomeNew() override;
    QStringList Words() const override;
    QString PlainCaption() const override;
    std::any TakeDraft() const override { return m_draft; }
    void GiveDraft(const std::any& draft) override;

private:
    void NumberAnew();

    QList<GridColumn> m_columns;
    RowsSpec m_rowsSpec;
    QList<GridRow> m_stored;
    QList<GridRow> m_draft;
    int m_newRows = 0;
};

/// The reply's records that begin with the marker as rows, a cell per tag; the channel's cursor stays where
/// it is. `otherMarker` begins records of another list, which end a row, too.
QList<GridRow> ReadRows(const RequestChannel& channel, const QString& marker, const QString& keyTag,
                        const QStringList& cellTags, const QString& otherMarker = {});

/// A row as one reads it aloud: the visible cells, and the captions of the marks that are set.
QString InWords(const GridRow& row, const QList<GridColumn>& columns);

} // namespace sysadmin
