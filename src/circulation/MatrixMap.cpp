#include "circulation/MatrixMap.h"

#include "framework/SpokenPicture.h"
#include "look/FlatPaint.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace sysadmin {

namespace {

constexpr int LeastCellWidth = 9;
constexpr int MostCellWidth = 44;
constexpr int MostNameCharacters = 32;
constexpr int NameGap = 4;

/// How light a colour looks, from 0 to 255.
int Lightness(const QColor& colour) {
    return (colour.red() * 299 + colour.green() * 587 + colour.blue() * 114) / 1000;
}

QColor ReadableOn(const QColor& background) {
    return Lightness(background) > 118 ? QColor(Qt::black) : QColor(Qt::white);
}

} // namespace

MatrixMap::MatrixMap(const QString& name, QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_spoken(new SpokenPicture(this)) {
    setObjectName(name);
    setFrameShape(QFrame::NoFrame);
    viewport()->setMouseTracking(true);
    viewport()->setFocusProxy(this);
    setMouseTracking(true);
}

// One hue from the background to full strength: the order of the classes can be seen without colour sight.
QColor MatrixMap::ColourOf(const QPalette& palette, int of, int classes) {
    const QColor base = palette.color(QPalette::Base);
    const bool isDark = Lightness(base) < 128;
    const QColor strongest = isDark ? QColor(0x8f, 0xc4, 0xff) : QColor(0x0b, 0x3c, 0x7d);
    constexpr qreal Least = 0.1;
    return flat::Blend(strongest, base, Least + (1 - Least) * of / qMax(1, classes - 1));
}

void MatrixMap::PaintMissing(QPainter& painter, const QRect& rect, const QPalette& palette) {
    painter.fillRect(rect, palette.color(QPalette::Base));
    painter.fillRect(rect, QBrush(palette.color(QPalette::Dark), Qt::BDiagPattern));
}

void MatrixMap::PaintDifference(QPainter& painter, const QRect& rect) {
    const int size = qBound(5, rect.width() / 2, 8);
    const QPoint corner = rect.topRight() + QPoint(1, 0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 1));
    painter.setBrush(QColor(0xd9, 0x5a, 0x00));
    painter.drawPolygon(QPolygon{corner, corner - QPoint(size, 0), corner + QPoint(0, size)});
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void MatrixMap::SetPictures(const MatrixPicture* picture, const MatrixPicture* other) {
    m_picture = picture;
    m_other = other;
    m_differing.clear();
    for (int row = 0; picture && other && row < picture->Rows(); ++row)
        for (int column = 0; column < picture->Columns(); ++column)
            if (!picture->Differences({column, row}, *other).isEmpty())
                m_differing.insert({column, row});
    if (!picture || !picture->Contains(m_current) || !picture->Contains(m_anchor))
        m_current = m_anchor = {0, 0};
    m_hovered = {-1, -1};
    Measure();
    GoTo(m_current, true);
}

void MatrixMap::SetMeasure(MatrixMeasure measure) {
    m_measure = measure;
    viewport()->update();
}

void MatrixMap::SetShowsRowNames(bool shows) {
    m_showsRowNames = shows;
    Measure();
}

void MatrixMap::SetCurrentCell(MatrixPicture::Cell cell) {
    if (!IsEmpty() && m_picture->Contains(cell) && cell != m_current)
        GoTo(cell, false);
}

void MatrixMap::Measure() {
    if (IsEmpty())
        return;
    const QFontMetrics metrics(font());
    const auto longest = [&](int count, const auto& name) {
        int width = 0;
        for (int i = 0; i < count; ++i)
            width = qMax(width, metrics.horizontalAdvance(name(i)));
        return qMin(width, metrics.averageCharWidth() * MostNameCharacters) + 2 * NameGap;
    };
    // Most of the room belongs to the cells.
    m_namesWidth = m_showsRowNames
                       ? qMin(longest(m_picture->Rows(), [this](int row) { return m_picture->RowName(row); }),
                              viewport()->width() / 4)
                       : 0;
    m_namesHeight =
        qMin(longest(m_picture->Columns(), [this](int column) { return m_picture->ColumnName(column); }),
             viewport()->height() * 2 / 5);
    const int room = viewport()->width() - m_namesWidth;
    m_cell.setWidth(qBound(LeastCellWidth, room / m_picture->Columns(), MostCellWidth));
    m_cell.setHeight(qBound(metrics.height() + 2, (viewport()->height() - m_namesHeight) / m_picture->Rows(),
                            metrics.height() * 2));
    const int width = m_cell.width() * m_picture->Columns();
    const int height = m_cell.height() * m_picture->Rows();
    horizontalScrollBar()->setRange(0, qMax(0, width - room));
    horizontalScrollBar()->setPageStep(qMax(1, room));
    horizontalScrollBar()->setSingleStep(m_cell.width());
    const int roomBelow = viewport()->height() - m_namesHeight;
    verticalScrollBar()->setRange(0, qMax(0, height - roomBelow));
    verticalScrollBar()->setPageStep(qMax(1, roomBelow));
    verticalScrollBar()->setSingleStep(m_cell.height());
    viewport()->update();
}

QSize MatrixMap::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.averageCharWidth() * 120, metrics.height() * 26};
}

QRect MatrixMap::RectOf(MatrixPicture::Cell cell) const {
    return {m_namesWidth + cell.x() * m_cell.width() - horizontalScrollBar()->value(),
            m_namesHeight + cell.y() * m_cell.height() - verticalScrollBar()->value(), m_cell.width(),
            m_cell.height()};
}

MatrixPicture::Cell MatrixMap::CellAt(const QPoint& point) const {
    if (IsEmpty() || point.x() < m_namesWidth || point.y() < m_namesHeight)
        return {-1, -1};
    const MatrixPicture::Cell cell(
        (point.x() - m_namesWidth + horizontalScrollBar()->value()) / m_cell.width(),
        (point.y() - m_namesHeight + verticalScrollBar()->value()) / m_cell.height());
    return m_picture->Contains(cell) ? cell : MatrixPicture::Cell{-1, -1};
}

QRect MatrixMap::Selection() const {
    return QRect(QPoint(qMin(m_anchor.x(), m_current.x()), qMin(m_anchor.y(), m_current.y())),
                 QPoint(qMax(m_anchor.x(), m_current.x()), qMax(m_anchor.y(), m_current.y())));
}

QList<MatrixPicture::Cell> MatrixMap::SelectedCells() const {
    QList<MatrixPicture::Cell> cells;
    if (IsEmpty())
        return cells;
    const QRect selection = Selection();
    for (int row = selection.top(); row <= selection.bottom(); ++row)
        for (int column = selection.left(); column <= selection.right(); ++column)
            cells.append({column, row});
    return cells;
}

QString MatrixMap::InWords(MatrixPicture::Cell cell) const {
    if (IsEmpty() || !m_picture->Contains(cell))
        return {};
    QString words = m_picture->InWords(cell);
    if (Differs(cell))
        words += ' ' + tr("Differs from %1: %2.")
                           .arg(m_other->Group().name, m_picture->Differences(cell, *m_other).join(", "));
    return words;
}

void MatrixMap::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    if (IsEmpty())
        return;
    painter.save();
    painter.setClipRect(
        event->rect().intersected(viewport()->rect().adjusted(m_namesWidth, m_namesHeight, 0, 0)));
    const QRect seen = painter.clipBoundingRect().toAlignedRect();
    for (int row = 0; row < m_picture->Rows(); ++row)
        for (int column = 0; column < m_picture->Columns(); ++column)
            if (RectOf({column, row}).intersects(seen))
                PaintCell(painter, {column, row});
    const QRect selection = Selection();
    const QRect outline = RectOf(selection.topLeft()).united(RectOf(selection.bottomRight()));
    const auto frame = [&](const QRect& rect, const QColor& colour, int width) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawRect(rect.adjusted(0, 0, -1, -1));
    };
    if (selection.width() * selection.height() > 1 || hasFocus()) {
        frame(outline, palette().color(QPalette::Base), 4);
        frame(outline, palette().color(QPalette::Text), 2);
    }
    if (hasFocus())
        frame(RectOf(m_current).adjusted(1, 1, -1, -1), palette().color(QPalette::Highlight), 2);
    painter.restore();
    PaintNames(painter);
}

void MatrixMap::PaintCell(QPainter& painter, MatrixPicture::Cell cell) const {
    const QRect inner = RectOf(cell).adjusted(0, 0, -1, -1);
    const std::optional<int> of = m_picture->ClassOf(cell, m_measure);
    QColor background = palette().color(QPalette::Base);
    if (m_picture->At(cell).id.isEmpty())
        PaintMissing(painter, inner, palette());
    else {
        if (of)
            background = ColourOf(palette(), *of, int(MatrixPicture::Classes(m_measure, false).size()));
        painter.fillRect(inner, background);
    }
    const QString text = m_picture->ShortText(cell, m_measure);
    painter.setPen(ReadableOn(background));
    if (painter.fontMetrics().horizontalAdvance(text) <= inner.width())
        painter.drawText(inner, Qt::AlignCenter, text);
    if (Differs(cell))
        PaintDifference(painter, inner);
}

// Where columns are narrower than a line, only every so many are named, and the one that is looked at.
void MatrixMap::PaintNames(QPainter& painter) const {
    const QFontMetrics metrics = painter.fontMetrics();
    const MatrixPicture::Cell looked = m_picture->Contains(m_hovered) ? m_hovered : m_current;
    const QColor plain = palette().color(QPalette::WindowText);
    painter.save();
    painter.setClipRect(QRect(m_namesWidth, 0, viewport()->width() - m_namesWidth, m_namesHeight));
    const int step = (metrics.height() + m_cell.width() - 1) / m_cell.width();
    const auto nameColumn = [&](int column, bool isLooked) {
        const QRect cell = RectOf({column, 0});
        const int middle = cell.center().x();
        const QRect strip(middle - metrics.height() / 2, 0, metrics.height(), m_namesHeight);
        if (isLooked)
            painter.fillRect(strip, palette().color(QPalette::Highlight));
        painter.setPen(isLooked ? palette().color(QPalette::HighlightedText) : plain);
        painter.save();
        painter.translate(strip.bottomLeft());
        painter.rotate(-90);
        painter.drawText(
            QRect(NameGap, 0, m_namesHeight - 2 * NameGap, metrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter,
            metrics.elidedText(m_picture->ColumnName(column), Qt::ElideRight, m_namesHeight - 2 * NameGap));
        painter.restore();
    };
    for (int column = 0; column < m_picture->Columns(); column += step)
        nameColumn(column, false);
    nameColumn(looked.x(), true);
    painter.restore();
    if (!m_showsRowNames)
        return;
    painter.save();
    painter.setClipRect(QRect(0, m_namesHeight, m_namesWidth, viewport()->height() - m_namesHeight));
    for (int row = 0; row < m_picture->Rows(); ++row) {
        const QRect cell = RectOf({0, row});
        const QRect name(0, cell.top(), m_namesWidth, cell.height());
        const bool isLooked = row == looked.y();
        if (isLooked)
            painter.fillRect(name, palette().color(QPalette::Highlight));
        painter.setPen(isLooked ? palette().color(QPalette::HighlightedText) : plain);
        painter.drawText(
            name.adjusted(NameGap, 0, -NameGap, 0), Qt::AlignLeft | Qt::AlignVCenter,
            metrics.elidedText(m_picture->RowName(row), Qt::ElideRight, m_namesWidth - 2 * NameGap));
    }
    painter.restore();
}

void MatrixMap::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    Measure();
    if (!IsEmpty())
        BringToView(m_current);
}

void MatrixMap::GoTo(MatrixPicture::Cell cell, bool extends) {
    if (IsEmpty())
        return;
    m_current = {qBound(0, cell.x(), m_picture->Columns() - 1), qBound(0, cell.y(), m_picture->Rows() - 1)};
    if (!extends)
        m_anchor = m_current;
    BringToView(m_current);
    m_spoken->Say(InWords(m_current));
    viewport()->update();
    emit CurrentChanged(m_current);
    emit SelectionChanged();
}

void MatrixMap::BringToView(MatrixPicture::Cell cell) {
    const QRect rect = RectOf(cell);
    const auto bring = [](QScrollBar& bar, int low, int high, int least, int most) {
        if (low < least)
            bar.setValue(bar.value() + low - least);
        else if (high > most)
            bar.setValue(bar.value() + high - most);
    };
    bring(*horizontalScrollBar(), rect.left(), rect.right(), m_namesWidth, viewport()->width());
    bring(*verticalScrollBar(), rect.top(), rect.bottom(), m_namesHeight, viewport()->height());
}

void MatrixMap::ScrollLike(const MatrixMap& other) {
    const auto follow = [](QScrollBar& bar, int size, const QScrollBar& others, int otherSize) {
        bar.setValue(others.value() * size / qMax(1, otherSize));
    };
    follow(*horizontalScrollBar(), m_cell.width(), *other.horizontalScrollBar(), other.m_cell.width());
    follow(*verticalScrollBar(), m_cell.height(), *other.verticalScrollBar(), other.m_cell.height());
}

void MatrixMap::mousePressEvent(QMouseEvent* event) {
    const MatrixPicture::Cell cell = CellAt(event->pos());
    if (event->button() != Qt::LeftButton || cell.x() < 0)
        return;
    m_isDragging = true;
    GoTo(cell, event->modifiers() & Qt::ShiftModifier);
}

void MatrixMap::mouseMoveEvent(QMouseEvent* event) {
    const MatrixPicture::Cell cell = CellAt(event->pos());
    if (cell.x() < 0 || (!m_isDragging && cell == m_hovered))
        return;
    m_hovered = cell;
    if (m_isDragging && cell != m_current)
        GoTo(cell, true);
    viewport()->update();
    emit Hovered(cell);
}

void MatrixMap::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_isDragging)
        return;
    m_isDragging = false;
    if (m_anchor == m_current && !(event->modifiers() & Qt::ShiftModifier))
        emit Chosen(m_current);
}

void MatrixMap::leaveEvent(QEvent* event) {
    QAbstractScrollArea::leaveEvent(event);
    m_hovered = {-1, -1};
    viewport()->update();
    emit Hovered(m_current);
}

void MatrixMap::keyPressEvent(QKeyEvent* event) {
    if (IsEmpty())
        return;
    const bool extends = event->modifiers() & Qt::ShiftModifier;
    const bool toEnd = event->modifiers() & Qt::ControlModifier;
    const int last = m_picture->Columns() - 1;
    const int bottom = m_picture->Rows() - 1;
    switch (event->key()) {
    case Qt::Key_Left:
        return GoTo({toEnd ? 0 : m_current.x() - 1, m_current.y()}, extends);
    case Qt::Key_Right:
        return GoTo({toEnd ? last : m_current.x() + 1, m_current.y()}, extends);
    case Qt::Key_Up:
        return GoTo({m_current.x(), toEnd ? 0 : m_current.y() - 1}, extends);
    case Qt::Key_Down:
        return GoTo({m_current.x(), toEnd ? bottom : m_current.y() + 1}, extends);
    case Qt::Key_Home:
        return GoTo({0, toEnd ? 0 : m_current.y()}, extends);
    case Qt::Key_End:
        return GoTo({last, toEnd ? bottom : m_current.y()}, extends);
    case Qt::Key_A:
        if (!toEnd)
            break;
        m_anchor = {0, 0};
        return GoTo({last, bottom}, true);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        emit Chosen(m_current);
        return;
    default:
        break;
    }
    QAbstractScrollArea::keyPressEvent(event);
}

void MatrixMap::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    emit CurrentChanged(m_current);
}

void MatrixMap::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void MatrixMap::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        Measure();
}

} // namespace sysadmin

#include "moc_MatrixMap.cpp"
