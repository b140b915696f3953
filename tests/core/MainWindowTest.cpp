#include "CoreTest.h"

#include "core/HelpWindow.h"
#include "core/StartUp.h"

#include <QAction>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

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
        channel.Answer("LstMarcFieldOrderRules", 0);
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
    /// Adds the cluster or renames it; `current` is the id of the one worked in.
    void PutCluster(const clsCluster& cluster, const QString& current) {
        application.clusters.Put(cluster);
        application.clusters.SetCurrent(current);
        emit application.notices.CurrentClusterChanged();
    }
    QMdiArea& Area() { return *window->findChild<QMdiArea*>("mdiScreens"); }

    std::unique_ptr<MainWindow> window;
};

TEST_F(MainWindowTest, TheFunctionsMenuStandsSecondAndOpensTheScreensOfItsEntries) {
    const QList<QAction*> menus = window->menuBar()->actions();
    EXPECT_EQ(menus.value(1)->text(), "Func&tions");
    QStringList entries;
    for (const QAction* group : menus.value(1)->menu()->actions())
        for (const QAction* item : group->menu()->actions())
            entries.append(group->text() + "/" + item->text());
    EXPECT_EQ(entries, QStringList({"Acquisitions/Vendor Types", "Cataloging/Miscellaneous",
                                    "Circulation/Calendars", "Circulation/Miscellaneous"}));
    Entry("mnuFunctions_" + CircMisc).trigger();
    EXPECT_TRUE(Shown(CircMisc) && !Shown(CatalogMisc));
    Entry("mnuFunctions_" + CatalogMisc).trigger();
    EXPECT_EQ(window->ActiveScreen(), Shown(CatalogMisc));
    window->OpenScreen("System_Nothing");
    window->OpenScreen("System_Locations");
    EXPECT_EQ(Area().subWindowList().size(), 2) << "an unknown key or an item without a screen opened one";
}

TEST_F(MainWindowTest, AScreenIsLoadedOnceBeforeItShowsAndReleasedWhenClosed) {
    QPointer<TestScreen> first = &Open(Vendors);
    EXPECT_TRUE(first->isVisible() && !first->wasShownAtLoad);
    Open(CatalogMisc);
    EXPECT_EQ(&Open(Vendors), first);
    EXPECT_EQ(window->ActiveScreen(), first);
    EXPECT_EQ(first->loads, 1);
    Area().closeActiveSubWindow();
    EXPECT_FALSE(Shown(Vendors)) << "a closed screen still counts as open";
    TestScreen& second = Open(Vendors); // before the event loop has deleted the first
    EXPECT_EQ(second.loads, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(Shown(Vendors), &second);
}

TEST_F(MainWindowTest, ScreensAreReachedAndClosedByKeysAndTheStatusBarFollows) {
    EXPECT_EQ(Panel("lblScreen"), "");
    Open(Vendors);
    Open(Calendars);
    EXPECT_EQ(Panel("lblScreen"), "Circulation:  Calendars");
    QTest::keyClick(window->ActiveScreen(), Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyRelease(window.get(), Qt::Key_Control);
    EXPECT_EQ(window->ActiveScreen(), Shown(Vendors));
    EXPECT_EQ(Panel("lblScreen"), "Acquisitions:  Vendor Types");
    QTest::keyClick(window->ActiveScreen(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(Shown(Vendors));
    EXPECT_EQ(Panel("lblScreen"), "Circulation:  Calendars");
    Area().closeActiveSubWindow();
    EXPECT_EQ(Panel("lblScreen"), "");
}

TEST_F(MainWindowTest, TheCurrentClusterIsShownWhereItMattersAndToldToTheScreens) {
    Open(Vendors);
    TestScreen& screen = Open(Calendars);
    EXPECT_EQ(Panel("lblCluster"), "") << "no cluster is current";
    PutCluster({"", "Main", "M", "1"}, "1");
    EXPECT_EQ(Panel("lblCluster"), "") << "one cluster is no choice";
    EXPECT_EQ(screen.clusterChanges, 1);
    PutCluster({"", "Branch", "B", "2"}, "1");
    EXPECT_EQ(Panel("lblCluster"), "Circ Cluster:  Main");
    PutCluster({"", "Main Library", "M", "1"}, "1");
    EXPECT_EQ(screen.clusterChanges, 1) << "another name is no other cluster";
    window->OpenScreen(Vendors);
    EXPECT_EQ(Panel("lblCluster"), "") << "the vendor types have no cluster";
    window->OpenScreen(Calendars);
    PutCluster({"", "Branch", "B", "2"}, "2");
    EXPECT_EQ(Panel("lblCluster"), "Circ Cluster:  Branch");
    EXPECT_EQ(screen.clusterChanges, 2);
}

TEST_F(MainWindowTest, AScreenInsideAClusterOpensOnceOneIsChosen) {
    int asked = 0;
    bool answer = false;
    window->SetClusterSelection({.choose =
                                     [&] {
                                         ++asked;
                                         PutCluster({"", "Main", "M", "1"}, answer ? "1" : "");
                                         return answer;
                                     },
                                 .change = [&] { asked += 10; }});
    window->OpenScreen(Calendars);
    EXPECT_EQ(Shown(Calendars), nullptr) << "the operator gave up";
    TestScreen& elsewhere = Open(Vendors);
    EXPECT_EQ(asked, 1) << "other screens do not ask";
    answer = true;
    TestScreen& screen = Open(Calendars);
    window->OpenScreen(Calendars);
    EXPECT_EQ(asked, 2);
    for (TestScreen* editing : {&screen, &elsewhere}) {
        editing->mayClose = false;
        Entry("mnuFileSelectCluster").trigger();
        EXPECT_EQ(asked, editing == &screen ? 2 : 12) << "an edit inside the cluster keeps it, no other does";
        editing->mayClose = true;
    }
}

TEST_F(MainWindowTest, ClosesAtOnceUnlessTheOperatorWantsAWarning) {
    application.prefs.SetWarnOnClose(true);
    for (const bool answer : {false, true}) {
        prompter.ExpectBox("You are about to close the SysAdmin module.", answer, Box::Icon::Information,
                           "System Administration");
        Entry("mnuFileExit").trigger();
        EXPECT_EQ(window->isVisible(), !answer);
    }
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

TEST_F(MainWindowTest, WhatIsNotSavedIsMarkedAndWhatWasDoneIsSaid) {
    TestScreen& screen = Open(Vendors);
    screen.setWindowTitle("Vendors & Agents");
    const auto tab = [this] { return window->findChild<QTabBar*>("tabScreens")->tabText(0); };
    for (const bool unsaved : {true, false}) {
        screen.unsaved = unsaved;
        emit screen.UnsavedChanged();
        EXPECT_EQ(tab(), (unsaved ? QString(QChar(0x25CF)) + " " : QString()) + "Vendors && Agents");
    }
    emit application.notices.Done("Saved Bookseller");
    EXPECT_EQ(Panel("lblActivity"), "Saved Bookseller");
    window->ShowWaiting("Waiting ...");
    EXPECT_EQ(Panel("lblActivity"), "Waiting ...");
    window->ShowWaiting({});
    EXPECT_EQ(Panel("lblActivity"), "Saved Bookseller") << "a wait took the words away";
}

TEST_F(MainWindowTest, WhatStandsOnScreensIsFoundAndGoneTo) {
    auto& box = *window->findChild<QLineEdit*>("txtFindScreen");
    const auto& nothing = *window->findChild<QLabel*>("lblNothingFound");
    box.setText("retain trace");
    EXPECT_TRUE(nothing.isHidden());
    QTest::keyClick(&box, Qt::Key_Return);
    ASSERT_TRUE(window->ActiveScreen());
    EXPECT_EQ(static_cast<TestScreen*>(window->ActiveScreen())->wentTo, "fpRetain");
    EXPECT_EQ(box.text(), "");
    // Records are asked for once nobody types: before, it is not known that there is nothing.
    channel.Answer("FndRec", 0);
    box.setText("xyzzy");
    EXPECT_TRUE(nothing.isHidden());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !nothing.isHidden(); }));
    EXPECT_EQ(channel.LastSent("FndRec").Value("Txt"), "xyzzy");
    channel.Answer("FndRec", 0,
                   {{"Sbj", "Tst"}, {"UK", "7"}, {"UN", "Xyzzy Hall"}, {"UT", "Nm"}, {"UV", "Xyzzy Hall"}});
    box.setText("xyzzy h");
    auto& found = *window->findChild<QTreeWidget*>("tvwScreens");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !found.findItems("Xyzzy Hall", Qt::MatchExactly | Qt::MatchRecursive).isEmpty(); }));
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(static_cast<TestScreen*>(window->ActiveScreen())->wentTo, "Tst 7 txtName");
    // Enter may come before the records.
    channel.Answer("FndRec", 0, {{"Sbj", "Tst"}, {"UK", "8"}, {"UN", "Xyzzy Hall"}, {"UT", ""}, {"UV", "8"}});
    box.setText("xyzzy ha");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return static_cast<TestScreen*>(window->ActiveScreen())->wentTo == u"Tst 8 "; }));
    box.setText("vendor types");
    EXPECT_TRUE(nothing.isHidden());
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(window->ActiveScreen(), Shown(Vendors));

    // The empty window offers what was used last, and what may be used still.
    Area().closeAllSubWindows();
    QCoreApplication::processEvents();
    window->findChild<QAbstractButton*>("cmdRecent_" + Vendors)->click();
    EXPECT_EQ(window->ActiveScreen(), Shown(Vendors));
}

TEST_F(MainWindowTest, WebAddressesAreConfiguration) {
    QStringList opened;
    window->SetBrowser([&](const QUrl& address) {
        opened.append(address.toString());
        return opened.size() < 3;
    });
    UserSettings().setValue("HomePage", "https://library.example.net/home");
    Entry("mnuHelpWebSite_1").trigger();
    Entry("mnuHelpWebSite_0").trigger();
    EXPECT_EQ(opened, QStringList({"https://www.example.org/support", "https://library.example.net/home"}));
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
