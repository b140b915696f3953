#include "CoreTest.h"

#include "core/StartUp.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>

namespace sysadmin {

namespace {

class StartUpTest : public CoreTest {
protected:
    StartUpTest() { application.catalogue.Contribute<TestScreen>("Acquisitions_VendorTypes", 50300); }

    /// Starts up and checks that nothing of the window is left.
    void ExpectRefused() {
        EXPECT_EQ(StartUp(application, {}), nullptr);
        EXPECT_EQ(application.mainWindow, nullptr);
        for (const QWidget* window : QApplication::topLevelWidgets())
            EXPECT_NE(window->objectName(), "frmMain");
        EXPECT_TRUE(channel.AllAnswered());
    }
};

TEST_F(StartUpTest, TakesTheStepsInOrder) {
    AnswerRights(AllRights);
    channel.Answer("LstMarcFieldOrderRules", 0,
                   {{"ORDRULE", "7"},
                    {"ORDNAME", "Tag"},
                    {"ORDREP", "N"},
                    {"ORDPARM", "N"},
                    {"ORDRULE", "9"},
                    {"ORDNAME", "Field"},
                    {"ORDREP", "Y"},
                    {"ORDPARM", "Y"},
                    {"ORDLABL", "Specific Field"},
                    {"ORDTYPE", "3C"}});
    comm.session.informationCaption = "Who &am I...";
    UserSettings().setValue("TESTER/WarnOnClose", "True");
    const std::unique_ptr<MainWindow> window = StartUp(application, {"--operator", "X", "/nocheck"});
    ASSERT_TRUE(window);
    EXPECT_EQ(comm.session.commandLine, QStringList({"--operator", "X", "/nocheck"}));
    EXPECT_EQ(comm.calls, QStringList({"PreCheck", "ShowSignOn", "CloseSignOn", "PostSignOn"}));
    EXPECT_EQ(channel.signOns, 1);
    EXPECT_EQ(channel.SentNames(), QStringList({"SAInit", "CheckMasterProfile", "LstMarcFieldOrderRules"}));
    ASSERT_EQ(application.orderingRules.All().size(), 2);
    const OrderingRule* field = application.orderingRules.Find(9);
    EXPECT_TRUE(field && field->repeatable && field->takesParameter && field->IsSpecificField());
    EXPECT_EQ(application.orderingRules.Find(8), nullptr);
    EXPECT_EQ(application.orderingRules.NextTemporaryId(), -2);
    EXPECT_EQ(application.orderingRules.NextTemporaryId(), -3);
    EXPECT_EQ(application.mainWindow, window.get());
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(application.prefs.WarnOnClose());
    EXPECT_EQ(window->findChild<QAction*>("mnuFileLogin")->text(), "Who &am I...");
    EXPECT_TRUE(window->findChild<QMenu*>("mnuFunctions"));
    EXPECT_EQ(window->findChild<QLabel*>("lblOperator")->text(), "TESTER");
}

TEST_F(StartUpTest, EveryStepMayEndItBeforeTheNextOne) {
    comm.preCheckResult = true;
    ExpectRefused();
    EXPECT_EQ(comm.calls, QStringList({"PreCheck"}));
    EXPECT_EQ(channel.signOns, 0);
    comm.preCheckResult = false;
    comm.calls.clear();
    channel.signOnResult = false;
    ExpectRefused();
    EXPECT_EQ(comm.calls, QStringList({"PreCheck", "ShowSignOn", "CloseSignOn"}));
    channel.signOnResult = true;
    comm.postSignOnResult = false;
    ExpectRefused();
    EXPECT_TRUE(channel.sent.isEmpty());
}

TEST_F(StartUpTest, WithoutAProfileOrRightsItIsRefused) {
    for (const bool firstFails : {true, false}) {
        channel.Answer("SAInit", firstFails ? 5 : 0, {{"Sec", "Y"}});
        channel.Answer("CheckMasterProfile", firstFails ? 0 : 5);
        prompter.ExpectBox("Failed to load security profile.", true, Box::Icon::Critical,
                           "System Administration");
        ExpectRefused();
    }
    AnswerRights({"PRB"});
    prompter.ExpectBox("You are not authorized to use System Adminstration.", true, Box::Icon::Critical,
                       "System Administration");
    ExpectRefused();
}

TEST_F(StartUpTest, RightsDecideAndNotWhichScreensAreThere) {
    AnswerRights({"SysDf"});
    channel.Answer("LstMarcFieldOrderRules", 5); // nobody is told
    const std::unique_ptr<MainWindow> window = StartUp(application, {});
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->findChild<QMenu*>("mnuFunctions")->actions().isEmpty());
}

/// Looks at the main window from within the steps that run while it stands.
class LookingCommunication : public FakeCommunication {
public:
    using FakeCommunication::FakeCommunication;
    std::function<void()> look;

    void ShowSignOn() override { look(); }
    void CloseSignOn() override { look(); }
};

TEST_F(StartUpTest, TheWindowShowsBetweenSignOnAndTheClosingOfItsDialog) {
    LookingCommunication looking(channel);
    Application other(looking, prompter);
    QList<bool> shown;
    looking.look = [&] { shown.append(other.mainWindow && other.mainWindow->isVisible()); };
    AnswerRights(AllRights);
    channel.Answer("LstMarcFieldOrderRules", 0);
    EXPECT_TRUE(StartUp(other, {}));
    EXPECT_EQ(shown, QList<bool>({false, true}));
}

} // namespace

} // namespace sysadmin
