#include "app/DescribeRun.h"

#include "app/Client.h"
#include "comm/CommandLine.h"
#include "core/Describe.h"
#include "core/MainWindow.h"
#include "core/Prompter.h"
#include "core/Screen.h"
#include "framework/FormScreen.h"
#include "framework/ListGrid.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTemporaryDir>

namespace sysadmin {

namespace {

constexpr int MostRecords = 15;

/// Dialogs in which there is nothing to enter.
bool OnlyShows(const QString& dialog) {
    return QStringList{"frmLoginInformation", "frmAbout", "frmError", "frmSecurity_OperatorLockoutStatus"}
        .contains(dialog);
}

/// Presses the buttons that open dialogs from here.
void OpenDialogs(QWidget& screen) {
    for (QPushButton* button : screen.findChildren<QPushButton*>())
        if (button->isEnabled() && !button->isHidden() &&
            (button->text().endsWith("...") || button->objectName().startsWith("cmdAdd") ||
             button->objectName() == u"cmdAddress"))
            button->click();
}

/// Describes every dialog that comes instead of waiting for an operator, and answers the safe way.
class DescribingPrompter : public Prompter {
public:
    explicit DescribingPrompter(const QString& folder)
        : m_folder(folder) {}

    QString problem;

    /// Writes the window once; the first state of a name that comes is the one that is kept.
    void Describe(QWidget& window, const QString& state, int helpContext) {
        const QString name = window.objectName() + "." + state;
        if (m_described.contains(name))
            return;
        m_described.insert(name);
        QApplication::processEvents();
        const QString failure = WriteDescription(window, m_folder, state, helpContext);
        if (!failure.isEmpty())
            problem = failure;
    }

    /// Writes what the screen declares as declarations/NAME.json.
    void DescribeDeclaration(const FormScreen& screen) {
        QDir(m_folder).mkpath("declarations");
        QFile file(m_folder + "/declarations/" + screen.objectName() + ".json");
        const QByteArray text = QJsonDocument(ToJson(screen.Declaration())).toJson();
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            problem = file.fileName() + ": " + file.errorString();
    }

    bool ShowBox(QWidget*, const Box&) override { return false; }
    bool RunDialog(QDialog& dialog) override {
        dialog.show();
        Describe(dialog, OnlyShows(dialog.objectName()) ? "view" : "edit",
                 dialog.property("helpContext").toInt());
        OpenDialogs(dialog);
        dialog.hide();
        return dialog.objectName() == u"frmSelectCluster"; // without one the screens behind it stay closed
    }
    QString AskSaveFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }

private:
    QString m_folder;
    QSet<QString> m_described;
};

QAbstractButton* ButtonOf(QWidget& screen, const QString& name) {
    auto* button = screen.findChild<QAbstractButton*>(name);
    return button && !button->isHidden() && button->isEnabled() ? button : nullptr;
}

void DescribeScreen(Screen& screen, DescribingPrompter& prompter, int helpContext, bool mayEdit) {
    if (!screen.findChild<QAbstractButton*>("cmdEdit")) {
        prompter.Describe(screen, mayEdit ? "edit" : "view", helpContext);
        if (mayEdit)
            OpenDialogs(screen);
        return;
    }
    if (mayEdit) {
        prompter.Describe(screen, "list", helpContext);
        OpenDialogs(screen);
        if (QAbstractButton* button = ButtonOf(screen, "cmdNew")) {
            button->click();
            prompter.Describe(screen, "new", helpContext);
            if (QAbstractButton* cancel = ButtonOf(screen, "cmdCancel"))
                cancel->click();
        }
    }
    // Which dialogs a record offers depends on the record: a few are looked at.
    auto* grid = screen.findChild<ListGrid*>("vsf");
    if (!grid) // several tables: the first one's
        grid = screen.findChild<ListGrid*>();
    const QStringList keys =
        grid ? grid->Model().ShownKeys().mid(0, mayEdit ? MostRecords : 1) : QStringList();
    for (const QString& key : keys) {
        grid->SelectKey(key);
        QAbstractButton* button = ButtonOf(screen, "cmdEdit");
        if (!button)
            break;
        button->click();
        prompter.Describe(screen, mayEdit ? "edit" : "view", helpContext);
        if (mayEdit)
            OpenDialogs(screen);
        if (QAbstractButton* cancel = ButtonOf(screen, "cmdCancel"))
            cancel->click();
    }
}

QString DescribeAs(const CommandLine& line, DescribingPrompter& prompter, const QString& operatorId,
                   const QString& password, bool mayEdit) {
    Client client(prompter, line);
    if (mayEdit)
        client.Comm().ShowSignOn();
    if (const QString problem = client.Comm().SignOnDirectly(operatorId, password); !problem.isEmpty())
        return problem;
    if (!client.Start({}))
        return "the main window did not open for " + operatorId;
    MainWindow& window = *client.Window();
    window.resize(1280, 800);
    for (const ScreenEntry& entry : client.App().catalogue.Entries()) {
        if (!entry.screen.make)
            continue;
        window.OpenScreen(entry.key);
        Screen* screen = window.FindScreen(entry.key);
        if (const auto* form = dynamic_cast<FormScreen*>(screen); form && mayEdit)
            prompter.DescribeDeclaration(*form);
        if (screen)
            DescribeScreen(*screen, prompter, entry.screen.helpContext, mayEdit);
        if (mayEdit) // once: with the first screen alone in it, the window shows what belongs to it
            prompter.Describe(window, "list", 0);
    }
    if (mayEdit) {
        for (const char* name : {"mnuFileLogin", "mnuFileChangePassword", "mnuFileSelectCluster",
                                 "mnuFilePreferences", "mnuHelpAbout"})
            if (auto* action = window.findChild<QAction*>(name))
                action->trigger();
        client.App().ReportRequestFailure(1, "Load Acquisitions Vendor Types", "Vendor Type");
    }
    window.Abort = true;
    client.CloseWindow();
    return prompter.problem;
}

} // namespace

QString RunDescribe(const CommandLine& given) {
    CommandLine line = given;
    QTemporaryDir library;
    if (line.library.isEmpty() && !line.server)
        line.library = library.path();
    if (!QDir().mkpath(line.describeDir))
        return "cannot write to " + line.describeDir + "; name a folder that can be written: --describe DIR";
    DescribingPrompter prompter(line.describeDir);
    if (const QString problem = DescribeAs(line, prompter, "SYSADMIN", "sample-admin-1", true);
        !problem.isEmpty())
        return problem;
    return DescribeAs(line, prompter, "VIEWER", "sample-viewer-1", false);
}

} // namespace sysadmin
