#pragma once

#include "core/Screen.h"
#include "framework/Declaration.h"
#include "framework/FormView.h"
#include "framework/RecordHistory.h"
#include "framework/forms/ReadList.h"

class QKeySequence;
class QLabel;
class QPushButton;

namespace sysadmin {

/// Forms grow no wider than this, in pixels at 100 %.
inline constexpr int ReadableWidth = 1100;

/// What the standard maintenance screen and the single-record screen have in common.
class FormScreen : public Screen {
    Q_OBJECT

public:
    FormScreen(Application& application, const QString& formName, const QString& caption, Area area,
               QWidget* parent);
    ~FormScreen() override;

    /// What the screen declares; complete once it is built.
    const ScreenDeclaration& Declaration() const { return m_declaration; }
    QList<ScreenWord> Words() const override;
    QList<ScreenSubject> Subjects() const override;
    void GoTo(const QString& control) override;

    // What the history of a record asks of the screen that maintains it; `word` is that of its requests.

    /// What a form shows without a record.
    virtual RecordState BlankState(const QString& /*word*/) const { return {}; }
    /// Reads a record into its form, as the server tells it now; none when that failed (and was reported).
    virtual std::optional<RecordState> ReadState(const QString& /*word*/, const QString& /*key*/) {
        return {};
    }
    /// Whether the operator may bring records back; `isGone`: one that has to be added again.
    virtual bool MayBringBack(const QString& /*word*/, bool /*isGone*/) const { return false; }
    /// Opens the record for editing, or a new one where the key is empty, and makes what the fields of these
    /// numbers (none: all fields) once held the draft. False when it cannot be opened now.
    virtual bool BringBack(const QString& /*word*/, const QString& /*key*/, const RecordState& /*state*/,
                           const QList<int>& /*fields*/) {
        return false;
    }

    /// Keeps a choice's entries the same as a shared pick-list, whoever changes it. `none` is the text of a
    /// first entry that stands for no value; empty: there is no such entry.
    void Follow(ChoiceField& field, const QString& pickList, const QString& none = {});

protected:
    /// Makes a form that outlives the views of it: `FundTypeForm& m_form = KeepForm<FundTypeForm>();`
    template <class Kind, class... Arguments>
    Kind& KeepForm(Arguments&&... arguments) {
        auto form = std::make_unique<Kind>(std::forward<Arguments>(arguments)...);
        Kind& kept = *form;
        m_forms.push_back(std::move(form));
        return kept;
    }
    /// Draws a form that the screen keeps.
    FormView* MakeView(Form& form, const Layout& layout, QWidget* parent,
                       const FormView::SlotMaker& makeSlot = {});
    /// Tells other screens that a record of the subject changed.
    void Announce(const QString& subject);
    /// Ends the building: every grid gets what it asks the operator through, every control its mnemonic.
    void FinishBuilding();
    /// Completes the screen's declaration and lets whoever wants to alter it do so. Call it before building.
    void Declare();
    /// What a form's declaration asks for before it is drawn: fields depend on their flags, choices follow
    /// their pick-lists, money fields take the base currency's decimals.
    void PrepareForm(Form& form);
    /// Asks for the entries of the choices that declare a request. `loadCaption` and `subject` are for
    /// reports.
    void LoadChoices(const Form& form, const QString& loadCaption, const QString& subject);
    /// Shows the form's first problem and puts the focus there; true when there is none.
    bool CheckForm(Form& form, FormView& view);
    /// Shows all problems of the form, and `more` behind them, in one message that begins with these words:
    /// a line for each. True when there is none.
    bool CheckAll(Form& form, FormView& view, const QString& beginning, const QStringList& more = {});
    /// Shows which records of the reply failed, in one message: name and reason, a line for each. True when
    /// any did.
    bool TellFailures(const QString& nameTag, const QString& problemTag);
    /// Closes the screen's child window, or the dialog in which it stands.
    void CloseScreen();
    /// Says beside a Save button which required fields are still blank; null says nothing.
    void ShowMissing(const Form* form);
    /// The label that says it; the screen places it.
    QLabel* MissingLabel();
    /// The record whose history can be shown now: the one in the form, or else the one selected.
    virtual std::optional<HistoryRecord> RecordNow() const { return {}; }
    void ShowHistory();
    /// Shows an exclamation box.
    void Tell(const QString& text);
    /// A button with its given name.
    QPushButton* MakeButton(const QString& name, const QString& caption);
    /// Clicks the button when the key is pressed anywhere on the screen.
    void BindKey(const QKeySequence& key, QPushButton* button);
    /// Clicks the button on Esc, after a question where something is entered that would be lost.
    void BindEscape(QPushButton* cancel, const std::function<bool()>& isChanged);
    void keyPressEvent(QKeyEvent* event) override;

    ScreenDeclaration m_declaration;

private:
    void LoadChoice(ChoiceField& field, const QString& loadCaption, const QString& subject);
    void ReadChoice(ChoiceField& field, const std::function<void(qint16)>& report);

    QLabel* m_lblMissing = nullptr;
    std::vector<std::unique_ptr<Form>> m_forms;
    std::vector<std::unique_ptr<FormView>> m_views; // behind the forms: they go first
};

} // namespace sysadmin
