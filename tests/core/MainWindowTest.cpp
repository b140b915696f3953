#include "CoreTest.h"

#include "core/HelpWindow.h"
#include "core/StartUp.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>
#include <QTest>
#include <QTextBrowser>

namespace sysadmin {

namespace {

const QString Vendors = "Acquisitions_VendorTypes";
const QString CatalogMisc = "Catalog_Miscellaneous";
const QString CircMisc = "Circulation_Miscellaneous";
const QString Calendars = "Circ_Calendars";

class MainWindowTest : public CoreTest {
protected:
    MainWindowTest() {
        application.catalogue.Contribute<TestScreen>(Vendors, 50300);
        application.catalogue.Contribute<TestScreen>(CatalogMisc, 1);
        application.catalogue.Contribute<TestScreen>(CircMisc, 2);
        application.catalogue.Contribute<TestScreen>(Calendars, 3, true);
        AnswerRights(AllRights);
        window = StartUp(application, {});
        if (!QTest::qWaitForWindowActive(window.get()))
            ADD_FAILURE() << "the main window does not become active";
    }

    QAction& Entry(const QString& name) { return *window->findChild<QAction*>(name); }
    QString Panel(const QString& name) {
        auto* panel = window->findChild<QLabel*>(name);
        return panel->isVisible() ? panel->text() : QString();
    }
    TestScreen& Open(const QString& key) {
        window->OpenScreen(key);
        return *Shown(key);
    }
    TestScreen* Shown(const QString& key) { return static_cast<TestScreen*>(window->FindScreen(key)); }
    QMdiArea& Area() { return *window->findChild<QMdiArea*>("mdiScreens"); }

    std::unique_ptr<MainWindow> window;
};

TEST_F(MainWindowTest, TheFunctionsMenuStandsSecondAndHoldsWhatTheBarHolds) {
    const QList<QAction*> menus = window->menuBar()->actions();
    ASSERT_EQ(menus.size(), 3);
    EXPECT_EQ(menus[1]->text(), "Func&tions");
    QStringList entries;
    for (const QAction* group : menus[1]->menu()->actions())
        for (const QAction* item : group->menu()->actions())
            entries.append(group->text() + "/" + item->text());
    EXPECT_EQ(entries, QStringList({"Acquisitions/Vendor Types", "Cataloging/Miscellaneous",
                                    "Circulation/Calendars", "Circulation/Miscellaneous"}));
}

TEST_F(MainWindowTest, EntriesOfOneCaptionOpenTheirOwnScreens) {
    Entry("mnuFunctions_" + CircMisc).trigger();
    EXPECT_TRUE(Shown(CircMisc));
    EXPECT_FALSE(Shown(CatalogMisc));
    Entry("mnuFunctions_" + CatalogMisc).trigger();
    EXPECT_EQ(window->ActiveScreen(), Shown(CatalogMisc));
    EXPECT_NE(Shown(CatalogMisc), Shown(CircMisc));
}

TEST_F(MainWindowTest, AScreenIsLoadedOnceBeforeItShowsAndComesBackAsItIs) {
    TestScreen& first = Open(Vendors);
    EXPECT_EQ(first.loads, 1);
    EXPECT_FALSE(first.wasShownAtLoad);
    EXPECT_TRUE(first.isVisible());
    TestScreen& second = Open(CatalogMisc);
    EXPECT_EQ(window->ActiveScreen(), &second);
    EXPECT_EQ(&Open(Vendors), &first);
    EXPECT_EQ(window->ActiveScreen(), &first);
    EXPECT_EQ(first.loads, 1);
    EXPECT_EQ(Area().subWindowList().size(), 2);
}

TEST_F(MainWindowTest, AClosedScreenIsReleasedAndOpensAnew) {
    QPointer<Screen> first = &Open(Vendors);
    Area().closeActiveSubWindow();
    EXPECT_FALSE(Shown(Vendors)) << "a closed screen still counts as open";
    TestScreen& second = Open(Vendors); // before the event loop has deleted the first
    EXPECT_EQ(second.loads, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(Shown(Vendors), &second);
}

TEST_F(MainWindowTest, ScreensAreReachedAndClosedByKeys) {
    Open(Vendors);
    Open(CatalogMisc);
    QTest::keyClick(window->ActiveScreen(), Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyRelease(window.get(), Qt::Key_Control);
    EXPECT_EQ(window->ActiveScreen(), Shown(Vendors));
    EXPECT_EQ(Panel("lblScreen"), "Acquisitions:  Vendor Types");
    QTest::keyClick(window->ActiveScreen(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(Shown(Vendors));
    EXPECT_EQ(window->ActiveScreen(), Shown(CatalogMisc));
}

TEST_F(MainWindowTest, UnknownKeysAndItemsWithoutAScreenOpenNothing) {
    window->OpenScreen("System_Nothing");
    window->OpenScreen("System_Locations");
    EXPECT_TRUE(Area().subWindowList().isEmpty());
}

TEST_F(MainWindowTest, TheStatusBarNamesTheScreenInFront) {
    EXPECT_EQ(Panel("lblScreen"), "");
    Open(Vendors);
    EXPECT_EQ(Panel("lblScreen"), "Acquisitions:  Vendor Types");
    Open(Calendars);
    EXPECT_EQ(Panel("lblScreen"), "Circulation:  Calendars");
    Area().closeActiveSubWindow();
    EXPECT_EQ(Panel("lblScreen"), "Acquisitions:  Vendor Types");
    Area().closeActiveSubWindow();
    EXPECT_EQ(Panel("lblScreen"), "");

    window->ShowWaiting("Waiting for the server ...");
    EXPECT_EQ(Panel("lblActivity"), "Waiting for the server ...");
    window->ShowWaiting({});
    EXPECT_NE(Panel("lblActivity"), "Waiting for the server ...");
}

TEST_F(MainWindowTest, TheClusterPanelShowsOnlyWhereItMatters) {
    Open(Vendors);
    Open(Calendars);
    EXPECT_EQ(Panel("lblCluster"), "") << "no cluster is current";
    application.clusters.Put({"", "Main", "M", "1"});
    application.clusters.SetCurrent("1");
    emit application.notices.CurrentClusterChanged();
    EXPECT_EQ(Panel("lblCluster"), "") << "one cluster is no choice";
    application.clusters.Put({"", "Branch", "B", "2"});
    emit application.notices.CurrentClusterChanged();
    EXPECT_EQ(Panel("lblCluster"), "Circ Cluster:  Main");
    window->OpenScreen(Vendors);
    EXPECT_EQ(Panel("lblCluster"), "") << "the vendor types have no cluster";
    window->OpenScreen(Calendars);
    application.clusters.SetCurrent("2");
    emit application.notices.CurrentClusterChanged();
    EXPECT_EQ(Panel("lblCluster"), "Circ Cluster:  Branch");
}

TEST_F(MainWindowTest, AnotherClusterIsToldToTheScreensAnotherNameIsNot) {
    TestScreen& screen = Open(Calendars);
    application.clusters.Put({"", "Main", "M", "1"});
    application.clusters.SetCurrent("1");
    emit application.notices.CurrentClusterChanged();
    EXPECT_EQ(screen.clusterChanges, 1);
    application.clusters.Put({"", "Main Library", "M", "1"});
    emit application.notices.CurrentClusterChanged();
    EXPECT_EQ(screen.clusterChanges, 1);
}

TEST_F(MainWindowTest, AScreenInsideAClusterOpensOnceOneIsChosen) {
    int asked = 0;
    bool answer = false;
    window->SetClusterSelection({.choose =
                                     [&] {
                                         ++asked;
                                         application.clusters.Put({"", "Main", "M", "1"});
                                         application.clusters.SetCurrent(answer ? "1" : "");
                                         return answer;
                                     },
                                 .change = [&] { asked += 10; }});
    window->OpenScreen(Calendars);
    EXPECT_EQ(Shown(Calendars), nullptr) << "the operator gave up";
    Open(Vendors);
    EXPECT_EQ(asked, 1) << "other screens do not ask";
    answer = true;
    TestScreen& screen = Open(Calendars);
    window->OpenScreen(Calendars);
    EXPECT_EQ(asked, 2);

    screen.mayClose = false;
    Entry("mnuFileSelectCluster").trigger();
    EXPECT_EQ(asked, 2) << "an edit inside the cluster is open";
    screen.mayClose = true;
    Shown(Vendors)->mayClose = false;
    Entry("mnuFileSelectCluster").trigger();
    EXPECT_EQ(asked, 12) << "an edit elsewhere does not matter";
    Shown(Vendors)->mayClose = true;
}

TEST_F(MainWindowTest, ClosesAtOnceUnlessTheOperatorWantsAWarning) {
    application.prefs.SetWarnOnClose(true);
    prompter.ExpectBox("You are about to close the SysAdmin module.", false, Box::Icon::Information,
                       "System Administration");
    Entry("mnuFileExit").trigger();
    EXPECT_TRUE(window->isVisible());

    prompter.ExpectBox("You are about to close the SysAdmin module.", true);
    Entry("mnuFileExit").trigger();
    EXPECT_FALSE(window->isVisible());

    window->show();
    window->Abort = true;
    EXPECT_TRUE(window->close());
    window->Abort = false;
    window->show();
    application.prefs.SetWarnOnClose(false);
    EXPECT_TRUE(window->close());
}

TEST_F(MainWindowTest, AnEditInProgressKeepsScreenAndWindow) {
    TestScreen& editing = Open(Vendors);
    TestScreen& other = Open(CatalogMisc);
    editing.mayClose = false;
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->ActiveScreen(), &editing) << "the screen that holds the window open is not in front";
    EXPECT_EQ(Shown(CatalogMisc), &other) << "a refused close has closed another screen";

    emit window->findChild<QTabBar*>("tabScreens")->tabCloseRequested(0);
    EXPECT_EQ(Shown(Vendors), &editing);
    editing.mayClose = true;
    editing.closeChecks = 0;
    EXPECT_TRUE(window->close());
    EXPECT_EQ(editing.closeChecks, 1) << "the operator is asked more than once";
}

TEST_F(MainWindowTest, TheFileMenuGoesToTheCommunicationLibrary) {
    comm.calls.clear();
    Entry("mnuFileLogin").trigger();
    Entry("mnuFileChangePassword").trigger();
    EXPECT_EQ(comm.calls, QStringList({"ShowLoginInformation", "ChangePassword"}));
    prompter.ExpectDialog("frmPrefs", [](QDialog&) { return false; });
    Entry("mnuFilePreferences").trigger();
    prompter.ExpectDialog("frmAbout", [](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QLabel*>("lblVersion")->text().contains(SYSADMIN_VERSION));
        return true;
    });
    Entry("mnuHelpAbout").trigger();
}

TEST_F(MainWindowTest, WebAddressesAreConfiguration) {
    QStringList opened;
    bool works = true;
    window->SetBrowser([&](const QUrl& address) {
        opened.append(address.toString());
        return works;
    });
    Entry("mnuHelpWebSite_1").trigger();
    UserSettings().setValue("HomePage", "https://library.example.net/home");
    Entry("mnuHelpWebSite_0").trigger();
    EXPECT_EQ(opened, QStringList({"https://www.example.org/support", "https://library.example.net/home"}));
    works = false;
    prompter.ExpectBox("Unable to open https://library.example.net/home in the web browser.");
    Entry("mnuHelpWebSite_0").trigger();
}

TEST_F(MainWindowTest, F1OpensTheTopicOfTheScreenInFront) {
    const auto topic = [&] { return window->findChild<QTextBrowser*>("txtTopic")->source().fileName(); };
    Entry("mnuHelpTopics").trigger();
    EXPECT_EQ(topic(), "contents.md");
    auto* contents = window->findChild<QTextBrowser*>("txtTopic");
    EXPECT_TRUE(contents->toPlainText().contains("Vendor Types"));
    EXPECT_FALSE(contents->toPlainText().contains("Calendars")) << "a screen without a topic is listed";

    Open(Vendors);
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window->ActiveScreen(), Qt::Key_F1);
    EXPECT_EQ(topic(), "50300.md");
    window->ShowHelp(999999);
    EXPECT_EQ(topic(), "contents.md");
    window->close();
    EXPECT_FALSE(window->findChild<HelpWindow*>("frmHelp")->isVisible()) << "the help outlives the program";
}

} // namespace

} // namespace sysadmin
