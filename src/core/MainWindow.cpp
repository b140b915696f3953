#include "core/MainWindow.h"

#include "core/AboutDialog.h"
#include "core/Application.h"
#include "core/HelpWindow.h"
#include "core/NavigationBar.h"
#include "core/PreferencesDialog.h"
#include "core/Prompter.h"
#include "core/Screen.h"
#include "core/ScreenArea.h"
#include "core/StatusPanels.h"
#include "core/System.h"
#include "core/data/UserSettings.h"
#include "look/IconLoader.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

namespace sysadmin {

namespace {

constexpr int NavigationWidth = 270;
constexpr int MostWords = 40;
constexpr int BeforeLearning = 3000; // milliseconds
constexpr int LearningPause = 50;    // between two screens

QAction* AddEntry(QMenu* menu, const QString& name, const QString& caption) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(name);
    return action;
}

} // namespace

MainWindow::MainWindow(Application& application, const QString& informationCaption)
    : m_application(application)
    , m_wordIndex(application)
    , m_browser([](const QUrl& address) { return QDesktopServices::openUrl(address); }) {
    application.mainWindow = this;
    setObjectName("frmMain");
    setWindowTitle(ApplicationTitle());
    setWindowIcon(LoadIcon("Program"));
    setContextMenuPolicy(Qt::NoContextMenu);

    albMain = new NavigationBar(this);
    mdiScreens = new ScreenArea(this);
    splMain = new QSplitter(this);
    splMain->setObjectName("splMain");
    splMain->setChildrenCollapsible(false);
    splMain->setHandleWidth(1);
    splMain->addWidget(albMain);
    splMain->addWidget(mdiScreens);
    splMain->setStretchFactor(1, 1);
    fraColour = new QWidget(this);
    fraColour->setObjectName("fraColour");
    fraColour->setFixedHeight(5);
    fraColour->setAutoFillBackground(true);
    fraColour->hide();
    auto* middle = new QWidget(this);
    auto* lines = new QVBoxLayout(middle);
    lines->setContentsMargins({});
    lines->setSpacing(0);
    lines->addWidget(fraColour);
    lines->addWidget(splMain, 1);
    setCentralWidget(middle);

    connect(splMain, &QSplitter::splitterMoved, this, [this] {
        m_navigationWidth = albMain->width();
        m_application.prefs.Remember("NavigationWidth", m_navigationWidth);
    });
    BuildFileMenu(informationCaption);
    BuildHelpMenu();
    m_status = new StatusPanels(application, statusBar());
    BuildShortcuts();

    connect(albMain, &NavigationBar::ItemChosen, this, &MainWindow::OpenScreen);
    albMain->SetWordFinder([this](const QString& text) { return m_wordIndex.Find(text, MostWords); });
    connect(albMain, &NavigationBar::WordChosen, this, [this](const QString& key, const QString& control) {
        OpenScreen(key);
        if (Screen* screen = FindScreen(key))
            screen->GoTo(control);
    });
    albMain->FindRecordsToo();
    connect(albMain, &NavigationBar::RecordsWanted, this, &MainWindow::FindRecords);
    connect(albMain, &NavigationBar::RecordChosen, this, [this](const FoundRecord& record) {
        GoToRecord(record.word, record.key, record.name, record.control);
    });
    connect(mdiScreens, &ScreenArea::ScreenChosen, this, &MainWindow::OpenScreen);
    connect(albMain, &NavigationBar::StyleChosen, this,
            [this] { m_application.prefs.Remember("LargeIconGroups", albMain->LargeGroups()); });
    connect(mdiScreens, &QMdiArea::subWindowActivated, this, &MainWindow::OnScreenActivated);
    connect(&application.notices, &Notices::CurrentClusterChanged, this, &MainWindow::OnClusterNotice);
    RestorePlace();
}

MainWindow::~MainWindow() {
    // Screens leave while the window they report to is still whole.
    disconnect(mdiScreens, nullptr, this, nullptr);
    delete mdiScreens;
    m_application.mainWindow = nullptr;
}

void MainWindow::BuildFileMenu(const QString& informationCaption) {
    mnuFile = menuBar()->addMenu(tr("&File"));
    mnuFile->setObjectName("mnuFile");
    connect(AddEntry(mnuFile, "mnuFileLogin", informationCaption), &QAction::triggered, this,
            [this] { m_application.comm.ShowLoginInformation(this); });
    connect(AddEntry(mnuFile, "mnuFileChangePassword", tr("Change Pass&word...")), &QAction::triggered, this,
            [this] { m_application.comm.ChangePassword(this); });
    mnuFile->addSeparator();
    connect(AddEntry(mnuFile, "mnuFilePreferences", tr("&Preferences...")), &QAction::triggered, this,
            [this] {
                PreferencesDialog dialog(m_application.prefs, this);
                m_application.prompter.RunDialog(dialog);
            });
    mnuFile->addSeparator();
    QAction* mnuFileExit = AddEntry(mnuFile, "mnuFileExit", tr("E&xit"));
    mnuFileExit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(mnuFileExit, &QAction::triggered, this, &QWidget::close);
}

void MainWindow::BuildHelpMenu() {
    mnuHelp = menuBar()->addMenu(tr("&Help"));
    mnuHelp->setObjectName("mnuHelp");
    connect(AddEntry(mnuHelp, "mnuHelpTopics", tr("&Help Topics")), &QAction::triggered, this,
            [this] { ShowHelp(0); });
    mnuHelp->addSeparator();
    connect(AddEntry(mnuHelp, "mnuHelpWebSite_0", tr("Orvandel &Home Page")), &QAction::triggered, this,
            [this] { OpenAddress("HomePage", "https://www.example.org/"); });
    connect(AddEntry(mnuHelp, "mnuHelpWebSite_1", tr("Tessary &Support Web")), &QAction::triggered, this,
            [this] { OpenAddress("SupportSite", "https://www.example.org/support"); });
    mnuHelp->addSeparator();
    connect(AddEntry(mnuHelp, "mnuHelpAbout", tr("&About System Administration...")), &QAction::triggered,
            this, [this] {
                AboutDialog dialog(this, showComponents);
                m_application.prompter.RunDialog(dialog);
            });
}

void MainWindow::BuildShortcuts() {
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, [this] {
        const ScreenEntry* entry = ActiveEntry();
        ShowHelp(entry ? entry->screen.helpContext : 0);
    });
}

void MainWindow::ShowNavigation(const Navigation& navigation) {
    m_groups = navigation.ShownGroups();
    albMain->SetGroups(m_groups);
    m_wordIndex.SetGroups(m_groups);
    // While the operator looks around, the screens are learned: nobody waits for it later.
    auto* learning = new QTimer(this);
    connect(learning, &QTimer::timeout, this, [this, learning] {
        if (!m_application.channel.IsBusy() && !m_wordIndex.LearnNext())
            learning->deleteLater();
        learning->setInterval(LearningPause);
    });
    learning->start(BeforeLearning);
    mdiScreens->SetHint(m_groups.isEmpty()
                            ? tr("There is no setting to show.")
                            : tr("Choose a setting at the left, or press Ctrl+K and type its name."));
    ShowRecent();
    if (const ScreenEntry* health = m_application.catalogue.Find("Tools_Health");
        health && health->screen.make)
        ShowHealth(tr("Look over the settings"), {});
}

void MainWindow::BuildFunctionsMenu() {
    mnuFunctions = new QMenu(tr("Func&tions"), this);
    mnuFunctions->setObjectName("mnuFunctions");
    menuBar()->insertMenu(mnuHelp->menuAction(), mnuFunctions);
    for (const NavigationGroup& group : m_groups) {
        QMenu* menu = mnuFunctions->addMenu(group.caption);
        menu->setObjectName("mnuFunctions_" + group.key);
        for (const ScreenEntry& item : group.items) {
            // By key and not by caption: several groups have a "Miscellaneous".
            connect(AddEntry(menu, "mnuFunctions_" + item.key, item.caption), &QAction::triggered, this,
                    [this, key = item.key] { OpenScreen(key); });
        }
    }
}

void MainWindow::SetClusterSelection(const ClusterSelection& selection) {
    m_clusterSelection = selection;
    if (!m_application.profile.CircAccess())
        return;
    auto* mnuFileSelectCluster = new QAction(tr("Select &Cluster..."), this);
    mnuFileSelectCluster->setObjectName("mnuFileSelectCluster");
    mnuFile->insertAction(findChild<QAction*>("mnuFilePreferences"), mnuFileSelectCluster);
    connect(mnuFileSelectCluster, &QAction::triggered, this, &MainWindow::ChangeCluster);
}

void MainWindow::ChangeCluster() {
    // The screens inside the cluster load again: an edit that is open there must not be lost.
    for (auto it = m_windows.begin(); it != m_windows.end(); ++it) {
        const ScreenEntry* entry = m_application.catalogue.Find(it.key());
        Screen* screen = FindScreen(it.key());
        if (!screen || !entry->screen.needsCluster || screen->MayClose())
            continue;
        ActivateWindow(it.value());
        return;
    }
    m_clusterSelection.change();
}

void MainWindow::ShowClusterPanel(const ScreenEntry* entry) {
    const clsCluster* cluster = m_application.clusters.Current();
    const bool shown = entry && entry->screen.needsCluster && cluster && m_application.clusters.Count() >= 2;
    m_status->ShowCluster(shown ? QString(tr("Circ Cluster:  ") + cluster->sClusterName) : QString());
}

void MainWindow::OnClusterNotice() {
    ShowClusterPanel(ActiveEntry());
    const clsCluster* cluster = m_application.clusters.Current();
    const QString id = cluster ? cluster->sClusterID : QString();
    // A new name of the same cluster is no reason for a screen to load again.
    if (std::exchange(m_clusterId, id) == id)
        return;
    for (const QMdiSubWindow* window : mdiScreens->subWindowList())
        if (auto* screen = qobject_cast<Screen*>(window->widget()))
            screen->OnClusterChanged();
}

void MainWindow::ShowWaiting(const QString& text) {
    m_status->ShowWaiting(text);
}

void MainWindow::ShowPlace(const QString& library, const QString& server, const QString& colour) {
    const QColor own(colour);
    m_status->ShowPlace(library + "  (" + server + ')', own);
    fraColour->setVisible(own.isValid());
    if (own.isValid()) {
        QPalette band;
        band.setColor(QPalette::Window, own);
        fraColour->setPalette(band);
    }
    setWindowTitle(ApplicationTitle() + " - " + library + " (" + server + ')');
}

void MainWindow::ShowHelp(int helpContext) {
    if (ShowCompiledHelp(helpContext))
        return;
    if (!frmHelp)
        frmHelp = new HelpWindow(m_application.catalogue, this);
    frmHelp->ShowTopic(helpContext);
}

void MainWindow::OpenAddress(const QString& settingsKey, const QString& otherwise) {
    const QUrl address(UserSettings().value(settingsKey, otherwise).toString());
    if (!address.isValid() || !m_browser(address))
        m_application.prompter.ShowBox(this,
                                       {tr("Unable to open %1 in the web browser.").arg(address.toString())});
}

void MainWindow::closeEvent(QCloseEvent* event) {
    const Box warning{tr("You are about to close the SysAdmin module."), Box::Icon::Information,
                      Box::Buttons::OkCancel};
    const bool ask = !Abort && m_application.prefs.WarnOnClose();
    if ((ask && !m_application.prompter.ShowBox(this, warning)) || !MayCloseScreens()) {
        event->ignore();
        return;
    }
    KeepLayout();
    if (frmHelp)
        frmHelp->close();
    event->accept();
}

bool MainWindow::MayCloseScreens() {
    for (QMdiSubWindow* window : mdiScreens->subWindowList()) {
        auto* screen = qobject_cast<Screen*>(window->widget());
        if (!screen || screen->MayClose())
            continue;
        ActivateWindow(window);
        return false;
    }
    return true;
}

void MainWindow::RestoreLayout() {
    albMain->SetLargeGroups(m_application.prefs.Remembered("LargeIconGroups").toStringList());
    m_navigationWidth = m_application.prefs.Remembered("NavigationWidth", NavigationWidth).toInt();
    ShareRoom();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    ShareRoom();
}

// The navigation gives way to the screens where the window is narrow.
void MainWindow::ShareRoom() {
    const int wanted = m_navigationWidth > 0 ? m_navigationWidth : NavigationWidth;
    const int width = qMin(wanted, qMax(albMain->minimumWidth(), this->width() * 3 / 10));
    splMain->setSizes({width, qMax(1, this->width() - width)});
}

void MainWindow::RestorePlace() {
    if (restoreGeometry(UserSettings().value("WindowGeometry").toByteArray()))
        return;
    const QRect space = QGuiApplication::primaryScreen()->availableGeometry();
    resize(QSize(1240, 800).boundedTo(space.size() * 0.9));
    move(space.center() - rect().center());
}

void MainWindow::KeepLayout() const {
    UserSettings().setValue("WindowGeometry", saveGeometry());
}

} // namespace sysadmin

#include "moc_MainWindow.cpp"
