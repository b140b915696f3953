#pragma once

#include "core/Screen.h"
#include "core/data/SecurityProfile.h"
#include "framework/forms/PutList.h"

class QKeySequence;
class QPushButton;

namespace sysadmin {

class FormView;

/// What the standard maintenance screen and the single-record screen have in common.
class FormScreen : public Screen {
    Q_OBJECT

public:
    using Screen::Screen;

    /// Keeps a choice's entries the same as a shared pick-list, whoever changes it.
    void Follow(ChoiceField& field, const QString& pickList);

protected:
    /// Tells other screens that a record of the subject changed.
    void Announce(const QString& subject);
    /// Ends the building: every grid gets what it asks the operator through, every control its mnemonic.
    void FinishBuilding();
    /// Money fields take the base currency's decimals.
    void PrepareForm(Form& form);
    /// Shows the form's first problem and puts the focus there; true when there is none.
    bool CheckForm(const Form& form, FormView& view);
    /// Closes the screen's child window.
    void CloseScreen();
    /// Shows an exclamation box.
    void Tell(const QString& text);
    /// A button with its given name.
    QPushButton* MakeButton(const QString& name, const QString& caption);
    /// Clicks the button when the key is pressed anywhere on the screen.
    void BindKey(const QKeySequence& key, QPushButton* button);
};

} // namespace sysadmin
