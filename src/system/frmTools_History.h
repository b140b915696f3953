#pragma once

#include "framework/FormScreen.h"

#include <memory>

class QLabel;
class QPushButton;

namespace sysadmin {

class ListGrid;
struct ChangeFilterForm;

/// All changes of the library, newest first: by operator, setting and days. From each the way leads to the
/// record, or to its history.
class frmTools_History : public FormScreen {
    Q_OBJECT

public:
    frmTools_History(Application& application, QWidget* parent);

    void LoadScreen() override;

protected:
    std::optional<HistoryRecord> RecordNow() const override;

private:
    struct Change {
        QString word;
        QString key; ///< empty: there is one of the kind, or the record is gone
        QString row;
        QString name;
        bool isGone = false;
    };

    void Reload();
    /// Reads a page; `first`: the newest changes, else those behind the ones that are shown.
    void ReadPage(bool first);
    const Change* Selected() const;
    QString SettingOf(const QString& word, const QString& otherwise) const;
    void GoToRecord();
    void RefreshButtons();

    ChangeFilterForm& m_filter;
    QHash<QString, Change> m_changes; // by the key of the row
    QString m_next;                   // where the next page begins; empty: there is none
    ListGrid* vsf = nullptr;
    QLabel* lblNote = nullptr; ///< since when changes are kept
    QPushButton* cmdGoTo = nullptr;
    QPushButton* cmdHistory = nullptr;
    QPushButton* cmdMore = nullptr;
};

} // namespace sysadmin
