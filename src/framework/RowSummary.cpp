#include "framework/RowSummary.h"

#include <QApplication>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QScrollArea>

namespace sysadmin {

namespace {

QLabel* MakeText(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText); // a record's text is no markup, whatever it looks like
    label->setWordWrap(true);
    return label;
}

} // namespace

RowSummary::RowSummary(QWidget* parent)
    : QWidget(parent) {
    setObjectName("fraSummary");
    lblTitle = MakeText({}, this);
    lblTitle->setObjectName("lblSummaryTitle");
    QFont font = lblTitle->font();
    font.setPointSizeF(font.pointSizeF() * 1.35);
    font.setWeight(QFont::DemiBold);
    lblTitle->setFont(font);
    m_body = new QWidget;
    m_lines = new QFormLayout(m_body);
    m_lines->setContentsMargins({});
    m_lines->setHorizontalSpacing(24);
    m_lines->setVerticalSpacing(10);
    m_lines->setRowWrapPolicy(QFormLayout::WrapLongRows);
    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    area->setWidget(m_body);
    m_body->setAutoFillBackground(false);
    lblHint = MakeText({}, this);
    lblHint->setObjectName("lblSummaryHint");
    lblHint->setForegroundRole(QPalette::PlaceholderText);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 4);
    layout->setSpacing(16);
    layout->addWidget(lblTitle);
    layout->addWidget(area, 1);
    layout->addWidget(lblHint);
    KeepContrast();
}

void RowSummary::Show(const QString& title, const QList<Line>& lines, const QString& hint) {
    lblTitle->setText(title);
    lblHint->setText(hint);
    if (lines == m_shown)
        return;
    m_shown = lines;
    while (m_lines->rowCount() > 0)
        m_lines->removeRow(0);
    for (const Line& line : lines) {
        QLabel* caption = MakeText(line.caption, m_body);
        caption->setWordWrap(false);
        caption->setForegroundRole(QPalette::PlaceholderText);
        m_lines->addRow(caption,
                        MakeText(line.value.isEmpty() ? QString(QChar(0x2013)) : line.value, m_body));
    }
}

void RowSummary::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        KeepContrast();
}

// The edit area is closed while the summary stands in it, but this is there to be read.
void RowSummary::KeepContrast() {
    QPalette full = QApplication::palette();
    for (const auto role : {QPalette::WindowText, QPalette::PlaceholderText})
        full.setColor(QPalette::Disabled, role, full.color(QPalette::Active, role));
    if (palette().color(QPalette::Disabled, QPalette::WindowText) !=
            full.color(QPalette::Disabled, QPalette::WindowText) ||
        palette().color(QPalette::Active, QPalette::Window) != full.color(QPalette::Active, QPalette::Window))
        setPalette(full);
}

} // namespace sysadmin

#include "moc_RowSummary.cpp"
