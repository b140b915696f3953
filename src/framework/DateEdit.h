#pragma once

#include <QDate>
#include <QLineEdit>

class QCalendarWidget;
class QToolButton;

namespace sysadmin {

/// A line to type a date in, with a calendar (F4, Alt+Down or its button). The arrow keys go by days, Page Up
/// and Page Down by months, from today where there is no date yet. It knows nothing of how dates are written:
/// who owns it reads the text.
class DateEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit DateEdit(QWidget* parent = nullptr);

    /// The date from which the keys and the calendar go on; an invalid one stands for none.
    void SetCalendarDate(QDate date) { m_date = date; }
    void OpenCalendar();

signals:
    /// The operator chose a date by keys or in the calendar.
    void DateChosen(QDate date);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Choose(QDate date);

    QDate m_date;
    QToolButton* m_open = nullptr;
    QWidget* m_popup = nullptr;
    QCalendarWidget* m_calendar = nullptr; // made when it is opened for the first time
};

} // namespace sysadmin
