#pragma once

#include "search/FieldWeightWords.h"

#include <QWidget>

namespace sysadmin {

class SpokenPicture;

/// The shares of the weights of an index as bars, the greatest first. The arrow keys go from one to the next;
/// a screen reader hears it in words.
class WeightShares : public QWidget {
    Q_OBJECT

public:
    explicit WeightShares(QWidget* parent);

    void Show(const QList<WeightShare>& shares);
    /// The bar that the picture stands on, in words.
    QString InWords() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    int LineHeight() const;
    QRect LineOf(qsizetype bar) const;
    qsizetype BarAt(const QPoint& point) const;
    QString Said(qsizetype bar) const;
    void PaintBar(QPainter& painter, qsizetype bar, int labels) const;
    void GoTo(qsizetype bar);

    QList<WeightShare> m_shares; // as they are shown
    qsizetype m_bar = 0;
    SpokenPicture* m_spoken;
};

} // namespace sysadmin
