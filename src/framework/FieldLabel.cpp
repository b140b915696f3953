#include "framework/FieldLabel.h"

#include <QPainter>

namespace sysadmin {

namespace {

constexpr QChar Mark = u'*';
constexpr int Gap = 3;

} // namespace

void FieldLabel::SetRequired(bool required) {
    if (m_required == required)
        return;
    m_required = required;
    setContentsMargins(0, 0, required ? Gap + fontMetrics().horizontalAdvance(Mark) : 0, 0);
    update();
}

void FieldLabel::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!m_required || !isEnabled())
        return;
    const QRect text =
        fontMetrics().boundingRect(contentsRect(), int(alignment()) | Qt::TextShowMnemonic, this->text());
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Link));
    painter.drawText(text.right() + 1 + Gap, text.top() + fontMetrics().ascent(), Mark);
}

} // namespace sysadmin

#include "moc_FieldLabel.cpp"
