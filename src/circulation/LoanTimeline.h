#pragma once

#include "circulation/LoanAnswer.h"

#include <QWidget>

namespace sysadmin {

class SpokenPicture;

/// A loan as a line of time: what happens when, how long it is lent and overdue, closed days, how the fine
/// grows. The arrow keys go from one event to the next; a screen reader hears it in words.
class LoanTimeline : public QWidget {
    Q_OBJECT

public:
    explicit LoanTimeline(QWidget* parent);

    void Show(const LoanAnswer& answer);
    /// The event that the line stands on, in words.
    QString InWords() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct Scale;
    Scale Measure() const;
    QPointF PlaceOf(const Scale& scale, const LoanMark& mark) const;
    qsizetype MarkAt(const QPoint& point) const;
    void PaintAxis(QPainter& painter, const Scale& scale) const;
    void PaintSpans(QPainter& painter, const Scale& scale) const;
    void PaintFine(QPainter& painter, const Scale& scale) const;
    void PaintLegend(QPainter& painter, const Scale& scale) const;
    void GoTo(qsizetype mark);

    LoanAnswer m_answer;
    qsizetype m_mark = 0;
    SpokenPicture* m_spoken;
};

} // namespace sysadmin
