// The list grid's keyboard, clipboard and context menu.
#include "framework/ListGrid.h"

#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/CsvExport.h"
#include "framework/ListPrint.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>

#include <algorithm>

namespace sysadmin {

namespace {

// Longer than the style's interval, which is meant for jumping by single letters: here people type whole
// codes.
constexpr int TypingPauseMs = 1500;

// A tab or line break inside a cell would break the pasted table.
QString PlainCell(QString cell) {
    for (QChar& c : cell)
        if (c == u'\t' || c == u'\r' || c == u'\n')
            c = u' ';
    return cell;
}

} // namespace

QString FileNameFor(const QWidget& shown, const QString& ending) {
    QString name = shown.objectName();
    for (const QWidget* widget = &shown; widget; widget = widget->parentWidget()) {
        if (widget->windowTitle().isEmpty())
            continue;
        name = widget->windowTitle();
        break;
    }
    for (QChar& c : name)
        if (QString("/\\:*?\"<>|").contains(c))
            c = u'_';
    return name + ending;
}

void ListGrid::keyPressEvent(QKeyEvent* event) {
    // What a cell's editor leaves over: Enter has closed it and means nothing more.
    if (state() == EditingState)
        return;
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool isTyping =
        !m_searched.isEmpty() && m_sinceTyping.isValid() && !m_sinceTyping.hasExpired(TypingPauseMs);
    const QString key = SelectedKey();
    const bool edits = event->key() == Qt::Key_F2 || (event->key() == Qt::Key_Space && !isTyping);
    if (plain && edits && EditRowCell())
        return;
    if (event->matches(QKeySequence::Copy))
        CopySelection();
    else if (event->matches(QKeySequence::Print) && m_prompter)
        Print();
    else if (event->matches(QKeySequence::Find) && m_filterBox && m_filterBox->isVisible())
        FocusFilter();
    else if (m_ranked && event->modifiers() == Qt::AltModifier && !key.isEmpty() &&
             (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down))
        emit RowMoved(key, m_model.DisplayRow(key) + (event->key() == Qt::Key_Up ? -1 : 1));
    else if (m_ranked && event->modifiers() == Qt::AltModifier && !key.isEmpty() &&
             (event->key() == Qt::Key_Home || event->key() == Qt::Key_End))
        emit RowMoved(key, event->key() == Qt::Key_Home ? 0 : m_model.rowCount() - 1);
    else if (plain &&
             (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
              event->key() == Qt::Key_F2) &&
             !key.isEmpty())
        emit RowActivated(key);
    else if (plain && m_selectsMany && SelectedCount() > 1 &&
             (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_F2))
        emit SeveralActivated();
    else if (plain && event->key() == Qt::Key_Insert)
        emit InsertPressed();
    else if (plain && event->key() == Qt::Key_Delete && !key.isEmpty())
        emit DeletePressed();
    else if (plain && event->key() == Qt::Key_Home)
        SelectRow(m_model.rowCount() > 0 ? 0 : -1);
    else if (plain && event->key() == Qt::Key_End)
        SelectRow(m_model.rowCount() - 1);
    else if (plain && event->key() == Qt::Key_Space && isTyping)
        keyboardSearch(" ");
    else
        QTableView::keyPressEvent(event);
}

// A check mark turns over; anything else opens its editor.
bool ListGrid::EditCell(const QModelIndex& index) {
    const CellEdit* edit = m_model.EditOf(index);
    if (!edit)
        return false;
    if (edit->kind == CellEdit::Kind::Check)
        m_model.setData(index, index.data(Qt::EditRole) == "Y" ? "N" : "Y");
    else
        QTableView::edit(index);
    return true;
}

// The current cell, or else the row's first one that can be edited.
bool ListGrid::EditRowCell() {
    const QModelIndex current = currentIndex();
    if (!current.isValid() || EditCell(current))
        return current.isValid();
    for (int column : VisibleColumns())
        if (const QModelIndex index = m_model.index(current.row(), column); m_model.EditOf(index)) {
            setCurrentIndex(index);
            return EditCell(index);
        }
    return false;
}

void ListGrid::dropEvent(QDropEvent* event) {
    const QString key = SelectedKey();
    if (!m_ranked || event->source() != this || key.isEmpty())
        return;
    const QModelIndex target = indexAt(event->position().toPoint());
    const int from = m_model.DisplayRow(key);
    int to = target.isValid() ? target.row() : m_model.rowCount() - 1;
    if (target.isValid() && to > from && dropIndicatorPosition() == AboveItem)
        --to;
    else if (target.isValid() && to < from && dropIndicatorPosition() == BelowItem)
        ++to;
    // The view would remove the dragged row itself; who owns the rows moves it.
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    setState(NoState);
    emit RowMoved(key, to);
}

void ListGrid::keyboardSearch(const QString& typed) {
    const bool goesOn = m_sinceTyping.isValid() && !m_sinceTyping.hasExpired(TypingPauseMs);
    m_searched = goesOn ? m_searched + typed : typed;
    m_sinceTyping.start();
    const int count = m_model.rowCount();
    if (typed.isEmpty() || count == 0)
        return;
    // The same letter again and again goes through the rows that begin with it.
    const bool repeats =
        m_searched.size() > 1 && m_searched.count(m_searched[0], Qt::CaseInsensitive) == m_searched.size();
    const int column = m_model.SortColumn() >= 0 ? m_model.SortColumn() : VisibleColumns().value(0);
    const auto find = [&](const QString& text, int start) {
        for (int i = 0; i < count; ++i) {
            const int row = (start + i) % count;
            if (m_model.CellText(row, column).startsWith(text, Qt::CaseInsensitive))
                return row;
        }
        return -1;
    };
    const int current = std::max(currentIndex().row(), 0);
    int found = find(m_searched, goesOn || m_searched.size() > 1 ? current : current + 1);
    if (found < 0 && repeats)
        found = find(m_searched.left(1), current + 1);
    if (found >= 0)
        SelectRow(found);
}

// In the filter box: down to the rows, and Esc empties the box before it means anything to the screen.
bool ListGrid::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (watched != m_filterBox || !isKey)
        return QTableView::eventFilter(watched, event);
    auto& keyEvent = static_cast<QKeyEvent&>(*event);
    const bool press = event->type() == QEvent::KeyPress;
    switch (keyEvent.key()) {
    case Qt::Key_Escape:
        if (m_filterBox->text().isEmpty())
            return false;
        if (press)
            m_filterBox->clear();
        event->accept();
        return true;
    case Qt::Key_Down:
    case Qt::Key_PageDown:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (press)
            setFocus(Qt::TabFocusReason);
        event->accept();
        return true;
    default:
        return false;
    }
}

void ListGrid::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setObjectName("mnuGrid");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (QAbstractButton* button : m_menuButtons) {
        if (button->isHidden())
            continue;
        QAction* action = menu->addAction(DeclaredCaption(*button), button, &QAbstractButton::click);
        action->setObjectName("mnu" + button->objectName().mid(3));
        action->setEnabled(button->isEnabled());
    }
    menu->addSeparator();
    QAction* copy = menu->addAction(tr("&Copy"), this, &ListGrid::CopySelection);
    copy->setObjectName("mnuCopy");
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(SelectedCount() > 0);
    if (selectionMode() == ExtendedSelection) {
        QAction* all = menu->addAction(tr("Select &All"), this, &ListGrid::selectAll);
        all->setShortcut(QKeySequence::SelectAll);
    }
    if (m_prompter) {
        menu->addSeparator();
        QAction* print = menu->addAction(tr("&Print..."), this, &ListGrid::Print);
        print->setObjectName("mnuPrint");
        print->setShortcut(QKeySequence::Print);
        QAction* pdf = menu->addAction(tr("Sa&ve as PDF..."), this, &ListGrid::SavePdf);
        pdf->setObjectName("mnuPdf");
        QAction* exportCsv = menu->addAction(tr("E&xport as CSV..."), this, &ListGrid::ExportCsv);
        exportCsv->setObjectName("mnuExportCsv");
        for (QAction* action : {print, pdf, exportCsv})
            action->setEnabled(m_model.rowCount() > 0);
    }
    menu->addActions(m_menuActions);
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid();
    menu->popup(byKeyboard ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft())
                           : event->globalPos());
}

QStringList ListGrid::Captions() const {
    QStringList captions;
    for (int column : VisibleColumns())
        captions.append(m_model.Columns()[column].caption);
    return captions;
}

QStringList ListGrid::VisibleCells(int displayRow) const {
    QStringList cells;
    for (int column : VisibleColumns())
        cells.append(m_model.RowAt(displayRow).cells.value(column));
    return cells;
}

void ListGrid::CopySelection() const {
    QStringList lines;
    for (int displayRow : SelectedPlaces()) {
        QStringList cells = VisibleCells(displayRow);
        std::transform(cells.begin(), cells.end(), cells.begin(), PlainCell);
        lines.append(cells.join('\t'));
    }
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join('\n'));
}

void ListGrid::ExportCsv() {
    if (!m_prompter)
        return;
    const QString fileName = m_prompter->AskSaveFile(this, tr("Export as CSV"), FileNameFor(*this, ".csv"),
                                                     tr("CSV files (*.csv)"));
    if (fileName.isEmpty())
        return;
    QList<QStringList> records{Captions()};
    for (int displayRow = 0; displayRow < m_model.rowCount(); ++displayRow)
        records.append(VisibleCells(displayRow));
    const QString problem = WriteCsv(fileName, records);
    if (!problem.isEmpty())
        m_prompter->ShowBox(this, {.text = tr("The file could not be written:") + "\r\n" + problem});
}

PrintedList ListGrid::Printed() const {
    PrintedList list{FileNameFor(*this, {}), Captions(), {}};
    const QList<int> columns = VisibleColumns();
    for (int displayRow = 0; displayRow < m_model.rowCount(); ++displayRow) {
        QStringList cells;
        for (int column : columns)
            cells.append(m_model.CellText(displayRow, column));
        list.rows.append(cells);
    }
    return list;
}

void ListGrid::Print() {
    QPrinter printer(QPrinter::HighResolution);
    const PrintedList list = Printed();
    printer.setDocName(list.title);
    QPrintPreviewDialog preview(&printer, this);
    preview.setObjectName("frmPrintPreview");
    preview.setWindowTitle(tr("Print %1").arg(list.title));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this,
            [&list](QPrinter* paper) { PaintList(list, *paper); });
    m_prompter->RunDialog(preview);
}

void ListGrid::SavePdf() {
    const QString fileName =
        m_prompter->AskSaveFile(this, tr("Save as PDF"), FileNameFor(*this, ".pdf"), tr("PDF files (*.pdf)"));
    if (fileName.isEmpty())
        return;
    QSaveFile file(fileName);
    bool written = file.open(QIODevice::WriteOnly);
    if (written) {
        QPdfWriter writer(&file);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
        writer.setTitle(Printed().title);
        written = PaintList(Printed(), writer) > 0;
    }
    if (!written || !file.commit())
        m_prompter->ShowBox(this,
                            {.text = tr("The file could not be written:") + "\r\n" + file.errorString()});
}

} // namespace sysadmin
