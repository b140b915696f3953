#pragma once

#include "core/WordIndex.h"

#include <QStringList>
#include <QWidget>

#include <functional>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

namespace sysadmin {

/// The list bar at the left of the main window (`albMain`): groups that open one at a time, with items that
/// open screens. Each group shows its items with large or small icons.
class NavigationBar : public QWidget {
    Q_OBJECT

public:
    explicit NavigationBar(QWidget* parent = nullptr);

    /// Replaces what is shown and opens the first group.
    void SetGroups(const QList<NavigationGroup>& groups);
    /// Opens the item's group and marks the item; an empty or unknown key marks none.
    void MarkItem(const QString& key);

    /// The key of the group that is open or was last; the style menu works on it.
    QString CurrentGroup() const;
    bool HasLargeIcons(const QString& group) const { return m_largeGroups.contains(group); }
    /// The keys of the groups with large icons.
    QStringList LargeGroups() const { return m_largeGroups; }
    void SetLargeGroups(const QStringList& groups);
    /// What else the box finds: what stands on the screens.
    using WordFinder = std::function<QList<FoundWord>(const QString& text)>;
    void SetWordFinder(WordFinder find) { m_findWords = std::move(find); }
    /// From now on records are asked for, too (`RecordsWanted`), once the operator stops typing.
    void FindRecordsToo() { m_findsRecords = true; }
    /// Shows the records that were found for the text, if that is still what is looked for.
    void ShowRecords(const QString& text, const QList<FoundRecord>& records);

signals:
    /// The operator chose the item of this key.
    void ItemChosen(const QString& key);
    /// The operator chose something on the screen of this key.
    void WordChosen(const QString& key, const QString& control);
    /// Records with this text are to be shown.
    void RecordsWanted(const QString& text);
    /// The operator chose a record.
    void RecordChosen(const FoundRecord& record);
    /// The operator gave a group another icon style.
    void StyleChosen();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildMenu();
    void ShowMenu(const QPoint& globalPosition);
    void SetCurrentGroupLarge(bool large);
    void OpenGroup(QTreeWidgetItem* group);
    void Choose(QTreeWidgetItem* item);
    void Find(const QString& text);
    bool ShowWords(const QString& text);
    void ShowNothing(const QString& text, bool nothing);
    bool HandleTreeKey(int key);
    bool HandleFindKey(int key);

    QLineEdit* txtFindScreen = nullptr;
    QLabel* lblNothingFound = nullptr;
    QTreeWidget* tvwScreens = nullptr;
    QMenu* mnuPopup = nullptr;
    QAction* mnuPopupLarge = nullptr;
    QAction* mnuPopupSmall = nullptr;
    QStringList m_largeGroups;
    QString m_currentGroup;
    WordFinder m_findWords;
    QTreeWidgetItem* m_words = nullptr; // the group of what was found on screens
    QTimer* m_typing = nullptr;         // runs until the operator stops
    bool m_findsRecords = false;
    bool m_choosesFirst = false; // Enter came before the records
    QList<FoundRecord> m_records;
    QList<QTreeWidgetItem*> m_recordGroups; // one for each kind of record
};

} // namespace sysadmin
