#include "circulation/LoanTimeline.h"

#include "framework/SpokenPicture.h"
#include "framework/forms/ShownDate.h"
#include "look/FlatPaint.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace sysadmin {

namespace {

using MarkKind = LoanMark::Kind;

/// Pixels at least between two events: what lies closer is drawn apart.
constexpr qreal LeastGap = 16;
constexpr qreal MarkSize = 11;

QColor Mix(const QPalette& palette, const QColor& colour, qreal share) {
    return flat::Blend(colour, palette.color(QPalette::Base), share);
}

QBrush Fill(const QPalette& palette, LoanSpan::Kind kind) {
    switch (kind) {
    case LoanSpan::Kind::Lent:
        return Mix(palette, QColor(0x2f, 0x7d, 0xd1), 0.55);
    case LoanSpan::Kind::Overdue: // not by colour alone
        return {Mix(palette, QColor(0xd0, 0x3a, 0x2b), 0.85), Qt::BDiagPattern};
    case LoanSpan::Kind::Shelf:
        return {Mix(palette, QColor(0x7a, 0x4f, 0xb5), 0.85), Qt::Dense5Pattern};
    case LoanSpan::Kind::Suspended:
        return {Mix(palette, QColor(0xc2, 0x82, 0x10), 0.9), Qt::DiagCrossPattern};
    }
    return {};
}

/// A shape of its own for each kind of event.
void PaintMark(QPainter& painter, const QPalette& palette, QPointF at, MarkKind kind) {
    const qreal r = MarkSize / 2;
    painter.setPen(QPen(palette.color(QPalette::Text), 1.5));
    painter.setBrush(palette.color(QPalette::Text));
    const auto polygon = [&](std::initializer_list<QPointF> points) {
        QPolygonF shape;
        for (const QPointF& point : points)
            shape << at + point * r;
        painter.drawPolygon(shape);
    };
    switch (kind) {
    case MarkKind::Lent:
        painter.drawEllipse(at, r, r);
        break;
    case MarkKind::Renewed:
        polygon({{-0.8, -1}, {1, 0}, {-0.8, 1}});
        break;
    case MarkKind::NotRenewed:
        painter.setBrush(palette.color(QPalette::Base));
        polygon({{-0.8, -1}, {1, 0}, {-0.8, 1}});
        break;
    case MarkKind::Recalled:
        polygon({{0.8, -1}, {-1, 0}, {0.8, 1}});
        break;
    case MarkKind::Due:
        painter.drawRect(QRectF(at.x() - r * 0.8, at.y() - r * 0.8, r * 1.6, r * 1.6));
        break;
    case MarkKind::Notice:
        painter.setBrush(palette.color(QPalette::Base));
        painter.drawRect(QRectF(at.x() - r, at.y() - r * 0.7, r * 2, r * 1.4));
        painter.drawLine(at + QPointF(-r, -r * 0.7), at);
        painter.drawLine(at, at + QPointF(r, -r * 0.7));
        break;
    case MarkKind::Most:
        polygon({{0, -1}, {1, 0.8}, {-1, 0.8}});
        break;
    case MarkKind::Lost:
        painter.setPen(QPen(palette.color(QPalette::Text), 2.5));
        painter.drawLine(at + QPointF(-r, -r), at + QPointF(r, r));
        painter.drawLine(at + QPointF(-r, r), at + QPointF(r, -r));
        break;
    case MarkKind::Back:
        painter.setBrush(palette.color(QPalette::Base));
        painter.drawEllipse(at, r, r);
        break;
    case MarkKind::FreeAgain:
        painter.setBrush(palette.color(QPalette::Base));
        polygon({{0, -1}, {1, 0}, {0, 1}, {-1, 0}});
        break;
    }
}

} // namespace

/// Where moments stand: to scale between two events, but no two events closer than can be told apart.
struct LoanTimeline::Scale {
    QList<std::pair<QDateTime, qreal>> points;
    qreal line = 0; ///< height of a line of text
    qreal axis = 0;
    qreal loan = 0; ///< top of each part
    qreal notices = 0;
    qreal fine = 0;
    qreal words = 0;
    qreal legend = 0;

    qreal At(const QDateTime& moment) const {
        for (qsizetype i = 1; i < points.size(); ++i) {
            if (moment > points[i].first && i + 1 < points.size())
                continue;
            const auto& [from, left] = points[i - 1];
            const auto& [to, right] = points[i];
            const qreal share = from < to ? qreal(from.secsTo(moment)) / qreal(from.secsTo(to)) : 0;
            return left + (right - left) * qBound(qreal(0), share, qreal(1));
        }
        return points.isEmpty() ? 0 : points.first().second;
    }
};

LoanTimeline::LoanTimeline(QWidget* parent)
    : QWidget(parent)
    , m_spoken(new SpokenPicture(this, [this](const QPoint& point) {
        const qsizetype mark = MarkAt(point);
        return mark < 0 ? QString() : ShownMoment(m_answer.marks[mark].at) + ": " + m_answer.marks[mark].text;
    })) {
    setObjectName("picLoan");
    setAccessibleName(tr("Line of time"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LoanTimeline::Show(const LoanAnswer& answer) {
    m_answer = answer;
    m_mark = qBound(qsizetype(0), m_mark, qMax(qsizetype(0), m_answer.marks.size() - 1));
    setAccessibleDescription(InWords());
    update();
}

QString LoanTimeline::InWords() const {
    if (m_answer.marks.isEmpty())
        return tr("There is no loan.");
    const LoanMark& mark = m_answer.marks[m_mark];
    return tr("%1: %2 (%3 of %4)")
        .arg(ShownMoment(mark.at), mark.text)
        .arg(m_mark + 1)
        .arg(m_answer.marks.size());
}

QSize LoanTimeline::sizeHint() const {
    return {480, minimumSizeHint().height()};
}

QSize LoanTimeline::minimumSizeHint() const {
    return {240, fontMetrics().height() * 11};
}

LoanTimeline::Scale LoanTimeline::Measure() const {
    Scale scale;
    scale.line = fontMetrics().height();
    scale.axis = 2;
    scale.loan = scale.axis + scale.line * 1.2;
    scale.notices = scale.loan + scale.line * 1.5;
    scale.fine = scale.notices + scale.line * 1.4;
    scale.words = scale.fine + scale.line * 1.9;
    scale.legend = scale.words + scale.line * 1.5;

    QList<QDateTime> moments;
    for (const LoanMark& mark : m_answer.marks)
        moments << mark.at;
    for (const LoanSpan& span : m_answer.spans)
        moments << span.from << span.to;
    std::sort(moments.begin(), moments.end());
    moments.erase(std::unique(moments.begin(), moments.end()), moments.end());
    if (moments.isEmpty())
        return scale;
    const qreal left = MarkSize;
    const qreal room = qMax(qreal(1), width() - 2 * left);
    const qreal gap = qMin(LeastGap, room / qreal(moments.size()));
    const qreal free = room - gap * qreal(moments.size() - 1);
    const qreal all = qreal(moments.first().secsTo(moments.last()));
    qreal x = left;
    for (qsizetype i = 0; i < moments.size(); ++i) {
        if (i > 0)
            x += gap + (all > 0 ? free * qreal(moments[i - 1].secsTo(moments[i])) / all : 0);
        scale.points.append({moments[i], x});
    }
    return scale;
}

QPointF LoanTimeline::PlaceOf(const Scale& scale, const LoanMark& mark) const {
    const qreal top = mark.kind == MarkKind::Notice ? scale.notices : scale.loan;
    return {scale.At(mark.at), top + scale.line * 0.65};
}

qsizetype LoanTimeline::MarkAt(const QPoint& point) const {
    const Scale scale = Measure();
    for (qsizetype i = m_answer.marks.size() - 1; i >= 0; --i)
        if (QRectF(-MarkSize, -MarkSize, 2 * MarkSize, 2 * MarkSize)
                .translated(PlaceOf(scale, m_answer.marks[i]))
                .contains(point))
            return i;
    return -1;
}

void LoanTimeline::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    if (m_answer.marks.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect(), Qt::AlignCenter, InWords());
        return;
    }
    const Scale scale = Measure();
    PaintSpans(painter, scale);
    PaintAxis(painter, scale);
    PaintFine(painter, scale);
    for (const LoanMark& mark : m_answer.marks)
        PaintMark(painter, palette(), PlaceOf(scale, mark), mark.kind);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(-MarkSize, -MarkSize, 2 * MarkSize, 2 * MarkSize)
                                    .translated(PlaceOf(scale, m_answer.marks[m_mark])),
                                3, 3);
    }
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRectF(MarkSize / 2, scale.words, width() - MarkSize, scale.line * 1.3),
                     Qt::AlignVCenter,
                     QFontMetrics(bold).elidedText(InWords(), Qt::ElideRight, width() - 12));
    painter.setFont(font());
    PaintLegend(painter, scale);
}

/// The dates of the events, as many as have room.
void LoanTimeline::PaintAxis(QPainter& painter, const Scale& scale) const {
    const bool isShort = scale.points.first().first.daysTo(scale.points.last().first) < 3;
    painter.setPen(palette().color(QPalette::Text));
    qreal free = 0;
    QDate before;
    for (const LoanMark& mark : m_answer.marks) {
        const bool sameDay = mark.at.date() == before;
        const QString time = QLocale().toString(mark.at.time(), QLocale::ShortFormat);
        const QString date = ShownDate(mark.at.date());
        const QString text = !isShort ? date : sameDay ? time : date + ' ' + time;
        const qreal wide = fontMetrics().horizontalAdvance(text);
        const qreal left = qBound(qreal(2), scale.At(mark.at) - wide / 2, width() - wide - 2);
        if (left < free || (!isShort && sameDay))
            continue;
        painter.drawText(QPointF(left, scale.axis + fontMetrics().ascent()), text);
        free = left + wide + 10;
        before = mark.at.date();
    }
}

void LoanTimeline::PaintSpans(QPainter& painter, const Scale& scale) const {
    const qreal bar = scale.line * 0.7;
    const qreal top = scale.loan + scale.line * 0.65 - bar / 2;
    for (const LoanSpan& span : m_answer.spans) {
        const qreal left = scale.At(span.from);
        const bool below = span.kind == LoanSpan::Kind::Shelf || span.kind == LoanSpan::Kind::Suspended;
        const QRectF place(left, below ? top + bar + 1 : top, scale.At(span.to) - left,
                           below ? bar / 2 : bar);
        painter.fillRect(place, Fill(palette(), span.kind));
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(place);
    }
    const QColor closed = palette().color(QPalette::Text);
    for (const QDate& date : m_answer.closedDays) {
        const qreal left = scale.At(date.startOfDay());
        const qreal right = scale.At(date.addDays(1).startOfDay());
        painter.fillRect(QRectF(left, top + bar + 2, qMax(qreal(1), right - left), 4), closed);
    }
}

/// How the fine grows, as steps up to the most that it comes to.
void LoanTimeline::PaintFine(QPainter& painter, const Scale& scale) const {
    if (m_answer.fines.isEmpty() || m_answer.mostFine <= 0)
        return;
    const qreal bottom = scale.fine + scale.line * 1.6;
    const qreal height = scale.line * 1.5;
    qreal end = scale.points.last().second;
    for (const LoanSpan& span : m_answer.spans)
        if (span.kind == LoanSpan::Kind::Overdue)
            end = scale.At(span.to);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Mix(palette(), QColor(0xd0, 0x3a, 0x2b), 0.45));
    for (qsizetype i = 0; i < m_answer.fines.size(); ++i) {
        const loan::FineDay& day = m_answer.fines[i];
        const qreal left = scale.At(qMax(day.date.startOfDay(), scale.points.first().first));
        const qreal right = i + 1 < m_answer.fines.size() ? scale.At(m_answer.fines[i + 1].date.startOfDay())
                                                          : qMax(end, left + 2);
        const qreal high = height * qreal(day.total) / qreal(m_answer.mostFine);
        painter.drawRect(QRectF(left, bottom - high, right - left, high));
    }
    painter.setPen(palette().color(QPalette::Text));
    painter.drawLine(QPointF(MarkSize, bottom), QPointF(end, bottom));
    painter.drawText(
        QRectF(MarkSize, bottom - scale.line, scale.At(m_answer.fines.first().date.startOfDay()), scale.line),
        Qt::AlignVCenter, tr("fine"));
}

/// What is to be seen, in as many lines as it takes.
void LoanTimeline::PaintLegend(QPainter& painter, const Scale& scale) const {
    qreal left = MarkSize;
    qreal top = scale.legend;
    const auto say = [&](const QString& text, const std::function<void(QPointF)>& sample) {
        const qreal wide = fontMetrics().horizontalAdvance(text);
        if (left > MarkSize && left + 24 + wide > width()) {
            left = MarkSize;
            top += scale.line * 1.25;
        }
        sample({left, top + scale.line / 2});
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QPointF(left + 16, top + fontMetrics().ascent()), text);
        left += 16 + wide + 14;
    };
    QList<LoanSpan::Kind> spans;
    for (const LoanSpan& span : m_answer.spans)
        if (!spans.contains(span.kind))
            spans << span.kind;
    for (const LoanSpan::Kind kind : spans)
        say(LoanWord(kind), [&](QPointF at) {
            const QRectF place(at.x() - 5, at.y() - 5, 16, 10);
            painter.fillRect(place, Fill(palette(), kind));
            painter.setPen(palette().color(QPalette::Mid));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(place);
        });
    if (!m_answer.closedDays.isEmpty())
        say(tr("closed day"), [&](QPointF at) {
            painter.fillRect(QRectF(at.x() - 5, at.y() - 2, 16, 4), palette().color(QPalette::Text));
        });
    QList<MarkKind> kinds;
    for (const LoanMark& mark : m_answer.marks)
        if (!kinds.contains(mark.kind))
            kinds << mark.kind;
    for (const MarkKind kind : kinds)
        say(LoanWord(kind), [&](QPointF at) { PaintMark(painter, palette(), at + QPointF(3, 0), kind); });
}

void LoanTimeline::GoTo(qsizetype mark) {
    if (m_answer.marks.isEmpty())
        return;
    m_mark = qBound(qsizetype(0), mark, m_answer.marks.size() - 1);
    m_spoken->Say(InWords());
    update();
}

void LoanTimeline::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        return GoTo(m_mark - 1);
    case Qt::Key_Right:
    case Qt::Key_Down:
        return GoTo(m_mark + 1);
    case Qt::Key_Home:
        return GoTo(0);
    case Qt::Key_End:
        return GoTo(m_answer.marks.size() - 1);
    default:
        QWidget::keyPressEvent(event);
    }
}

void LoanTimeline::mousePressEvent(QMouseEvent* event) {
    if (const qsizetype mark = MarkAt(event->pos()); mark >= 0 && event->button() == Qt::LeftButton)
        GoTo(mark);
}

} // namespace sysadmin

#include "moc_LoanTimeline.cpp"
