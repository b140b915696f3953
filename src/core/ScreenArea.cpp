#include "core/ScreenArea.h"

#include "core/ScreenCatalogue.h"
#include "look/IconLoader.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

const QString UnsavedDot = QString(QChar(0x25CF)) + ' ';

QLabel* MakeText(const QString& name, double size, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * size);
    if (size > 1)
        font.setWeight(QFont::DemiBold);
    label->setFont(font);
    return label;
}

/// Takes away what stands in the list.
void Empty(QVBoxLayout& lines) {
    for (QWidget* line : lines.parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        lines.removeWidget(line);
        line->setObjectName({});
        line->hide();
        line->deleteLater(); // it may be the one whose click led here
    }
}

void AddHeading(QVBoxLayout& lines, const QString& name, const QString& text) {
    QLabel* heading = MakeText(name, 1, lines.parentWidget());
    heading->setText(text);
    heading->setForegroundRole(QPalette::PlaceholderText);
    heading->setAlignment(Qt::AlignLeft);
    heading->setContentsMargins(12, 0, 0, 4);
    lines.addWidget(heading);
}

} // namespace

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
    BuildWelcome();
    // Later: a window that closes is still in the list when this is told.
    connect(this, &QMdiArea::subWindowActivated, this,
            [this] { QTimer::singleShot(0, this, &ScreenArea::FollowWindows); });
}

void ScreenArea::BuildWelcome() {
    constexpr int Picture = 72;
    m_welcome = new QWidget(viewport());
    m_welcome->setObjectName("fraWelcome");
    auto* picture = new QLabel(m_welcome);
    picture->setAlignment(Qt::AlignHCenter);
    picture->setPixmap(LoadIcon("Program").pixmap(QSize(Picture, Picture), devicePixelRatioF()));
    QLabel* title = MakeText("lblWelcome", 1.6, m_welcome);
    title->setText(tr("Welcome"));
    lblHint = MakeText("lblHint", 1, m_welcome);
    lblHint->setForegroundRole(QPalette::PlaceholderText);
    const auto makeList = [this](QVBoxLayout*& lines) {
        auto* list = new QWidget(m_welcome);
        lines = new QVBoxLayout(list);
        lines->setContentsMargins(0, 24, 0, 0);
        lines->setSpacing(2);
        return list;
    };
    m_recent = makeList(m_recentLines);
    QWidget* health = makeList(m_healthLines);
    auto* lists = new QHBoxLayout;
    lists->setSpacing(48);
    lists->addStretch(1);
    lists->addWidget(m_recent, 0, Qt::AlignTop);
    lists->addWidget(health, 0, Qt::AlignTop);
    lists->addStretch(1);
    auto* layout = new QVBoxLayout(m_welcome);
    layout->setSpacing(12);
    layout->addStretch(1);
    for (QWidget* part :
         {static_cast<QWidget*>(picture), static_cast<QWidget*>(title), static_cast<QWidget*>(lblHint)})
        layout->addWidget(part);
    layout->addLayout(lists);
    layout->addStretch(1);
}

void ScreenArea::SetHint(const QString& text) {
    lblHint->setText(text);
}

void ScreenArea::SetRecent(const QList<ScreenEntry>& entries) {
    Empty(*m_recentLines);
    m_recent->setVisible(!entries.isEmpty());
    if (entries.isEmpty())
        return;
    AddHeading(*m_recentLines, "lblRecent", tr("Used last"));
    for (const ScreenEntry& entry : entries)
        AddLine(*m_recentLines, "cmdRecent_" + entry.key, LoadIcon(entry.icon), entry.caption, entry.key);
}

void ScreenArea::SetHealth(const QString& summary, const QStringList& lines) {
    Empty(*m_healthLines);
    AddHeading(*m_healthLines, "lblHealth", tr("Health"));
    const QString screen = "Tools_Health";
    for (qsizetype i = 0; i < lines.size(); ++i)
        AddLine(*m_healthLines, QString("cmdHealth_%1").arg(i), {}, lines[i], screen);
    AddLine(*m_healthLines, "cmdHealth", LoadIcon("Tool_Health"), summary, screen);
}

void ScreenArea::AddLine(QVBoxLayout& lines, const QString& name, const QIcon& icon, const QString& text,
                         const QString& screen) {
    auto* button = new QPushButton(icon, text, lines.parentWidget());
    button->setObjectName(name);
    button->setFlat(true);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, screen] { emit ScreenChosen(screen); });
    lines.addWidget(button, 0, Qt::AlignLeft);
}

void ScreenArea::FollowWindows() {
    m_welcome->setVisible(subWindowList().isEmpty());
}

void ScreenArea::MarkUnsaved(QMdiSubWindow* window, bool unsaved) {
    const QString caption = window->widget()->windowTitle();
    QString title = unsaved ? UnsavedDot + caption : caption;
    title.replace('&', "&&"); // a tab takes a single one for a mnemonic
    if (window->windowTitle() == title)
        return;
    window->setWindowTitle(title); // the tab takes it from there
    const qsizetype index = subWindowList(CreationOrder).indexOf(window);
    if (auto* tabs = findChild<QTabBar*>("tabScreens"); tabs && index >= 0 && index < tabs->count()) {
        tabs->setTabToolTip(int(index), unsaved ? tr("Not saved yet") : QString());
        tabs->setAccessibleTabName(int(index), unsaved ? tr("%1, not saved yet").arg(caption) : QString());
    }
}

void ScreenArea::paintEvent(QPaintEvent*) {
    QPainter(viewport()).fillRect(viewport()->rect(), palette().color(QPalette::Base));
}

void ScreenArea::resizeEvent(QResizeEvent* event) {
    QMdiArea::resizeEvent(event);
    m_welcome->setGeometry(viewport()->rect());
}

} // namespace sysadmin

#include "moc_ScreenArea.cpp"
