#pragma once

#include "core/data/EventList.h"

#include <QDate>
#include <QWidget>

namespace sysadmin {

struct CalendarForm;
class SpokenPicture;

/// A year of a calendar at a glance, painted from the draft: open and closed days, other hours, ends of
/// terms, the fixed due date. The arrow keys go from day to day, Page Up and Page Down from year to year; a
/// screen reader hears the day in words.
class CalendarYear : public QWidget {
    Q_OBJECT

public:
    /// The form outlives the widget.
    CalendarYear(const CalendarForm& form, QWidget* parent);

    /// What takes place in the library; named on the dates of exceptions.
    void SetEvents(const QList<Event>& events);
    /// What the calendar says of the date, in a sentence.
    QString InWords(QDate date) const;
    QDate CurrentDay() const { return m_day; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The operator clicked on the day or pressed Enter on it.
    void DayChosen(QDate date);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct Grid;
    Grid Measure() const;
    QRect RectOf(const Grid& grid, QDate date) const;
    QDate DayAt(const QPoint& point) const;
    void PaintMonth(QPainter& painter, const Grid& grid, int month) const;
    void PaintDay(QPainter& painter, const QRect& cell, QDate date) const;
    void PaintLegend(QPainter& painter, const Grid& grid) const;
    void GoTo(QDate date);
    void FollowForm();

    const CalendarForm& m_form;
    QList<Event> m_events;
    QDate m_first; // of the first month that is shown
    QDate m_day;
    SpokenPicture* m_spoken;
};

} // namespace sysadmin
