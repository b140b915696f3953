#include "core/NavigationBar.h"

#include "core/NavigationDelegate.h"
#include "look/IconLoader.h"

#include <QAccessible>
#include <QAction>
#include <QActionGroup>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace sysadmin {

namespace {

constexpr int TypingPause = 200;      // milliseconds
constexpr qsizetype LeastLetters = 2; // with one, nearly everything would be found

QString KeyOf(const QTreeWidgetItem* item) {
    return item->data(0, NavigationDelegate::KeyRole).toString();
}

// The table's captions mark one ampersand by two, as menus do; the bar shows them plain.
QString PlainCaption(const QString& caption) {
    return QString(caption).replace("&&", "&");
}

QTreeWidgetItem* MakeItem(const QString& key, const QString& caption, const QString& icon) {
    auto* item = new QTreeWidgetItem({PlainCaption(caption)});
    item->setData(0, NavigationDelegate::KeyRole, key);
    item->setIcon(0, LoadIcon(icon));
    return item;
}

} // namespace

NavigationBar::NavigationBar(QWidget* parent)
    : QWidget(parent) {
    setObjectName("albMain");
    setAccessibleName(tr("Navigation"));
    setMinimumWidth(180);

    txtFindScreen = new QLineEdit(this);
    txtFindScreen->setObjectName("txtFindScreen");
    txtFindScreen->setPlaceholderText(tr("Find a setting"));
    txtFindScreen->setToolTip(
        tr("Find a setting, a field, a right, a button or a record by its name (Ctrl+K)"));
    txtFindScreen->setAccessibleName(tr("Find a setting"));
    txtFindScreen->setClearButtonEnabled(true);
    txtFindScreen->addAction(LoadIcon("Find"), QLineEdit::LeadingPosition);
    txtFindScreen->installEventFilter(this);

    tvwScreens = new QTreeWidget(this);
    tvwScreens->setObjectName("tvwScreens");
    tvwScreens->setAccessibleName(tr("Settings"));
    tvwScreens->setHeaderHidden(true);
    tvwScreens->setRootIsDecorated(false);
    tvwScreens->setIndentation(0);
    tvwScreens->setExpandsOnDoubleClick(false);
    tvwScreens->setFrameShape(QFrame::NoFrame);
    tvwScreens->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tvwScreens->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    tvwScreens->setMouseTracking(true);
    tvwScreens->viewport()->setAttribute(Qt::WA_Hover);
    tvwScreens->header()->setStretchLastSection(true);
    // The bar is part of the window, not a sheet of paper on it.
    tvwScreens->viewport()->setBackgroundRole(QPalette::Window);
    tvwScreens->setItemDelegate(new NavigationDelegate(tvwScreens));
    tvwScreens->installEventFilter(this);
    tvwScreens->viewport()->installEventFilter(this);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 8, 0, 0);
    layout->setSpacing(8);
    auto* findMargins = new QHBoxLayout;
    findMargins->setContentsMargins(8, 0, 8, 0);
    findMargins->addWidget(txtFindScreen);
    layout->addLayout(findMargins);
    lblNothingFound = new QLabel(this);
    lblNothingFound->setObjectName("lblNothingFound");
    lblNothingFound->setTextFormat(Qt::PlainText);
    lblNothingFound->setForegroundRole(QPalette::PlaceholderText);
    lblNothingFound->setContentsMargins(14, 4, 14, 4);
    lblNothingFound->setWordWrap(true);
    lblNothingFound->hide();
    layout->addWidget(lblNothingFound);
    layout->addWidget(tvwScreens, 1);
    setFocusProxy(tvwScreens);

    BuildMenu();
    connect(txtFindScreen, &QLineEdit::textChanged, this, &NavigationBar::Find);
    m_typing = new QTimer(this);
    m_typing->setSingleShot(true);
    m_typing->setInterval(TypingPause);
    connect(m_typing, &QTimer::timeout, this, [this] {
        if (const QString text = txtFindScreen->text().simplified(); !text.isEmpty())
            emit RecordsWanted(text);
    });
    connect(tvwScreens, &QTreeWidget::itemClicked, this, &NavigationBar::Choose);
    auto* find = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_K), this);
    find->setContext(Qt::WindowShortcut);
    connect(find, &QShortcut::activated, txtFindScreen, [this] {
        txtFindScreen->setFocus(Qt::ShortcutFocusReason);
        txtFindScreen->selectAll();
    });
}

void NavigationBar::BuildMenu() {
    mnuPopup = new QMenu(this);
    mnuPopup->setObjectName("mnuPopup");
    auto* styles = new QActionGroup(this);
    const auto addStyle = [&](const QString& name, const QString& caption, bool large) {
        QAction* action = mnuPopup->addAction(caption);
        action->setObjectName(name);
        action->setCheckable(true);
        styles->addAction(action);
        connect(action, &QAction::triggered, this, [this, large] {
            SetCurrentGroupLarge(large);
            emit StyleChosen();
        });
        return action;
    };
    mnuPopupLarge = addStyle("mnuPopupLarge", tr("Lar&ge Icons"), true);
    mnuPopupSmall = addStyle("mnuPopupSmall", tr("S&mall Icons"), false);
}

void NavigationBar::SetGroups(const QList<NavigationGroup>& groups) {
    tvwScreens->clear();
    m_words = nullptr;
    m_recordGroups.clear();
    m_currentGroup.clear();
    for (const NavigationGroup& group : groups) {
        QTreeWidgetItem* heading = MakeItem(group.key, group.caption, "Group_" + group.key);
        for (const ScreenEntry& entry : group.items) {
            QTreeWidgetItem* item = MakeItem(entry.key, entry.caption, entry.icon);
            item->setData(0, NavigationDelegate::LargeRole, HasLargeIcons(group.key));
            heading->addChild(item);
        }
        heading->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        tvwScreens->addTopLevelItem(heading);
    }
    if (tvwScreens->topLevelItemCount() > 0)
        OpenGroup(tvwScreens->topLevelItem(0));
}

QString NavigationBar::CurrentGroup() const {
    return m_currentGroup;
}

void NavigationBar::OpenGroup(QTreeWidgetItem* group) {
    m_currentGroup = KeyOf(group);
    for (int i = 0; i < tvwScreens->topLevelItemCount(); ++i)
        tvwScreens->topLevelItem(i)->setExpanded(tvwScreens->topLevelItem(i) == group);
}

void NavigationBar::MarkItem(const QString& key) {
    tvwScreens->clearSelection();
    for (int i = 0; i < tvwScreens->topLevelItemCount(); ++i) {
        QTreeWidgetItem* group = tvwScreens->topLevelItem(i);
        for (int j = 0; j < group->childCount(); ++j) {
            if (KeyOf(group->child(j)) != key)
                continue;
            OpenGroup(group);
            tvwScreens->setCurrentItem(group->child(j));
            return;
        }
    }
}

void NavigationBar::Choose(QTreeWidgetItem* item) {
    if (item->parent() && item->parent() == m_words) {
        const QString key = KeyOf(item);
        const QString control = item->data(0, NavigationDelegate::ControlRole).toString();
        txtFindScreen->clear();
        emit WordChosen(key, control);
    } else if (item->parent() && m_recordGroups.contains(item->parent())) {
        const FoundRecord record = m_records[KeyOf(item).toInt()];
        txtFindScreen->clear();
        emit RecordChosen(record);
    } else if (item->parent()) {
        m_currentGroup = KeyOf(item->parent());
        const QString key = KeyOf(item);
        txtFindScreen->clear();
        emit ItemChosen(key);
    } else if (item->isExpanded()) {
        item->setExpanded(false);
    } else {
        OpenGroup(item);
    }
}

void NavigationBar::Find(const QString& text) {
    const QString wanted = text.simplified();
    delete std::exchange(m_words, nullptr);
    qDeleteAll(std::exchange(m_recordGroups, {}));
    m_records.clear();
    m_choosesFirst = false;
    const auto show = [&](const auto& isFound) {
        bool any = false;
        for (int i = 0; i < tvwScreens->topLevelItemCount(); ++i) {
            QTreeWidgetItem* group = tvwScreens->topLevelItem(i);
            bool anyItem = false;
            for (int j = 0; j < group->childCount(); ++j) {
                const bool found = isFound(group->text(0), group->child(j)->text(0));
                group->child(j)->setHidden(!found);
                anyItem |= found;
            }
            group->setHidden(!anyItem);
            group->setExpanded(wanted.isEmpty() ? KeyOf(group) == m_currentGroup : anyItem);
            any |= anyItem;
        }
        return any;
    };
    bool anyGroup = show([&](const QString& group, const QString& item) {
        return group.contains(wanted, Qt::CaseInsensitive) || item.contains(wanted, Qt::CaseInsensitive);
    });
    // A window's title is made of both names: "Call Slip Rules" are the Rules of the Call Slips.
    if (!anyGroup)
        anyGroup = show([words = wanted.split(' ')](const QString& group, const QString& item) {
            return std::all_of(words.begin(), words.end(), [&](const QString& word) {
                return group.contains(word, Qt::CaseInsensitive) || item.contains(word, Qt::CaseInsensitive);
            });
        });
    const bool asks = m_findsRecords && wanted.size() >= LeastLetters;
    const bool nothing = !ShowWords(wanted) && !anyGroup && !wanted.isEmpty();
    if (asks)
        m_typing->start();
    else
        m_typing->stop();
    ShowNothing(wanted, nothing && !asks);
}

void NavigationBar::ShowNothing(const QString& text, bool nothing) {
    lblNothingFound->setVisible(nothing);
    if (nothing) {
        lblNothingFound->setText(tr("Nothing is called \"%1\".").arg(text));
        QAccessibleEvent said(lblNothingFound, QAccessible::Alert);
        QAccessible::updateAccessibility(&said);
    }
}

/// Shows what stands on the screens under such a name; false when nothing does.
bool NavigationBar::ShowWords(const QString& text) {
    const QList<FoundWord> words =
        m_findWords && text.size() >= LeastLetters ? m_findWords(text) : QList<FoundWord>();
    if (words.isEmpty())
        return false;
    m_words = MakeItem("Words", tr("On the screens"), "Find");
    m_words->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    for (const FoundWord& word : words) {
        QTreeWidgetItem* item = MakeItem(word.key, word.caption, word.icon);
        item->setData(0, NavigationDelegate::ControlRole, word.control);
        item->setData(0, NavigationDelegate::DetailRole, word.screen);
        item->setData(0, Qt::AccessibleTextRole, word.caption + ", " + word.screen);
        m_words->addChild(item);
    }
    tvwScreens->addTopLevelItem(m_words);
    m_words->setExpanded(true);
    return true;
}

void NavigationBar::ShowRecords(const QString& text, const QList<FoundRecord>& records) {
    if (text != txtFindScreen->text().simplified())
        return; // the operator has typed on
    qDeleteAll(std::exchange(m_recordGroups, {}));
    m_records = records;
    for (int i = 0; i < records.size(); ++i) {
        const FoundRecord& record = records[i];
        if (i == 0 || records[i - 1].word != record.word) {
            QTreeWidgetItem* group = MakeItem("Records", record.screen, record.icon);
            group->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            tvwScreens->addTopLevelItem(group);
            group->setExpanded(true);
            m_recordGroups.append(group);
        }
        QTreeWidgetItem* item = MakeItem(QString::number(i), record.name, record.icon);
        item->setData(0, NavigationDelegate::DetailRole, record.detail);
        item->setData(0, Qt::AccessibleTextRole, record.name + ", " + record.detail + ", " + record.screen);
        m_recordGroups.last()->addChild(item);
    }
    if (std::exchange(m_choosesFirst, false) && !records.isEmpty()) {
        Choose(m_recordGroups.first()->child(0));
        return;
    }
    bool any = m_words || !records.isEmpty();
    for (int i = 0; i < tvwScreens->topLevelItemCount() && !any; ++i)
        any = !tvwScreens->topLevelItem(i)->isHidden();
    ShowNothing(text, !any);
}

void NavigationBar::SetLargeGroups(const QStringList& groups) {
    m_largeGroups = groups;
    for (int i = 0; i < tvwScreens->topLevelItemCount(); ++i) {
        QTreeWidgetItem* group = tvwScreens->topLevelItem(i);
        for (int j = 0; j < group->childCount(); ++j)
            group->child(j)->setData(0, NavigationDelegate::LargeRole, HasLargeIcons(KeyOf(group)));
    }
    tvwScreens->doItemsLayout();
}

void NavigationBar::SetCurrentGroupLarge(bool large) {
    if (m_currentGroup.isEmpty())
        return;
    QStringList groups = m_largeGroups;
    groups.removeAll(m_currentGroup);
    if (large)
        groups.append(m_currentGroup);
    SetLargeGroups(groups);
}

void NavigationBar::ShowMenu(const QPoint& globalPosition) {
    const bool large = HasLargeIcons(m_currentGroup);
    (large ? mnuPopupLarge : mnuPopupSmall)->setChecked(true);
    mnuPopup->popup(globalPosition);
}

bool NavigationBar::HandleTreeKey(int key) {
    QTreeWidgetItem* current = tvwScreens->currentItem();
    if (!current)
        return false;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Choose(current);
        return true;
    case Qt::Key_Right:
        if (current->parent() || current->isExpanded())
            return false;
        OpenGroup(current);
        return true;
    default:
        return false;
    }
}

bool NavigationBar::HandleFindKey(int key) {
    switch (key) {
    case Qt::Key_Escape:
        if (txtFindScreen->text().isEmpty())
            return false;
        txtFindScreen->clear();
        return true;
    case Qt::Key_Down: {
        QTreeWidgetItem* first = tvwScreens->topLevelItem(0);
        while (first && (!first->parent() || first->isHidden()))
            first = tvwScreens->itemBelow(first);
        if (first)
            tvwScreens->setCurrentItem(first);
        tvwScreens->setFocus();
        return true;
    }
    case Qt::Key_Return:
    case Qt::Key_Enter:
        for (QTreeWidgetItemIterator it(tvwScreens, QTreeWidgetItemIterator::NotHidden); *it; ++it) {
            if (!(*it)->parent() || (*it)->parent()->isHidden() || txtFindScreen->text().trimmed().isEmpty())
                continue;
            Choose(*it);
            return true;
        }
        m_choosesFirst = m_findsRecords;
        return true;
    default:
        return false;
    }
}

bool NavigationBar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ContextMenu && watched != txtFindScreen) {
        ShowMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    // Captions wrap, so the rows' heights depend on the width.
    if (event->type() == QEvent::Resize && watched == tvwScreens->viewport())
        QMetaObject::invokeMethod(
            tvwScreens, [this] { tvwScreens->doItemsLayout(); }, Qt::QueuedConnection);
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (watched == txtFindScreen ? HandleFindKey(key) : watched == tvwScreens && HandleTreeKey(key))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace sysadmin

#include "moc_NavigationBar.cpp"
