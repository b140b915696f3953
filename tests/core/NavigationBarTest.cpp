#include "CoreTest.h"

#include "core/NavigationBar.h"
#include "core/NavigationDelegate.h"
#include "core/StartUp.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QSplitter>
#include <QTest>
#include <QTreeWidget>

namespace sysadmin {

namespace {

class NavigationBarTest : public CoreTest {
protected:
    NavigationBarTest() {
        for (const ScreenEntry& entry : QList<ScreenEntry>(application.catalogue.Entries()))
            application.catalogue.Contribute<TestScreen>(entry.key, 1);
        Start("TESTER");
    }

    void Start(const QString& operatorId) {
        if (window)
            window->close();
        window.reset();
        comm.session.operatorId = operatorId;
        AnswerRights(AllRights);
        channel.Answer("LstMarcFieldOrderRules", 0);
        window = StartUp(application, {});
        window->resize(1200, 900);
        QTest::qWait(0);
    }

    NavigationBar& Bar() { return *window->findChild<NavigationBar*>("albMain"); }
    QTreeWidget& Tree() { return *window->findChild<QTreeWidget*>("tvwScreens"); }
    QTreeWidgetItem* Item(const QString& key) {
        for (QTreeWidgetItemIterator it(&Tree()); *it; ++it)
            if ((*it)->data(0, NavigationDelegate::KeyRole).toString() == key)
                return *it;
        throw std::runtime_error("no item " + key.toStdString());
    }
    void Click(const QString& key) {
        Tree().scrollToItem(Item(key));
        const QRect place = Tree().visualItemRect(Item(key));
        ASSERT_FALSE(place.isEmpty()) << key.toStdString() << " does not show";
        QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, place.center());
    }
    QStringList ShownItems() {
        QStringList keys;
        for (QTreeWidgetItem* item = Tree().topLevelItem(0); item; item = Tree().itemBelow(item))
            if (item->parent() && !item->isHidden())
                keys.append(item->data(0, NavigationDelegate::KeyRole).toString());
        return keys;
    }
    bool IsActive(const QString& key) {
        return window->ActiveScreen() && window->ActiveScreen() == window->FindScreen(key);
    }

    std::unique_ptr<MainWindow> window;
};

TEST_F(NavigationBarTest, OpensOneGroupAtATimeAndFollowsTheScreenInFront) {
    EXPECT_EQ(Bar().CurrentGroup(), "Acquisitions");
    Click("Search");
    EXPECT_EQ(ShownItems().size(), 12);
    EXPECT_EQ(Item("Search_SearchDefinitions")->text(0), "Indexes - Headings & Left-Anchored Definitions");
    Click("Search_HeadingFilter");
    EXPECT_TRUE(IsActive("Search_HeadingFilter"));
    window->OpenScreen("Security_Options");
    EXPECT_EQ(Bar().CurrentGroup(), "Security");
    EXPECT_TRUE(Item("Security_Options")->isSelected() && !Item("Search_HeadingFilter")->isSelected());
}

TEST_F(NavigationBarTest, WorksByKeyboard) {
    Tree().setFocus();
    Tree().setCurrentItem(Item("Cataloging"));
    QTest::keyClick(&Tree(), Qt::Key_Return);
    EXPECT_EQ(Bar().CurrentGroup(), "Cataloging");
    QTest::keyClick(&Tree(), Qt::Key_Down);
    EXPECT_FALSE(window->ActiveScreen()) << "moving along the items opens them";
    QTest::keyClick(&Tree(), Qt::Key_Down);
    QTest::keyClick(&Tree(), Qt::Key_Space);
    EXPECT_TRUE(IsActive("Catalog_BibDuplicateDetection"));
}

TEST_F(NavigationBarTest, FindsItemsAcrossGroups) {
    auto& find = *window->findChild<QLineEdit*>("txtFindScreen");
    QTest::keyClicks(&find, "patron g");
    EXPECT_EQ(ShownItems(), QStringList({"Circulation_PatronGroups", "Circulation_PatronGroupMapping"}));
    QTest::keyClick(&find, Qt::Key_Return);
    EXPECT_TRUE(IsActive("Circulation_PatronGroups"));
    EXPECT_EQ(find.text(), "");
    QTest::keyClicks(&find, "web serv");
    EXPECT_EQ(ShownItems(), QStringList({"WS_LoginSummary", "WS_SelfRegistration", "WS_Configuration"}));
    QTest::keyClick(&find, Qt::Key_Escape);
    EXPECT_EQ(ShownItems().size(), 11) << "the open group is not back";
    QTest::keyClicks(&find, "call slip rules"); // the title of the window
    EXPECT_EQ(ShownItems(), QStringList{"CallSlip_Rules"});
    QTest::keyClick(&find, Qt::Key_Escape);
    QTest::keyClicks(&find, "nothing like it");
    EXPECT_TRUE(ShownItems().isEmpty());
    QTest::keyClick(&find, Qt::Key_Return);
    EXPECT_TRUE(IsActive("Circulation_PatronGroups"));
}

TEST_F(NavigationBarTest, EachGroupHasItsIconStyleRememberedWithTheWidthPerOperator) {
    const auto height = [&](const char* key) { return Tree().visualItemRect(Item(key)).height(); };
    Click("Cataloging");
    const int small = height("Catalog_Miscellaneous");
    window->findChild<QAction*>("mnuPopupLarge")->trigger();
    EXPECT_GT(height("Catalog_Miscellaneous"), small + 16);
    Click("Circulation");
    EXPECT_EQ(height("Circulation_Miscellaneous"), small);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 60}, Tree().mapToGlobal(QPoint(10, 60)));
    QCoreApplication::sendEvent(&Tree(), &event);
    window->findChild<QMenu*>("mnuPopup")->hide();
    EXPECT_FALSE(window->findChild<QAction*>("mnuPopupLarge")->isChecked());
    auto* splitter = window->findChild<QSplitter*>("splMain");
    splitter->setSizes({345, 855});
    emit splitter->splitterMoved(345, 1); // as the operator's dragging does
    splitter->setSizes({200, 1000});      // squeezed, not chosen
    Start("OTHER");
    EXPECT_TRUE(Bar().LargeGroups().isEmpty());
    EXPECT_NE(Bar().width(), 345);
    Start("TESTER");
    EXPECT_EQ(Bar().LargeGroups(), QStringList({"Cataloging"}));
    EXPECT_NEAR(Bar().width(), 345, 1);
    Click("Cataloging");
    window->findChild<QAction*>("mnuPopupSmall")->trigger();
    EXPECT_EQ(height("Catalog_Miscellaneous"), small);
}

} // namespace

} // namespace sysadmin
