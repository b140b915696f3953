#include "circulation/CalendarYear.h"

#include "circulation/CalendarForm.h"
#include "framework/SpokenPicture.h"
#include "look/FlatPaint.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>

namespace sysadmin {

namespace {

constexpr int Months = 12;
constexpr int MonthsAcross = 4;
constexpr int DaysOfWeek = 7;
constexpr int WeeksOfMonth = 6;

enum class DayKind { Outside, Open, Closed, OtherHours, ClosedByException };

DayKind KindOf(const CalendarForm& form, QDate date) {
    const std::optional<Hours> hours = form.HoursOn(date);
    if (!hours)
        return DayKind::Outside;
    if (form.lists.ExceptionOn(date))
        return hours->IsOpen() ? DayKind::OtherHours : DayKind::ClosedByException;
    return hours->IsOpen() ? DayKind::Open : DayKind::Closed;
}

QColor Background(const QPalette& palette, DayKind kind) {
    const QColor base = palette.color(QPalette::Base);
    switch (kind) {
    case DayKind::Outside:
        return palette.color(QPalette::Window);
    case DayKind::Open:
        return base;
    case DayKind::Closed:
        return flat::Blend(palette.color(QPalette::Text), base, 0.16);
    case DayKind::OtherHours:
        return flat::Blend(QColor(0x2f, 0x7d, 0xd1), base, 0.3);
    case DayKind::ClosedByException:
        return flat::Blend(QColor(0xc8, 0x4b, 0x31), base, 0.4);
    }
    return {};
}

} // namespace

struct CalendarYear::Grid {
    int day = 0;  ///< width of a day
    int line = 0; ///< height of a day
    int gap = 0;
    int MonthWidth() const { return day * DaysOfWeek + gap; }
    int Width() const { return MonthWidth() * MonthsAcross - gap; }
    int MonthHeight() const { return line * (WeeksOfMonth + 1) + gap; }
    int Height() const { return MonthHeight() * (Months / MonthsAcross) + line + gap; }
};

CalendarYear::CalendarYear(const CalendarForm& form, QWidget* parent)
    : QWidget(parent)
    , m_form(form)
    , m_spoken(new SpokenPicture(this, [this](const QPoint& point) {
        const QDate date = DayAt(point);
        return date.isValid() ? InWords(date) : QString();
    })) {
    setObjectName("picYear");
    setAccessibleName(tr("Year at a glance"));
    connect(&form, &Form::Changed, this, &CalendarYear::FollowForm);
    FollowForm();
}

void CalendarYear::FollowForm() {
    const QDate start = m_form.txtStartDate.Date();
    const QDate first =
        start.isValid() ? QDate(start.year(), start.month(), 1) : QDate(QDate::currentDate().year(), 1, 1);
    if (!m_first.isValid() || m_day < start || m_first.addMonths(Months) <= first || m_first < first) {
        m_first = first;
        m_day = start.isValid() ? start : first;
    }
    m_spoken->Say(InWords(m_day));
    update();
}

void CalendarYear::SetEvents(const QList<Event>& events) {
    m_events = events;
    FollowForm();
}

QString CalendarYear::InWords(QDate date) const {
    const QString day = QLocale().toString(date, QLocale::LongFormat);
    const std::optional<Hours> hours = m_form.HoursOn(date);
    if (!hours)
        return tr("%1: outside the calendar").arg(day);
    QStringList parts;
    if (hours->IsOpen())
        parts << (hours->ClosesNextDay() ? tr("open %1 to %2 on the next day") : tr("open %1 to %2"))
                     .arg(ShownTime(hours->open), ShownTime(hours->close));
    else
        parts << tr("closed");
    if (m_form.lists.ExceptionOn(date)) {
        const QStringList events = EventsOn(m_events, date);
        parts << (events.isEmpty() ? tr("exception") : events.join(", "));
    }
    if (m_form.lists.IsTermEnd(date))
        parts << tr("end of term");
    if (m_form.txtFixedDueDate.Date() == date)
        parts << tr("fixed due date");
    return day + ": " + parts.join(", ");
}

CalendarYear::Grid CalendarYear::Measure() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance("88") + 4, metrics.height() + 3, metrics.height() - 4};
}

QSize CalendarYear::sizeHint() const {
    const Grid grid = Measure();
    const int legend = fontMetrics().horizontalAdvance(tr("open") + tr("closed") + tr("other hours") +
                                                       tr("closed by exception") + tr("end of term") +
                                                       tr("fixed due date")) +
                       DaysOfWeek * (grid.day + grid.gap);
    return {qMax(grid.Width(), legend), grid.Height()};
}

QSize CalendarYear::minimumSizeHint() const {
    return sizeHint();
}

QRect CalendarYear::RectOf(const Grid& grid, QDate date) const {
    const int month = (date.year() - m_first.year()) * Months + date.month() - m_first.month();
    if (month < 0 || month >= Months)
        return {};
    const int first = QDate(date.year(), date.month(), 1).dayOfWeek() % DaysOfWeek; // Sunday is the first
    const int cell = first + date.day() - 1;
    return {month % MonthsAcross * grid.MonthWidth() + cell % DaysOfWeek * grid.day,
            month / MonthsAcross * grid.MonthHeight() + (cell / DaysOfWeek + 1) * grid.line, grid.day,
            grid.line};
}

QDate CalendarYear::DayAt(const QPoint& point) const {
    const Grid grid = Measure();
    for (QDate date = m_first; date < m_first.addMonths(Months); date = date.addDays(1))
        if (RectOf(grid, date).contains(point))
            return date;
    return {};
}

void CalendarYear::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Grid grid = Measure();
    for (int month = 0; month < Months; ++month)
        PaintMonth(painter, grid, month);
    PaintLegend(painter, grid);
}

void CalendarYear::PaintMonth(QPainter& painter, const Grid& grid, int month) const {
    const QDate first = m_first.addMonths(month);
    const QPoint corner(month % MonthsAcross * grid.MonthWidth(), month / MonthsAcross * grid.MonthHeight());
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(corner, QSize(grid.day * DaysOfWeek, grid.line)), Qt::AlignVCenter | Qt::AlignLeft,
                     QLocale().toString(first, "MMMM yyyy"));
    painter.setFont(font());
    for (QDate date = first; date.month() == first.month(); date = date.addDays(1))
        PaintDay(painter, RectOf(grid, date), date);
}

void CalendarYear::PaintDay(QPainter& painter, const QRect& cell, QDate date) const {
    const DayKind kind = KindOf(m_form, date);
    const QRect inner = cell.adjusted(0, 0, -1, -1);
    painter.fillRect(inner, Background(palette(), kind));
    painter.setPen(
        palette().color(kind == DayKind::Outside ? QPalette::Disabled : QPalette::Active, QPalette::Text));
    painter.drawText(inner, Qt::AlignCenter, QString::number(date.day()));
    if (kind == DayKind::ClosedByException) // not by colour alone
        painter.drawLine(inner.bottomLeft(), inner.topRight());
    if (m_form.lists.IsTermEnd(date))
        painter.fillRect(QRect(inner.right() - 2, inner.top(), 3, inner.height()),
                         palette().color(QPalette::Text));
    if (m_form.txtFixedDueDate.Date() == date) {
        painter.setPen(QPen(palette().color(QPalette::Text), 2));
        painter.drawRect(inner.adjusted(1, 1, -1, -1));
    }
    if (hasFocus() && date == m_day) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(inner);
    }
}

void CalendarYear::PaintLegend(QPainter& painter, const Grid& grid) const {
    const QList<QPair<DayKind, QString>> kinds{{DayKind::Open, tr("open")},
                                               {DayKind::Closed, tr("closed")},
                                               {DayKind::OtherHours, tr("other hours")},
                                               {DayKind::ClosedByException, tr("closed by exception")}};
    const int top = grid.Height() - grid.line;
    int left = 0;
    const auto say = [&](const QString& text) {
        const int width = painter.fontMetrics().horizontalAdvance(text);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRect(left, top, width + 1, grid.line), Qt::AlignVCenter, text);
        left += width + grid.gap;
    };
    for (const auto& [kind, text] : kinds) {
        const QRect sample(left, top + 2, grid.day, grid.line - 4);
        painter.fillRect(sample, Background(palette(), kind));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(sample);
        if (kind == DayKind::ClosedByException)
            painter.drawLine(sample.bottomLeft(), sample.topRight());
        left += grid.day + 6;
        say(text);
    }
    painter.fillRect(QRect(left, top + 2, 3, grid.line - 4), palette().color(QPalette::Text));
    left += 9;
    say(tr("end of term"));
    painter.setPen(QPen(palette().color(QPalette::Text), 2));
    painter.drawRect(QRect(left, top + 3, grid.day - 4, grid.line - 6));
    left += grid.day + 4;
    say(tr("fixed due date"));
}

void CalendarYear::GoTo(QDate date) {
    m_day = date;
    while (m_day < m_first)
        m_first = m_first.addMonths(-Months);
    while (m_day >= m_first.addMonths(Months))
        m_first = m_first.addMonths(Months);
    m_spoken->Say(InWords(m_day));
    update();
}

void CalendarYear::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        return GoTo(m_day.addDays(-1));
    case Qt::Key_Right:
        return GoTo(m_day.addDays(1));
    case Qt::Key_Up:
        return GoTo(m_day.addDays(-DaysOfWeek));
    case Qt::Key_Down:
        return GoTo(m_day.addDays(DaysOfWeek));
    case Qt::Key_PageUp:
        return GoTo(m_day.addYears(-1));
    case Qt::Key_PageDown:
        return GoTo(m_day.addYears(1));
    case Qt::Key_Home:
        return GoTo(m_first);
    case Qt::Key_End:
        return GoTo(m_first.addMonths(Months).addDays(-1));
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        emit DayChosen(m_day);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void CalendarYear::mousePressEvent(QMouseEvent* event) {
    if (const QDate date = DayAt(event->pos()); date.isValid() && event->button() == Qt::LeftButton) {
        GoTo(date);
        emit DayChosen(date);
    }
}

} // namespace sysadmin

#include "moc_CalendarYear.cpp"
