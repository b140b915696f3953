#include "comm/CommLibrary.h"
#include "comm/ChangePasswordDialog.h"
#include "comm/ModelServer.h"
#include "comm/ProblemLabel.h"
#include "comm/SignOnDialog.h"
#include "core/data/UserSettings.h"
#include "support/ScriptedPrompter.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

class CommLibraryTest : public ::testing::Test {
protected:
    CommLibraryTest() { UserSettings().clear(); }
    ~CommLibraryTest() override { UserSettings().clear(); }

    void Start(const QStringList& arguments = {}) {
        library =
            std::make_unique<CommLibrary>(prompter, CommandLine(), [this](const QString& folder, QString*) {
                opened.append(folder);
                return server.Endpoints();
            });
        library->GetSession().SetCommandLine(arguments);
    }

    // Fills the sign-on dialog in and presses OK once for each password.
    void ExpectSignOn(const QString& operatorId, const QStringList& passwords, bool thenCancel = false) {
        prompter.ExpectDialogResult("frmSignOn", [=, this](QDialog& window) {
            auto& dialog = dynamic_cast<SignOnDialog&>(window);
            EXPECT_EQ(dialog.txtOperator->text(), offeredOperator);
            QCoreApplication::processEvents();
            dialog.txtOperator->setText(operatorId);
            for (const QString& password : passwords) {
                dialog.txtPassword->setText(password);
                QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
            }
            if (thenCancel)
                QTest::mouseClick(dialog.cmdCancel, Qt::LeftButton);
        });
    }

    void ExpectPasswordChange(const QString& oldPassword, const QString& newPassword) {
        prompter.ExpectDialogResult("frmChangePassword", [=](QDialog& window) {
            auto& dialog = dynamic_cast<ChangePasswordDialog&>(window);
            dialog.txtOldPassword->setText(oldPassword);
            dialog.txtNewPassword->setText(newPassword);
            dialog.txtRepeatPassword->setText(newPassword);
            QTest::mouseClick(dialog.cmdOK, Qt::LeftButton);
            if (dialog.isVisible())
                QTest::mouseClick(dialog.cmdCancel, Qt::LeftButton);
        });
    }

    bool SignOn() {
        EXPECT_FALSE(library->PreCheck());
        library->ShowSignOn();
        const bool signedOn = library->GetChannel().SignOn(library->GetSession());
        library->CloseSignOn();
        return signedOn;
    }

    ModelServer server;
    ScriptedPrompter prompter;
    QStringList opened;
    QString offeredOperator;
    std::unique_ptr<CommLibrary> library;
};

TEST_F(CommLibraryTest, SignsOnThroughTheDialogAndRemembersWhoAndWhere) {
    server.SetHello({{"LIB", "Model Library"}});
    Start();
    ExpectSignOn("oper", {"wrong", "secret"});
    ASSERT_TRUE(SignOn());
    EXPECT_TRUE(library->PostSignOn());
    EXPECT_EQ(opened, QStringList{SampleLibraryFolder()});
    EXPECT_EQ(server.Received(), (QStringList{"0 Hello", "0 Hello", "0 SignOn", "0 Hello", "0 SignOn"}))
        << "every try is sealed for the connection as it is then";
    EXPECT_EQ(library->GetSession().OperatorId(), "OPER");
    EXPECT_EQ(library->GetSession().InformationCaption(), "Login &Information...");
    EXPECT_EQ(server.Open(library->EncodePassword("for a request"), wire::PasswordPurpose::Set,
                          library->LastGreeting().nonce),
              "for a request");
    library.reset();
    EXPECT_EQ(server.Received().last(), "0 SignOff");

    Start();
    offeredOperator = "OPER";
    ExpectSignOn("OPER", {}, true);
    EXPECT_FALSE(SignOn()) << "given up";
    EXPECT_TRUE(library->GetSession().OperatorId().isEmpty());

    Start({"--library", "/srv/other", "--operator", "NIGHT"});
    offeredOperator = "NIGHT";
    ExpectSignOn("OPER", {"secret"});
    ASSERT_TRUE(SignOn());
    EXPECT_EQ(opened.last(), "/srv/other");
    Start();
    offeredOperator = "OPER";
    ExpectSignOn("OPER", {"secret"});
    ASSERT_TRUE(SignOn());
    EXPECT_EQ(opened.last(), "/srv/other") << "the last one";
}

TEST_F(CommLibraryTest, ShowsWhoIsSignedOn) {
    server.SetHello({{"LIB", "Model Library"}});
    Start({"--library", "/srv/x"});
    ASSERT_EQ(library->SignOnDirectly("OPER", "secret"), QString());
    library->ShowSignOn();
    ASSERT_TRUE(library->GetChannel().SignOn(library->GetSession()));
    prompter.ExpectDialogResult("frmLoginInformation", [](QDialog& dialog) {
        const auto text = [&](const char* name) { return dialog.findChild<QLabel*>(name)->text(); };
        EXPECT_EQ(text("lblOperator"), "OPER");
        EXPECT_EQ(text("lblOperatorName"), "O. Perator");
        EXPECT_EQ(text("lblLibrary"), "Model Library");
        EXPECT_TRUE(text("lblServer").contains("x"));
        EXPECT_FALSE(text("lblSince").isEmpty() || text("lblConnection").isEmpty());
        dialog.accept();
    });
    library->ShowLoginInformation(nullptr);
    EXPECT_TRUE(prompter.AllShown());
}

TEST_F(CommLibraryTest, APasswordThatMustBeChangedComesFirst) {
    server.SetSignOn({{"CHG", "Y"}});
    Start();
    ASSERT_EQ(library->SignOnDirectly("OPER", "secret"), QString());
    ExpectPasswordChange("wrong", "new");
    EXPECT_FALSE(library->PostSignOn());
    ExpectPasswordChange("secret", "new");
    prompter.ExpectBox("Your password has been changed.", true, Box::Icon::Information);
    EXPECT_TRUE(library->PostSignOn());
    EXPECT_TRUE(library->PostSignOn()) << "once is enough";
}

TEST_F(CommLibraryTest, RemindsOfThePasswordsEnd) {
    for (const auto& [days, sentence] : {std::pair{"0", "Your password expires today."},
                                         {"1", "Your password expires tomorrow."},
                                         {"7", "Your password expires in 7 days."}}) {
        server.SetSignOn({{"WARN", days}});
        Start();
        ASSERT_EQ(library->SignOnDirectly("OPER", "secret"), QString());
        prompter.ExpectBox(QString(sentence) + "\r\n\r\nChange it now?", false, Box::Icon::Question);
        EXPECT_TRUE(library->PostSignOn());
    }
}

TEST_F(CommLibraryTest, ATraceThatCannotBeWrittenEndsTheStart) {
    const QTemporaryDir folder;
    Start({"--trace", folder.filePath("none/trace.jsonl")});
    prompter.ExpectBox("The trace cannot be written to " + folder.filePath("none/trace.jsonl") +
                           ": No such file or directory",
                       true, Box::Icon::Critical);
    EXPECT_TRUE(library->PreCheck());
    Start({"--trace", folder.filePath("trace.jsonl")});
    EXPECT_FALSE(library->PreCheck());
    ASSERT_EQ(library->SignOnDirectly("OPER", "secret"), QString());
    EXPECT_GT(QFileInfo(folder.filePath("trace.jsonl")).size(), 100);
}

} // namespace
} // namespace sysadmin
