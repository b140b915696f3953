#pragma once

#include "framework/FormScreen.h"
#include "framework/FormView.h"

class QGroupBox;
class QHBoxLayout;
class QLabel;

namespace sysadmin {

struct Conflict;

/// A settings screen that loads one record when it opens and writes it back.
class SingleRecordScreen : public FormScreen {
    Q_OBJECT

public:
    void LoadScreen() override;
    bool MayClose() override;
    void GoTo(const QString& control) override;
    bool ShowRecord(const QString& word, const QString& key, const QString& control) override;
    RecordState BlankState(const QString& word) const override;
    std::optional<RecordState> ReadState(const QString& word, const QString& key) override;
    bool MayBringBack(const QString&, bool) const override { return !m_readOnly; }
    bool BringBack(const QString& word, const QString& key, const RecordState& state,
                   const QList<int>& fields) override;
    bool HasUnsaved() const override { return !m_readOnly && m_form->IsChanged(); }
    bool IsReadOnly() const { return m_readOnly; }

protected:
    SingleRecordScreen(Application& application, const QString& formName, const QString& caption, Area area,
                       QWidget* parent);

    /// Draws the record. Call it once, in the constructor. Layout and put steps follow from the fields where
    /// they are not given.
    void Build(const RecordSpec& spec, Form& form, const Layout& layout = Below({}),
               const QList<PutStep>& puts = {}, const FormView::SlotMaker& makeSlot = {});
    /// Puts a further button in front of Save.
    void AddButton(QPushButton* button);

    /// Whatever has to be there before the record is loaded; false (after its message) when it is not, and
    /// then there is nothing to edit.
    virtual bool BeforeLoad() { return true; }
    /// Puts what the get request needs.
    virtual void PutKey() {}
    virtual void ReadRecord();
    /// The screen's own checks; false (after its message) keeps the screen as it is.
    virtual bool CheckBeforeSave();
    virtual void AfterSave() {}
    /// What Cancel does once the record is as it was loaded.
    virtual void AfterCancel() { CloseScreen(); }

    std::optional<HistoryRecord> RecordNow() const override;

    FormView& View() { return *m_view; }

private:
    void LoadRecord();
    void AskForRecord();
    void Reload();
    void Save();
    void SendSave();
    void SettleConflict(const Conflict& conflict);
    void OnChangedByOthers(const QString& subject);
    void Cancel();
    void RefreshButtons();

    RecordSpec m_spec;
    Form* m_form = nullptr;
    QList<PutStep> m_puts;
    FormView* m_view = nullptr;
    QGroupBox* m_fraEdit = nullptr;
    QHBoxLayout* m_buttons = nullptr;
    QLabel* m_lblChanged = nullptr;
    QPushButton* m_cmdSave = nullptr;
    QPushButton* m_cmdCancel = nullptr;
    bool m_readOnly = false;
    bool m_loaded = false;
    bool m_exists = false;
};

} // namespace sysadmin
