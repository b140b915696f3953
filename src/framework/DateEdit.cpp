#include "framework/DateEdit.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

namespace sysadmin {

DateEdit::DateEdit(QWidget* parent)
    : QDateEdit(parent) {
    setCalendarPopup(true);
    setDisplayFormat(QLocale().dateFormat(QLocale::ShortFormat).replace("yyyy", "yy").replace("yy", "yyyy"));
    setSpecialValueText(" "); // shown at the lowest date
    setDate(minimumDate());
    calendarWidget()->installEventFilter(this);
}

void DateEdit::StartAtToday() {
    setDate(QDate::currentDate());
    setSelectedSection(sectionAt(0));
}

void DateEdit::stepBy(int steps) {
    if (IsBlank())
        StartAtToday();
    else
        QDateEdit::stepBy(steps);
}

QAbstractSpinBox::StepEnabled DateEdit::stepEnabled() const {
    return IsBlank() && !isReadOnly() ? StepUpEnabled | StepDownEnabled : QDateEdit::stepEnabled();
}

void DateEdit::keyPressEvent(QKeyEvent* event) {
    const bool erases = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    if (erases && !isReadOnly() && lineEdit()->selectedText() == lineEdit()->text()) {
        setDate(minimumDate());
        return;
    }
    if (IsBlank() && !isReadOnly() && !event->text().isEmpty() && event->text().front().isDigit())
        StartAtToday();
    QDateEdit::keyPressEvent(event);
}

bool DateEdit::eventFilter(QObject* watched, QEvent* event) {
    if (watched == calendarWidget() && event->type() == QEvent::Show && IsBlank()) {
        // Unnoticed, so that closing the calendar without a choice leaves the date blank.
        const QSignalBlocker quiet(calendarWidget());
        calendarWidget()->setSelectedDate(QDate::currentDate());
    }
    return QDateEdit::eventFilter(watched, event);
}

} // namespace sysadmin
