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
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>

namespace sysadmin {

namespace {

constexpr int MostRecords = 15;
/// Its screens store nothing: whoever sees them enters what he likes.
const QString ToolsGroup = "Tools";

/// Dialogs that nearly every list has in its menu are visited once: on which screens, by which entry.
const QHash<QString, QString> ListTools{{"frmAcquisitions_VendorTypes", "mnuImport"},
                                        {"frmSystem_Locations", "mnuChangeSelected"}};
const QByteArray FileToImport = "Cd,Nm\r\nNEW,New vendor type\r\nTOOLONGFORACODE,Refused vendor type\r\n";

/// Dialogs in which there is nothing to enter.
bool OnlyShows(const QString& dialog) {
    return QStringList{"frmLoginInformation", "frmAbout", "frmError", "frmSecurity_OperatorLockoutStatus",
                       "frmVersionInfo"}
        .contains(dialog);
}

/// Presses the buttons that open dialogs from here.
void OpenDialogs(QWidget& screen) {
    for (QPushButton* button : screen.findChildren<QPushButton*>())
        if (button->isEnabled() && !button->isHidden() &&
            (button->text().endsWith("...") || button->objectName().startsWith("cmdAdd") ||
             button->objectName() == u"cmdAddress" || button->objectName() == u"cmdItemSettings" ||
             button->objectName() == u"cmdSetRules"))
            button->click();
}

/// Visits every dialog that comes instead of waiting for an operator, and answers the safe way.
class VisitingPrompter : public Prompter {
public:
    explicit VisitingPrompter(const WindowVisitor& visitor)
        : m_visitor(visitor) {}

    /// Visits every page of the window: the first one under the state's name, the others with their number
    /// behind it.
    void VisitPages(QWidget& window, const QString& state, int helpContext) {
        Visit(window, state, helpContext);
        int number = 1;
        for (QTabWidget* tabs : window.findChildren<QTabWidget*>()) {
            if (!tabs->isVisibleTo(&window) || !tabs->tabBar()->isEnabledTo(&window))
                continue;
            const int chosen = tabs->currentIndex();
            for (int page = 0; page < tabs->count(); ++page) {
                if (page == chosen || !tabs->isTabEnabled(page))
                    continue;
                tabs->setCurrentIndex(page);
                Visit(window, state + '-' + QString::number(++number), helpContext);
            }
            tabs->setCurrentIndex(chosen);
        }
    }

    /// Visits the window once; the first state of a name that comes is the one that counts.
    void Visit(QWidget& window, const QString& state, int helpContext) {
        const QString name = window.objectName() + "." + state;
        if (m_visited.contains(name))
            return;
        m_visited.insert(name);
        QApplication::processEvents();
        m_visitor.window(window, state, helpContext);
    }

    void VisitDeclaration(const FormScreen& screen) {
        if (m_visitor.declaration)
            m_visitor.declaration(screen);
    }

    void VisitNavigation(const ScreenCatalogue& catalogue) {
        if (m_visitor.navigation)
            m_visitor.navigation(catalogue);
    }

    bool ShowBox(QWidget*, const Box&) override { return false; }
    bool RunDialog(QDialog& dialog) override {
        dialog.show();
        VisitPages(dialog, OnlyShows(dialog.objectName()) ? "view" : "edit",
                   dialog.property(HelpContextProperty).toInt());
        OpenDialogs(dialog);
        dialog.hide();
        return dialog.objectName() == u"frmSelectCluster"; // without one the screens behind it stay closed
    }
    QString AskSaveFile(QWidget*, const QString&, const QString&, const QString&) override { return {}; }
    QString AskOpenFile(QWidget*, const QString&, const QString&) override { return fileToOpen; }
    QString AskFolder(QWidget*, const QString&, const QString&) override { return {}; }

    QString fileToOpen;

private:
    const WindowVisitor& m_visitor;
    QSet<QString> m_visited;
};

QAbstractButton* ButtonOf(QWidget& screen, const QString& name) {
    auto* button = screen.findChild<QAbstractButton*>(name);
    return button && !button->isHidden() && button->isEnabled() ? button : nullptr;
}

/// Opens what changes or imports many records; two are selected.
void VisitListTools(Screen& screen, VisitingPrompter& prompter) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("vendor-types.csv"));
    if (!file.open(QIODevice::WriteOnly) || file.write(FileToImport) != FileToImport.size() || !file.flush())
        return;
    prompter.fileToOpen = file.fileName();
    for (QAction* action : screen.findChildren<QAction*>(ListTools.value(screen.objectName()))) {
        auto* grid = qobject_cast<ListGrid*>(action->parent());
        if (!grid || !action->isVisible() || grid->Model().rowCount() < 2)
            continue;
        const QItemSelection both(grid->model()->index(0, 0), grid->model()->index(1, 0));
        grid->selectionModel()->select(both, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        action->trigger();
        break;
    }
    prompter.fileToOpen.clear();
}

/// Opens the first records of the list on the page. Which dialogs a record offers depends on the record: a
/// few are looked at.
void VisitRecords(Screen& screen, QWidget* page, VisitingPrompter& prompter, int helpContext, bool mayEdit,
                  const QString& table = {}) {
    auto* grid = page == &screen ? page->findChild<ListGrid*>("vsf") : nullptr;
    if (!grid)
        grid = page->findChild<ListGrid*>();
    const QStringList keys =
        grid ? grid->Model().ShownKeys().mid(0, mayEdit ? MostRecords : 1) : QStringList();
    for (const QString& key : keys) {
        grid->SelectKey(key);
        QAbstractButton* button = ButtonOf(screen, "cmdEdit");
        if (!button)
            break;
        button->click();
        prompter.VisitPages(screen, (mayEdit ? "edit" : "view") + table, helpContext);
        if (mayEdit)
            OpenDialogs(screen);
        if (QAbstractButton* cancel = ButtonOf(screen, "cmdCancel"))
            cancel->click();
    }
}

void VisitScreen(Screen& screen, VisitingPrompter& prompter, int helpContext, bool mayEdit) {
    if (!screen.findChild<QAbstractButton*>("cmdEdit")) {
        prompter.VisitPages(screen, mayEdit ? "edit" : "view", helpContext);
        if (mayEdit)
            OpenDialogs(screen);
        return;
    }
    if (mayEdit) {
        prompter.Visit(screen, "list", helpContext);
        OpenDialogs(screen);
        if (ListTools.contains(screen.objectName()))
            VisitListTools(screen, prompter);
        if (QAbstractButton* button = ButtonOf(screen, "cmdNew")) {
            button->click();
            prompter.VisitPages(screen, "new", helpContext);
            if (QAbstractButton* cancel = ButtonOf(screen, "cmdCancel"))
                cancel->click();
        }
    }
    // Of several tables each has a page.
    auto* tables = screen.findChild<QTabWidget*>("tabTables");
    VisitRecords(screen, tables ? tables->widget(0) : &screen, prompter, helpContext, mayEdit);
    for (int page = 1; tables && page < tables->count(); ++page) {
        tables->setCurrentIndex(page);
        VisitRecords(screen, tables->widget(page), prompter, helpContext, mayEdit,
                     "-table" + QString::number(page + 1));
    }
}

QString VisitAs(const CommandLine& line, VisitingPrompter& prompter, const QString& operatorId,
                const QString& password, bool mayEdit) {
    Client client(prompter, line);
    if (mayEdit)
        client.Comm().ShowSignOn();
    if (const QString problem = client.Comm().SignOnDirectly(operatorId, password); !problem.isEmpty())
        return problem;
    const QStringList arguments =
        line.appearance.isEmpty() ? QStringList() : QStringList{"--appearance", line.appearance};
    if (!client.Start(arguments))
        return "the main window did not open for " + operatorId;
    if (mayEdit)
        prompter.VisitNavigation(client.App().catalogue);
    MainWindow& window = *client.Window();
    window.resize(1280, 800);
    for (const ScreenEntry& entry : client.App().catalogue.Entries()) {
        if (!entry.screen.make)
            continue;
        window.OpenScreen(entry.key);
        Screen* screen = window.FindScreen(entry.key);
        if (const auto* form = dynamic_cast<FormScreen*>(screen); form && mayEdit)
            prompter.VisitDeclaration(*form);
        if (screen)
            VisitScreen(*screen, prompter, entry.screen.helpContext, mayEdit || entry.groupKey == ToolsGroup);
        if (mayEdit) // once: with the first screen alone in it, the window shows what belongs to it
            prompter.Visit(window, "list", 0);
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
    return {};
}

} // namespace

QString VisitWindows(const CommandLine& given, const WindowVisitor& visitor) {
    CommandLine line = given;
    QTemporaryDir library;
    if (line.library.isEmpty() && !line.server)
        line.library = library.path();
    VisitingPrompter prompter(visitor);
    if (const QString problem = VisitAs(line, prompter, "SYSADMIN", "sample-admin-1", true);
        !problem.isEmpty())
        return problem;
    return VisitAs(line, prompter, "VIEWER", "sample-viewer-1", false);
}

namespace {

/// The groups of the navigation with those of their items that have a screen.
QJsonArray NavigationJson(const ScreenCatalogue& catalogue) {
    QJsonArray groups;
    for (const ScreenGroup& group : catalogue.Groups()) {
        QJsonArray items;
        for (const ScreenEntry& entry : catalogue.Entries())
            if (entry.groupKey == group.key && entry.screen.make)
                items.append(QJsonObject{{"caption", QString(entry.caption).replace("&&", "&")},
                                         {"topic", QString::number(entry.screen.helpContext)}});
        if (!items.isEmpty())
            groups.append(QJsonObject{{"caption", group.caption}, {"items", items}});
    }
    return groups;
}

QString WriteFile(const QString& name, const QJsonDocument& json) {
    QFile file(name);
    const QByteArray text = json.toJson();
    const bool written = file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    return written ? QString() : name + ": " + file.errorString();
}

} // namespace

QString RunDescribe(const CommandLine& line) {
    const QString& folder = line.describeDir;
    if (!QDir().mkpath(folder + "/declarations"))
        return "cannot write to " + folder + "; name a folder that can be written: --describe DIR";
    QString failure;
    const auto describe = [&](QWidget& window, const QString& state, int helpContext) {
        if (const QString problem = WriteDescription(window, folder, state, helpContext); !problem.isEmpty())
            failure = problem;
    };
    const auto declare = [&](const FormScreen& screen) {
        const QString name = folder + "/declarations/" + screen.objectName() + ".json";
        if (const QString problem = WriteFile(name, QJsonDocument(ToJson(screen.Declaration())));
            !problem.isEmpty())
            failure = problem;
    };
    const auto navigate = [&](const ScreenCatalogue& catalogue) {
        if (const QString problem =
                WriteFile(folder + "/declarations/navigation.json", QJsonDocument(NavigationJson(catalogue)));
            !problem.isEmpty())
            failure = problem;
    };
    const QString problem = VisitWindows(line, {describe, declare, navigate});
    return problem.isEmpty() ? failure : problem;
}

} // namespace sysadmin
