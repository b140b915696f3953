#pragma once

#include "framework/FormScreen.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"

#include <deque>

class QGroupBox;
class QHBoxLayout;
class QLabel;
class QSplitter;
class QStackedLayout;
class QTabWidget;
class QVBoxLayout;

namespace sysadmin {

class CommonForm;
class RowSummary;
struct Box;
struct Conflict;
struct ImportPlan;
struct ManySave;

/// The standard maintenance screen: a list of records and an edit area, one state machine for all of them.
///
/// A screen states its tables (nearly always one), each with form, layout and the order of its fields in
/// requests, and overrides the few points at which it differs.
class MaintenanceScreen : public FormScreen {
    Q_OBJECT

public:
    enum class State { List, EditingNew, Editing, Viewing, EditingSeveral };

    void LoadScreen() override;
    bool MayClose() override;
    bool HasUnsaved() const override;
    /// A field is gone to in the selected record, which is opened for that.
    void GoTo(const QString& control) override;
    bool ShowRecord(const QString& word, const QString& key, const QString& control) override;
    RecordState BlankState(const QString& word) const override;
    std::optional<RecordState> ReadState(const QString& word, const QString& key) override;
    bool MayBringBack(const QString& word, bool isGone) const override;
    bool BringBack(const QString& word, const QString& key, const RecordState& state,
                   const QList<int>& fields) override;
    void OnClusterChanged() override;
    State GetState() const { return m_state; }
    bool IsReadOnly() const { return m_readOnly; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    std::optional<HistoryRecord> RecordNow() const override;

    struct Table : TableDeclaration {
        FormView::SlotMaker makeSlot;
        QStringList cellTags{}; ///< of the list's columns
        ListGrid* grid = nullptr;
        FormView* view = nullptr;
        QWidget* listPage = nullptr;
        FormView* severalView = nullptr; ///< only where several records can be edited at once
        QPushButton* severalButton = nullptr;
        QPushButton* orderButton = nullptr; ///< only where the operator gives the records an order
        int viewPage = 0;                   ///< of the edit side; the one for several is behind it
        bool takesMany = false;             ///< whether many records can be saved together, by who may edit
        bool changesSelected = false;       ///< whether selected ones are changed by the common dialog
        bool importsMany = false;           ///< whether a file's lines can be matched with records
    };

    MaintenanceScreen(Application& application, const QString& formName, const QString& caption, Area area,
                      QWidget* parent);

    /// Declares a table. Call it once per table in the constructor, then `Finish`. Layout and put steps
    /// follow from the fields where they are not given.
    void AddTable(const TableSpec& spec, Form& form, const Layout& layout = Below({}),
                  const QList<PutStep>& puts = {}, const FormView::SlotMaker& makeSlot = {});
    /// Builds what was declared.
    void Finish();
    /// Replaces the rights that come from the screen's area; `mayView`: who may not edit views records
    /// instead. Call it before `LoadScreen` of this class runs.
    void SetRights(bool mayCreate, bool mayEdit, bool mayDelete, bool mayView = true);
    /// Puts a further button below New, Edit and Delete on the list side, or in front of Save in the edit
    /// area.
    void AddListButton(QPushButton* button);
    void AddEditButton(QPushButton* button);
    /// What the list or the forms show of these subjects is read again when somebody here or elsewhere
    /// changed one: at once, or when an open edit has ended.
    void ReloadOn(const QStringList& subjects, const std::function<void()>& reload);

    // The points at which a screen may differ.

    /// Whatever has to be there before the list is loaded (pick-lists, rights).
    virtual void BeforeLoad() {}
    /// Fills the table's grid from the server.
    virtual void LoadList(Table& table);
    /// Puts what the list request needs besides the sign that it goes on.
    virtual void PutListKey(const Table& table);
    /// Reports that the list could not be read.
    virtual void ReportLoadFailure(Table& table, qint16 status);
    /// The row of the list reply's record under the cursor.
    virtual GridRow ReadRow(const Table& table);
    /// Fills the form from the row; false when that failed (and was reported).
    virtual bool FillForm(Table& table, const GridRow& row);
    /// Asks for one record; false when that failed (and was reported under the caption).
    bool AskForRecord(const Table& table, const QString& key, const QString& caption);
    /// Reads a get request's reply into the form.
    virtual void ReadRecord(Table& table);
    /// Gets what is available to a new record into the cleared form; false when that failed (and was
    /// reported).
    virtual bool PrepareNew(Table& table);
    /// What a new record may choose from could not be read; reports it. Whether the record is entered all the
    /// same, with what is there.
    virtual bool GoOnWithoutAvailable(Table& table, qint16 status);
    /// Reads the reply of the request for what is available to a new record: into the pairs of lists.
    virtual void ReadAvailable(Table& table);
    /// The screen's own checks; false (after its message) keeps the edit open.
    virtual bool CheckBeforeSave(Table& table);
    /// What else stands against a save of what is in the form, a sentence each, and what is asked before it;
    /// `CheckBeforeSave` and the saves of many records go by both.
    virtual QStringList ProblemsBeforeSave(Table&) { return {}; }
    virtual std::optional<Box> QuestionBeforeSave(Table& table);
    virtual void PutRecord(Table& table, const SaveContext& context);
    /// Sends the record itself, and the further requests of the save; false (after its report) keeps the edit
    /// open.
    virtual bool SendRecord(Table& table);
    virtual bool SendSteps(Table& table);
    /// Whether the edit stays open after a save.
    virtual bool StaysOpen() const { return false; }
    /// Reports a save's failure.
    virtual void ReportSaveFailure(Table& table, qint16 status);
    /// The list row of the record in the form.
    virtual GridRow RowFromForm(const Table& table, const QString& key) const;
    /// The edit of several records is about to open over the selected ones.
    virtual void BeforeSeveral(Table&) {}
    /// After a successful save, with the row now in the list.
    virtual void AfterSave(Table&, const GridRow&, bool /*wasNew*/) {}
    /// What the delete question calls the row.
    virtual QString DeleteItemText(const Table& table, const GridRow& row) const;
    /// What the row's record is called where it is told what became of it: its name, or else its first text.
    QString RecordText(const Table& table, const GridRow& row) const;
    /// Asks whether the row may be deleted.
    virtual bool ConfirmRowDelete(Table& table, const GridRow& row);
    virtual void AfterDelete(Table&, const GridRow&) {}
    /// Whether this row may be deleted at all; the button follows it.
    virtual bool MayDeleteRow(const GridRow&) const { return true; }
    virtual QString EditCaption(const Table& table, State state) const;
    /// The state or the selection changed: buttons of the screen's own follow here.
    virtual void RefreshOwnControls() {}

    Table& Current() { return m_tables[m_current]; }
    const Table& Current() const { return m_tables[m_current]; }
    std::deque<Table>& Tables() { return m_tables; }
    const SaveContext& Saving() const { return m_context; }
    /// Saves the open edit; true when the server took it. `stay` keeps the edit open on the saved record.
    bool Save(bool stay = false);
    /// Stores the record itself and leaves the edit open on it; the further requests of the save are left to
    /// the next one. False when that failed (and was told under the caption).
    bool StoreRecord(const QString& caption);
    void StartNew();
    /// Starts a new record that begins as a copy of the selected one.
    virtual void StartCopy();
    void StartEdit();
    void StartSeveral();
    void EndEdit();
    void RefreshButtons();
    /// Reads the lists again under the eyes of the operator, who is not editing.
    void ReloadLists();
    /// Puts the current cluster, where the table's records are those of a cluster.
    void PutCluster(const Table& table);
    void SetState(State state);

private:
    /// Sends the add or update request, and goes on with it while another system is being asked; its status,
    /// or none when the operator gave up.
    std::optional<qint16> AskToStore(Table& table);
    void BuildTable(Table& table);
    void BuildSeveral(Table& table);
    bool SaveSeveral(Table& table);
    bool TellSeveralChanged(Table& table, qint16 result, const QString& keyTag, const QString& outcome,
                            const QString& wayOn);
    void DeleteSeveral(Table& table, const QStringList& keys);
    QStringList RecordsOfSeveral(const Table& table) const;
    void LoadListAfterSave(Table& table);
    void MoveDefaultMark(Table& table, const GridRow& saved);
    void ShowCluster();
    bool IsEditing() const { return m_state != State::List && m_state != State::Viewing; }
    void OrderTabStops();
    void ShareRoom();
    void AddListTools(Table& table);
    /// Finds out what can be done with many records of the table.
    static void LearnMany(Table& table);
    void ShowSummary();
    void ExportAllFields(Table& table);
    /// Writes chosen fields to all selected records, after a preview.
    void ChangeSelected(Table& table);
    /// What becomes of the records when they get the chosen fields of the form; none when one could not be
    /// read (and that was reported).
    std::optional<QList<ManySave>> SavesOf(Table& table, const QStringList& keys, const CommonForm& chosen);
    /// Adds and changes records by a file of separated values, after a preview.
    void ImportRecords(Table& table);
    std::optional<QList<ManySave>> SavesOf(Table& table, const ImportPlan& plan);
    std::optional<ManySave> SaveOfLine(Table& table, const ImportPlan& plan, qsizetype line,
                                       const GridRow* row);
    /// Fills in what becomes of the record in the form, what its save sends, and what stands against it.
    void CompleteSave(Table& table, const SaveContext& context, const QList<QStringList>& before,
                      ManySave& save);
    /// Shows the saves and sends them when the operator wants it; false when nothing was saved.
    bool SaveMany(Table& table, const QString& title, int helpContext, const QList<ManySave>& saves,
                  QWidget* parent);
    void ShowManySaved(Table& table, const QStringList& keysBefore);
    bool MayChangeMany(const Table& table) const { return table.takesMany && m_mayEdit && !m_readOnly; }
    bool MayImport(const Table& table) const { return table.importsMany && MayChangeMany(table); }
    bool ShowUses(const Table& table, const GridRow& row);
    /// The table whose records the word stands for, or null.
    const Table* TableOf(const QString& word) const;
    void DeleteSelected();
    bool SettleSaveConflict(Table& table, const Conflict& conflict);
    void SettleDeleteConflict(Table& table, const Conflict& conflict, const GridRow& row);
    bool ReadTheirs(Table& table);
    void SendDelete(const GridRow& row);
    void OnChangedByOthers(const QString& subject);
    void MarkOld(const QString& subject);
    void ReloadOld();
    void RefreshListButtons();
    void AskOrder();
    void ReloadRows(Table& table);
    QString KeyAfterSave(const Table& table) const;
    QString FindSaved(const Table& table) const;
    void ShowTable(int index);

    bool m_readOnly = false;
    bool m_mayCreate = false;
    bool m_mayEdit = false;
    bool m_mayDelete = false;
    bool m_mayView = true;
    State m_state = State::List;
    SaveContext m_context;
    QString m_storeCaption;   // of reports while the record is stored by itself
    bool m_isStored = false;  // the record itself; what is left of the save are its further requests
    bool m_readsMany = false; // one record after the other is in a form that nobody sees
    bool m_wasNew = false;
    bool m_listIsOld = false;   // the save will have to ask for it again
    std::deque<Table> m_tables; // a deque: rows, views and handlers refer to its elements
    int m_current = 0;

    struct Reload {
        QStringList subjects;
        std::function<void()> read;
        bool isDue = false;
    };
    std::vector<Reload> m_reloads;
    bool m_changedByOthers = false; // the lists are older than what others stored
    QLabel* m_lblChanged = nullptr;
    QLabel* m_lblCluster = nullptr; // only where the records are those of a cluster

    QSplitter* m_splitter = nullptr;
    int m_chosenWidth = 0; // of the list, by the operator; 0: what is in it decides
    QWidget* m_listSide = nullptr;
    QVBoxLayout* m_listLayout = nullptr;
    QHBoxLayout* m_listButtons = nullptr;
    QHBoxLayout* m_moreListButtons = nullptr; // a line of their own: in one the list would have to be wide
    QHBoxLayout* m_editButtons = nullptr;
    QTabWidget* m_tabs = nullptr; // only with several tables
    QGroupBox* m_fraEdit = nullptr;
    QStackedLayout* m_views = nullptr;
    RowSummary* m_summary = nullptr;       // in place of a form while none is open
    QPushButton* m_cmdDuplicate = nullptr; // only where a table's records are copied
    QPushButton* m_cmdNew = nullptr;
    QPushButton* m_cmdEdit = nullptr;
    QPushButton* m_cmdDelete = nullptr;
    QPushButton* m_cmdHistory = nullptr;
    QPushButton* m_cmdSave = nullptr;
    QPushButton* m_cmdCancel = nullptr;
};

} // namespace sysadmin
