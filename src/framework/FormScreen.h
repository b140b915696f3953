#pragma once

#include "core/Screen.h"
#include "core/data/SecurityProfile.h"
#include "framework/forms/PutList.h"

#include <functional>

class QKeySequence;
class QPushButton;

namespace sysadmin {

class FormView;

/// What the standard maintenance screen and the single-record screen have in common.
class FormScreen : public Screen {
    Q_OBJECT

public:
    using Screen::Screen;

    /// Keeps a choice's entries the same as a shared pick-list, whoever changes it. `none` is the text of a
    /// first entry that stands for no value; empty: there is no such entry.
    void Follow(ChoiceField& field, const QString& pickList, const QString& none = {});

protected:
    /// Tells other screens that a record of the subject changed.
    void Announce(const QString& subject);
    /// Ends the building: every grid gets what it asks the operator through, every control its mnemonic.
    void FinishBuilding();
    /// Asks for a list whose records are a choice's entries. `report` is told of every status but 0, after
    /// which the entries read so far are answered.
    QList<PickItem> ReadPickItems(const QString& listRequest, const QString& idTag, const QString& textTag,
                                  const std::function<void(qint16 status)>& report);
    /// Money fields take the base currency's decimals.
    void PrepareForm(Form& form);
    /// Shows the form's first problem and puts the focus there; true when there is none.
    bool CheckForm(const Form& form, FormView& view);
    /// Closes the screen's child window, or the dialog in which it stands.
    void CloseScreen();
    /// Shows an exclamation box.
    void Tell(const QString& text);
    /// A button with its given name.
    QPushButton* MakeButton(const QString& name, const QString& caption);
    /// Clicks the button when the key is pressed anywhere on the screen.
    void BindKey(const QKeySequence& key, QPushButton* button);
};

} // namespace sysadmin
