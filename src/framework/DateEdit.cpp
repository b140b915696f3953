#include "framework/DateEdit.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

namespace sysadmin {

DateEdit::DateEdit(QWidget* parent)
    : QLineEdit(parent) {
    m_open = new QToolButton(this);
    m_open->setArrowType(Qt::DownArrow);
    m_open->setAutoRaise(true);
    m_open->setFocusPolicy(Qt::NoFocus); // the keys do the same
    m_open->setCursor(Qt::ArrowCursor);
    m_open->setToolTip(tr("Calendar (F4)"));
    m_open->setAccessibleName(tr("Calendar"));
    connect(m_open, &QToolButton::clicked, this, &DateEdit::OpenCalendar);
    setTextMargins(0, 0, m_open->sizeHint().width(), 0);
}

void DateEdit::Choose(QDate date) {
    m_date = date;
    emit DateChosen(date);
    selectAll();
}

void DateEdit::OpenCalendar() {
    if (isReadOnly() || !isEnabled())
        return;
    if (!m_popup) {
        m_popup = new QWidget(this, Qt::Popup);
        auto* layout = new QVBoxLayout(m_popup);
        layout->setContentsMargins(1, 1, 1, 1);
        m_calendar = new QCalendarWidget(m_popup);
        m_calendar->setAccessibleName(tr("Calendar"));
        layout->addWidget(m_calendar);
        const auto take = [this](QDate date) {
            m_popup->close();
            Choose(date);
        };
        connect(m_calendar, &QCalendarWidget::clicked, this, take);
        connect(m_calendar, &QCalendarWidget::activated, this, [this, take](QDate date) {
            if (m_popup->isVisible()) // a click has taken it already
                take(date);
        });
    }
    m_calendar->setSelectedDate(m_date.isValid() ? m_date : QDate::currentDate());
    // Below the line, or above it where the screen ends.
    m_popup->adjustSize();
    QPoint place = mapToGlobal(rect().bottomLeft());
    const QRect room = screen()->availableGeometry();
    if (place.y() + m_popup->height() > room.bottom())
        place.setY(mapToGlobal(rect().topLeft()).y() - m_popup->height());
    place.setX(qMax(room.left(), qMin(place.x(), room.right() - m_popup->width())));
    m_popup->move(place);
    m_popup->show();
    m_calendar->setFocus();
}

void DateEdit::keyPressEvent(QKeyEvent* event) {
    const bool alt = event->modifiers() & Qt::AltModifier;
    const QDate from = m_date.isValid() ? m_date : QDate::currentDate();
    const int step = m_date.isValid() ? 1 : 0; // where there is no date, the first key brings today's
    if (event->key() == Qt::Key_F4 || (alt && event->key() == Qt::Key_Down)) {
        OpenCalendar();
        return;
    }
    if (isReadOnly() || event->modifiers() != Qt::NoModifier) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
        Choose(from.addDays(step));
        break;
    case Qt::Key_Down:
        Choose(from.addDays(-step));
        break;
    case Qt::Key_PageUp:
        Choose(from.addMonths(step));
        break;
    case Qt::Key_PageDown:
        Choose(from.addMonths(-step));
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void DateEdit::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    const int side = height() - 4;
    m_open->setGeometry(width() - side - 2, 2, side, side);
}

void DateEdit::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::ReadOnlyChange)
        m_open->setVisible(!isReadOnly());
}

} // namespace sysadmin

#include "moc_DateEdit.cpp"
