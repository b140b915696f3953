#include "core/Prompter.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QScreen>
#include <QShortcut>

namespace sysadmin {

namespace {

// A box belongs to the dialog the operator is in, whoever asked for it: under any other parent it would come
// up behind that dialog.
QWidget* BoxParent(QWidget* parent) {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return parent ? parent->window() : QApplication::activeWindow();
}

QMessageBox::Icon MessageIcon(Box::Icon icon) {
    switch (icon) {
    case Box::Icon::None:
        return QMessageBox::NoIcon;
    case Box::Icon::Information:
        return QMessageBox::Information;
    case Box::Icon::Exclamation:
        return QMessageBox::Warning;
    case Box::Icon::Critical:
        return QMessageBox::Critical;
    case Box::Icon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

void AddButtons(QMessageBox& window, const Box& box) {
    switch (box.buttons) {
    case Box::Buttons::Ok:
        window.setStandardButtons(QMessageBox::Ok);
        window.setEscapeButton(QMessageBox::Ok);
        break;
    case Box::Buttons::OkCancel:
        window.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        window.setDefaultButton(box.careful ? QMessageBox::Cancel : QMessageBox::Ok);
        window.setEscapeButton(QMessageBox::Cancel);
        break;
    case Box::Buttons::YesNo:
        window.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        window.setDefaultButton(box.careful ? QMessageBox::No : QMessageBox::Yes);
        window.setEscapeButton(QMessageBox::No);
        break;
    }
}

} // namespace

QString ApplicationTitle() {
    return QCoreApplication::translate("Prompter", "System Administration");
}

bool WindowPrompter::ShowBox(QWidget* parent, const Box& box) {
    QMessageBox window(BoxParent(parent));
    window.setObjectName("msgBox");
    window.setWindowTitle(box.title);
    window.setIcon(MessageIcon(box.icon));
    // Record names stand in the texts: nothing in them is markup.
    window.setTextFormat(Qt::PlainText);
    window.setText(QString(box.text).replace("\r\n", "\n"));
    window.setTextInteractionFlags(Qt::TextSelectableByMouse);
    AddButtons(window, box);
    QPushButton* more =
        box.more.caption.isEmpty() ? nullptr : window.addButton(box.more.caption, QMessageBox::ActionRole);
    if (more)
        more->setObjectName("cmdMore");
    int answer = window.exec();
    while (more && window.clickedButton() == more && !box.more.show())
        answer = window.exec();
    return answer == QMessageBox::Ok || answer == QMessageBox::Yes;
}

bool WindowPrompter::RunDialog(QDialog& dialog) {
    // The main window's own key does not reach a modal dialog.
    QShortcut help(QKeySequence::HelpContents, &dialog);
    QObject::connect(&help, &QShortcut::activated, &dialog, [this, &dialog] {
        if (showHelp)
            showHelp(dialog, dialog.property(HelpContextProperty).toInt());
    });
    // With large letters on a small screen a dialog may be larger than that: what it holds is scrolled then.
    constexpr QSize TitleAndEdges(20, 48);
    if (dialog.testAttribute(Qt::WA_Resized)) // others take the size of what is in them when they are shown
        dialog.resize(dialog.size().boundedTo(dialog.screen()->availableSize() - TitleAndEdges));
    return dialog.exec() == QDialog::Accepted;
}

QString WindowPrompter::AskSaveFile(QWidget* parent, const QString& title, const QString& suggestion,
                                    const QString& filter) {
    return QFileDialog::getSaveFileName(BoxParent(parent), title, suggestion, filter);
}

QString WindowPrompter::AskOpenFile(QWidget* parent, const QString& title, const QString& filter) {
    return QFileDialog::getOpenFileName(BoxParent(parent), title, {}, filter);
}

QString WindowPrompter::AskFolder(QWidget* parent, const QString& title, const QString& start) {
    return QFileDialog::getExistingDirectory(BoxParent(parent), title, start);
}

} // namespace sysadmin
