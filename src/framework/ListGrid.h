#pragma once

#include "framework/GridModel.h"

#include <QElapsedTimer>
#include <QTableView>

class QAbstractButton;
class QLineEdit;

namespace sysadmin {

class Prefs;
class Prompter;
struct PrintedList;

/// A name for a file with what the widget shows: the title of the screen around it.
QString FileNameFor(const QWidget& widget, const QString& ending);

/// The list grid of every screen: a table of records with sorting by a click on a column, typing to find, a
/// filter box, copying and CSV export. A row is known by its key, never by its place.
class ListGrid : public QTableView {
    Q_OBJECT

public:
    explicit ListGrid(const QString& name, const QList<GridColumn>& columns, QWidget* parent = nullptr);
    ~ListGrid() override;

    GridModel& Model() { return m_model; }
    const GridModel& Model() const { return m_model; }
    /// The box that filters the rows while the operator types; the screen places it above the grid. A grid
    /// whose box is not placed has no filter.
    QLineEdit* FilterBox() const { return m_filterBox; }
    /// Puts the focus into the filter box, if it is placed.
    void FocusFilter();
    /// With a prompter the context menu offers printing and the CSV export.
    void SetPrompter(Prompter& prompter) { m_prompter = &prompter; }
    Prompter* GetPrompter() const { return m_prompter; }
    /// Buttons that the context menu offers first, as they stand when it opens.
    void SetMenuButtons(const QList<QAbstractButton*>& buttons) { m_menuButtons = buttons; }
    /// What it offers besides.
    void SetMenuActions(const QList<QAction*>& actions) { m_menuActions = actions; }
    /// Keeps the widths and the order that the operator gives the columns under this name in his preferences,
    /// and begins with the ones that he gave last.
    void KeepColumns(const Prefs& prefs, const QString& name);
    /// The width in which all columns show what is in them, as far as a look at the first rows tells.
    int WidthOfContents() const;
    /// Lets the operator select several rows.
    void SetMultiSelect(bool multiSelect);
    /// The same where what is done to a row is done to one: while several are selected, none of them is "the"
    /// selected row, and Enter or F2 tells of all of them.
    void SetSelectsMany();
    /// Lists whose order means something are not sortable.
    void SetSortable(bool sortable);
    /// Rows of a list whose order means something move by Alt with an arrow key (Home and End: to the ends)
    /// and by dragging; the grid only tells of it.
    void SetRanked();
    /// Columns whose cells are edited in place: by a double click, F2 or the space bar.
    void SetEdits(const QHash<int, CellEdit>& edits);
    /// Whether cells can be edited and rows moved now.
    void SetEditable(bool editable);

    /// Replaces all rows, keeps the sort order, clears the filter, and selects the first row if there is one.
    void SetRows(const QList<GridRow>& rows);
    /// Replaces all rows under the eyes of the operator: sort order, filter, selection and scroll position
    /// stay, as far as the rows are still there.
    void ReplaceRows(const QList<GridRow>& rows);
    /// Adds the row or, when one has its key, rewrites it; then selects it and scrolls to it. A filter that
    /// would hide the row is cleared. `formerKey` is the row's key until now, where saving changed it.
    void PutRow(const GridRow& row, const QString& formerKey = {});
    /// Adds or rewrites many rows; sort order, filter, selection and scroll position stay.
    void PutRows(const QList<GridRow>& rows);
    /// Removes the row and selects its neighbour.
    void RemoveRow(const QString& key);
    /// The selected row's key; empty while none is selected, and see `SetSelectsMany`.
    QString SelectedKey() const;
    /// The keys of all selected rows, in display order (grids that allow selecting several).
    QStringList SelectedKeys() const;
    qsizetype SelectedCount() const;
    /// The selected row, or null.
    const GridRow* SelectedRow() const;
    /// Selects the row and scrolls to it; false when it is not shown.
    bool SelectKey(const QString& key);
    /// Selects all of these rows that are shown (grids that allow selecting several).
    void SelectKeys(const QStringList& keys);

    /// The selected rows as tab-separated lines, visible columns only, to the clipboard.
    void CopySelection() const;
    /// Asks for a file and writes the shown rows to it; a failure is told in a box.
    void ExportCsv();
    /// Shows the shown rows as they go onto paper; from there they are printed.
    void Print();
    /// Asks for a file and writes those pages into it.
    void SavePdf();

    void keyboardSearch(const QString& typed) override;

signals:
    void SelectionMoved();
    /// The row was double-clicked, or Enter or F2 was pressed on it.
    void RowActivated(const QString& key);
    /// Enter or F2 was pressed on several rows (`SetSelectsMany`).
    void SeveralActivated();
    void InsertPressed();
    void DeletePressed();
    /// The operator wants the row in another place, counted from 0.
    void RowMoved(const QString& key, int place);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    template <class Change>
    void ChangeInPlace(const Change& change);
    bool EditCell(const QModelIndex& index);
    bool EditRowCell();
    void SetUpColumns();
    void ShareRoom();
    void SetUpFilter();
    void FitRowHeight();
    void ApplyFilter(const QString& text);
    void SelectRow(int displayRow);
    void SelectDisplayRows(const std::vector<int>& displayRows);
    void SelectDisplayRowsOrFirst(const std::vector<int>& displayRows);
    QList<int> SelectedPlaces() const;
    QList<int> VisibleColumns() const;
    QStringList Captions() const;
    PrintedList Printed() const;
    QStringList VisibleCells(int displayRow) const;

    GridModel m_model;
    QLineEdit* m_filterBox = nullptr; // null again once its own parent has deleted it
    Prompter* m_prompter = nullptr;
    QList<QAbstractButton*> m_menuButtons;
    QList<QAction*> m_menuActions;
    QHash<int, CellEdit> m_edits;
    QString m_searched;
    bool m_ranked = false;
    bool m_selectsMany = false;
    bool m_shares = false;  // the columns grow together; no longer once the operator has dragged one
    bool m_sharing = false; // and are doing so now
    QElapsedTimer m_sinceTyping;
    bool m_quiet = false; // selection changes of the grid's own making are told once, at the end
};

} // namespace sysadmin
