#include "framework/BesideOrBelow.h"

#include <QBoxLayout>

namespace sysadmin {

BesideOrBelow::BesideOrBelow(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QBoxLayout(QBoxLayout::TopToBottom, this)) {
    m_layout->setContentsMargins({});
}

void BesideOrBelow::Place(QWidget* list, QWidget* fields, int leastList) {
    m_list = list;
    m_fields = fields;
    m_leastList = leastList;
    m_layout->addWidget(list, 1);
    m_layout->addWidget(fields);
}

// What it needs with the fields below: how they stand now must not keep the window from getting narrower.
QSize BesideOrBelow::minimumSizeHint() const {
    if (!m_list)
        return QWidget::minimumSizeHint();
    const QSize list = m_list->minimumSizeHint();
    const QSize fields = m_fields->minimumSizeHint();
    return {qMax(list.width(), fields.width()), list.height() + m_layout->spacing() + fields.height()};
}

void BesideOrBelow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!m_list)
        return;
    const int needed = m_leastList + m_layout->spacing() + m_fields->sizeHint().width();
    m_layout->setDirection(width() >= needed ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

} // namespace sysadmin

#include "moc_BesideOrBelow.cpp"
