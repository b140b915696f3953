#pragma once

#include "core/Prompter.h"
#include "wire/Message.h"

#include <QDialog>
#include <QHash>
#include <QList>

#include <functional>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace sysadmin {

class Application;
struct OwnWords;

/// What becomes of a field of a record.
struct ManyChange {
    QString field; ///< its caption
    QString before;
    QString after;
};

/// What becomes of one of many records that are saved together.
struct ManySave {
    QString record{}; ///< what the record is called
    bool isNew = false;
    QList<ManyChange> changes{};
    QString problem{}; ///< why it cannot be saved; empty: nothing is known against it
    QString request{}; ///< empty: there is nothing to save
    wire::Fields fields{};
    std::optional<Box> question{}; ///< asked before it is saved
    bool isChosen = true;          ///< the operator can leave out a record
};

/// How they are talked about.
struct ManyWords {
    QString title;
    int helpContext = 0;
    QString caption;                         ///< of a failure's report
    QString subject;                         ///< of the records
    QHash<qint16, OwnWords> const* own = {}; ///< the screen's own messages for statuses of a save
};

/// Shows what becomes of records that are to be saved together, and what the server says against it; saves
/// them all, or none, as one change. It closes once they are saved.
class frmManyPreview : public QDialog {
    Q_OBJECT

public:
    frmManyPreview(Application& application, const ManyWords& words, const QList<ManySave>& saves,
                   QWidget* parent);

    /// Asks the server what it would refuse, before the dialog is shown; false when that failed (and was
    /// reported).
    bool Try();
    /// How many records were saved.
    qsizetype Saved() const { return m_saved; }
    void accept() override;

private:
    bool IsSent(const ManySave& save) const;
    qint16 Send(bool isTry);
    void NoteRefusals();
    void ShowSaves();
    void Refresh();
    void LeaveOutRefused();

    Application& m_application;
    ManyWords m_words;
    QList<ManySave> m_saves;
    qsizetype m_saved = 0;
    bool m_filling = false;
    QLabel* lblNote = nullptr;
    QTreeWidget* tvwRecords = nullptr;
    QPushButton* cmdLeaveOut = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdBack = nullptr;
};

} // namespace sysadmin
