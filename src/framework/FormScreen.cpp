#include "framework/FormScreen.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "framework/Captions.h"
#include "framework/FormView.h"
#include "framework/ListGrid.h"
#include "wire/Status.h"

#include <QDialog>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>

namespace sysadmin {

void FormScreen::Follow(ChoiceField& field, const QString& pickList, const QString& none) {
    const auto showEntries = [this, &field, pickList, none] {
        QList<PickItem> items = App().pickLists.Items(pickList);
        if (!none.isEmpty())
            items.prepend({{}, none});
        field.SetItems(items);
    };
    showEntries();
    connect(&App().pickLists, &PickLists::Changed, this, [pickList, showEntries](const QString& list) {
        if (list == pickList)
            showEntries();
    });
}

QList<PickItem> FormScreen::ReadPickItems(const QString& listRequest, const QString& idTag,
                                          const QString& textTag,
                                          const std::function<void(qint16 status)>& report) {
    RequestChannel& channel = App().channel;
    QList<PickItem> items;
    qint16 result = wire::status::Ok;
    do {
        if (result == wire::status::Continues)
            channel.PutField("55", "Y");
        result = channel.SendRequest(listRequest);
        if (result != wire::status::Ok)
            report(result);
        else
            while (channel.NextRecord(idTag))
                items.append({channel.GetField(idTag), channel.GetField(textTag)});
    } while (result == wire::status::Continues);
    return items;
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
    QWidget* around = parentWidget();
    const bool isWindow = qobject_cast<QMdiSubWindow*>(around) || qobject_cast<QDialog*>(around);
    (isWindow ? around : this)->close();
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
