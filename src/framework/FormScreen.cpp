#include "framework/FormScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"

#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>

namespace sysadmin {

void FormScreen::Follow(ChoiceField& field, const QString& pickList) {
    field.SetItems(App().pickLists.Items(pickList));
    connect(&App().pickLists, &PickLists::Changed, this, [this, &field, pickList](const QString& list) {
        if (list == pickList)
            field.SetItems(App().pickLists.Items(pickList));
    });
}

void FormScreen::Announce(const QString& subject) {
    emit App().notices.SubjectChanged(subject);
}

void FormScreen::FinishBuilding() {
    for (ListGrid* grid : findChildren<ListGrid*>())
        grid->SetPrompter(App().prompter);
    AssignMnemonics(*this);
}

void FormScreen::PrepareForm(Form& form) {
    const auto setDecimals = [this, &form] {
        for (Field* field : form.Fields())
            if (field->GetKind() == Field::Kind::Money)
                static_cast<MoneyField*>(field)->SetDecimals(App().profile.MoneyDecimals());
    };
    setDecimals();
    connect(&App().notices, &Notices::SubjectChanged, this, [setDecimals](const QString& subject) {
        if (subject == u"BsCur")
            setDecimals();
    });
}

bool FormScreen::CheckForm(const Form& form, FormView& view) {
    const std::optional<Form::Finding> problem = form.FirstProblem();
    if (!problem)
        return true;
    Tell(problem->text);
    view.FocusField(*problem->field);
    return false;
}

void FormScreen::CloseScreen() {
    auto* window = qobject_cast<QMdiSubWindow*>(parentWidget());
    (window ? static_cast<QWidget*>(window) : this)->close();
}

void FormScreen::Tell(const QString& text) {
    App().prompter.ShowBox(this, {.text = text});
}

QPushButton* FormScreen::MakeButton(const QString& name, const QString& caption) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    return button;
}

void FormScreen::BindKey(const QKeySequence& key, QPushButton* button) {
    auto* shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, button, [button] {
        if (button->isEnabled() && !button->isHidden())
            button->click();
    });
}

} // namespace sysadmin
