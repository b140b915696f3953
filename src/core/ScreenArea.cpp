#include "core/ScreenArea.h"

#include "look/IconLoader.h"

#include <QPainter>
#include <QTabBar>

namespace sysadmin {

ScreenArea::ScreenArea(QWidget* parent)
    : QMdiArea(parent) {
    setObjectName("mdiScreens");
    setViewMode(QMdiArea::TabbedView);
    setDocumentMode(true);
    setTabsClosable(true);
    setTabsMovable(true);
    setActivationOrder(ActivationHistoryOrder); // closing a screen leads back to the one used before
    setFrameShape(QFrame::NoFrame);
    setBackground(Qt::NoBrush);
    if (auto* tabs = findChild<QTabBar*>()) {
        tabs->setObjectName("tabScreens");
        tabs->setExpanding(false);
        tabs->setElideMode(Qt::ElideNone);
        tabs->setUsesScrollButtons(true);
    }
}

void ScreenArea::SetHint(const QString& title, const QString& text) {
    m_title = title;
    m_text = text;
    viewport()->update();
}

void ScreenArea::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    const QRect area = viewport()->rect();
    painter.fillRect(area, palette().color(QPalette::Base));
    if (!subWindowList().isEmpty())
        return;

    constexpr int Picture = 72;
    QFont titleFont = font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    titleFont.setWeight(QFont::DemiBold);
    const int titleHeight = QFontMetrics(titleFont).height();
    QRect line(area.left() + 24, area.center().y() - (Picture + titleHeight + 60) / 2, area.width() - 48,
               Picture);

    painter.setOpacity(0.85);
    LoadIcon("Program").paint(&painter, line);
    painter.setOpacity(1);
    line.setRect(line.left(), line.bottom() + 20, line.width(), titleHeight);
    painter.setFont(titleFont);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignTop, m_title);
    line.setRect(line.left(), line.bottom() + 8, line.width(), 80);
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_text);
}

} // namespace sysadmin
