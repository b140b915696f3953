#include "framework/Utility.h"

#include "core/Application.h"
#include "core/Prompter.h"
#include "core/data/Tr.h"

#include <QWidget>

namespace sysadmin {

bool ConfirmDelete(Application& application, QWidget* parent, const QString& subject,
                   const QString& itemText) {
    return application.prompter.ShowBox(parent, {.text = Tr("You will delete ") + subject + ":\r\n\"" +
                                                         itemText + "\"\r\n\r\n" + Tr("Are you sure?"),
                                                 .icon = Box::Icon::Question,
                                                 .buttons = Box::Buttons::YesNo,
                                                 .title = Tr("Delete ") + subject,
                                                 .careful = true});
}

bool ConfirmDeleteEx(Application& application, QWidget* parent, const QString& subject,
                     const QStringList& values) {
    return ConfirmDelete(application, parent, subject, values.join(' '));
}

bool ConfirmDiscard(Application& application, QWidget* parent) {
    return application.prompter.ShowBox(
        parent, {.text = Tr("What was entered has not been saved.") + "\r\n\r\n" + Tr("Discard it?"),
                 .icon = Box::Icon::Question,
                 .buttons = Box::Buttons::YesNo,
                 .careful = true});
}

void WarnEditInProgress(Application& application, QWidget* parent) {
    application.prompter.ShowBox(
        parent,
        {.text = Tr("There is data currently being edited!\r\nPlease save or cancel the open work area.")});
}

void ReportUnableToLoad(Application& application, QWidget* parent, const QString& caption) {
    application.prompter.ShowBox(parent, {.text = Tr("Unable to load ") + caption + "."});
}

QString SubjectOf(const QString& request) {
    constexpr qsizetype Verb = 3; // "Lst" or "Get"
    return request.mid(Verb);
}

void InTabOrder(const QList<QWidget*>& controls) {
    for (qsizetype i = 1; i < controls.size(); ++i)
        QWidget::setTabOrder(controls[i - 1], controls[i]);
}

void SetEditMode(bool editing, const QList<QWidget*>& listSide, const QList<QWidget*>& editSide) {
    // The side that takes over is enabled first: the focus never falls on something outside the screen.
    for (QWidget* widget : editing ? editSide : listSide)
        widget->setEnabled(true);
    for (QWidget* widget : editing ? listSide : editSide)
        widget->setEnabled(false);
}

} // namespace sysadmin
