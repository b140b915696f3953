#pragma once

#include "circulation/MatrixPicture.h"

#include <QAbstractScrollArea>
#include <QSet>

namespace sysadmin {

class SpokenPicture;

/// A matrix painted cell by cell. A click or Enter chooses a cell; dragging, or the arrow keys with Shift,
/// select several. A screen reader hears the cell in words. Cells that differ from another group's have a
/// mark in a corner.
class MatrixMap : public QAbstractScrollArea {
    Q_OBJECT

public:
    MatrixMap(const QString& name, QWidget* parent);

    /// The pictures outlive the widget or are replaced; `other` is what it is compared with, null for none.
    void SetPictures(const MatrixPicture* picture, const MatrixPicture* other);
    void SetMeasure(MatrixMeasure measure);
    /// Whether the patron groups stand beside it.
    void SetShowsRowNames(bool shows);
    /// How wide they are.
    int RowNamesWidth() const { return m_namesWidth; }
    /// Shows the same part as the other map.
    void ScrollLike(const MatrixMap& other);
    MatrixPicture::Cell CurrentCell() const { return m_current; }
    void SetCurrentCell(MatrixPicture::Cell cell);
    /// What the operator selected: at least the current cell.
    QList<MatrixPicture::Cell> SelectedCells() const;
    QRect RectOf(MatrixPicture::Cell cell) const; ///< in the viewport
    /// What is said of a cell: its rule, and how it differs.
    QString InWords(MatrixPicture::Cell cell) const;
    bool Differs(MatrixPicture::Cell cell) const { return m_differing.contains(cell); }

    /// How a class of so many is painted.
    static QColor ColourOf(const QPalette& palette, int of, int classes);
    /// The hatching of what has no rule.
    static void PaintMissing(QPainter& painter, const QRect& rect, const QPalette& palette);
    /// The mark of what differs.
    static void PaintDifference(QPainter& painter, const QRect& rect);

    QSize sizeHint() const override;

signals:
    /// The cell under the cursor or the keyboard is another one.
    void CurrentChanged(QPoint cell);
    void SelectionChanged();
    /// The operator clicked on the cell or pressed Enter.
    void Chosen(QPoint cell);
    void Hovered(QPoint cell);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Measure();
    MatrixPicture::Cell CellAt(const QPoint& point) const;
    QRect Selection() const;
    void BringToView(MatrixPicture::Cell cell);
    void GoTo(MatrixPicture::Cell cell, bool extends);
    void PaintCell(QPainter& painter, MatrixPicture::Cell cell) const;
    void PaintNames(QPainter& painter) const;
    bool IsEmpty() const { return !m_picture || !m_picture->Rows() || !m_picture->Columns(); }

    const MatrixPicture* m_picture = nullptr;
    const MatrixPicture* m_other = nullptr;
    QSet<MatrixPicture::Cell> m_differing;
    MatrixMeasure m_measure = MatrixMeasure::LoanPeriod;
    bool m_showsRowNames = true;
    QSize m_cell{16, 18};
    int m_namesWidth = 0;
    int m_namesHeight = 0;
    MatrixPicture::Cell m_current{0, 0};
    MatrixPicture::Cell m_anchor{0, 0};
    MatrixPicture::Cell m_hovered{-1, -1};
    bool m_isDragging = false;
    SpokenPicture* m_spoken;
};

} // namespace sysadmin
