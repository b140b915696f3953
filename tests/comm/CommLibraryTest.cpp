#include "comm/CommLibrary.h"
#include "comm/ModelServer.h"
#include "comm/ProblemLabel.h"
#include "comm/SignOnDialog.h"
#include "core/data/UserSettings.h"
#include "support/ScriptedPrompter.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

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

    // Fills the sign-on dialog in and presses OK once for each password; cancels it when there is none.
    void ExpectSignOn(const QString& offered, const QString& operatorId, const QStringList& passwords) {
        prompter.ExpectDialogResult("frmSignOn", [=](QDialog& window) {
            auto& dialog = dynamic_cast<SignOnDialog&>(window);
            EXPECT_EQ(dialog.txtOperator->text(), offered);
            QCoreApplication::processEvents();
            dialog.txtOperator->setText(operatorId);
            for (const QString& password : passwords) {
                dialog.txtPassword->setText(password);
                dialog.cmdOK->click();
            }
            if (passwords.isEmpty())
                dialog.cmdCancel->click();
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
    std::unique_ptr<CommLibrary> library;
};

TEST_F(CommLibraryTest, SignsOnThroughTheDialogAndRemembersWhoAndWhere) {
    server.hello = {{"LIB", "Model Library"}, {"CLR", "red"}};
    Start();
    ExpectSignOn("", "oper", {"wrong", "secret"});
    ASSERT_TRUE(SignOn());
    EXPECT_EQ(library->LibraryColour(), "red");
    EXPECT_TRUE(library->PostSignOn());
    EXPECT_EQ(opened, QStringList{SampleLibraryFolder()});
    EXPECT_EQ(server.Received(), (QStringList{"0 Hello", "0 Hello", "0 SignOn", "0 Hello", "0 SignOn"}))
        << "every try is sealed for the connection as it is then";
    EXPECT_EQ(library->GetSession().OperatorId(), "OPER");
    EXPECT_EQ(server.Open(library->EncodePassword("for a request"), wire::PasswordPurpose::Set,
                          library->LastGreeting().nonce),
              "for a request");
    prompter.ExpectDialogResult("frmLoginInformation", [](QDialog& dialog) {
        const auto text = [&](const char* name) { return dialog.findChild<QLabel*>(name)->text(); };
        EXPECT_EQ(text("lblOperator") + '|' + text("lblOperatorName") + '|' + text("lblLibrary"),
                  "OPER|O. Perator|Model Library");
        EXPECT_FALSE(text("lblServer").isEmpty() || text("lblSince").isEmpty() ||
                     text("lblConnection").isEmpty());
    });
    library->ShowLoginInformation(nullptr);
    library.reset();
    EXPECT_EQ(server.Received().last(), "0 SignOff");

    Start();
    ExpectSignOn("OPER", "OPER", {});
    EXPECT_FALSE(SignOn()) << "given up";
    EXPECT_TRUE(library->GetSession().OperatorId().isEmpty());
    Start({"--library", "/srv/other", "--operator", "NIGHT"});
    ExpectSignOn("NIGHT", "OPER", {"secret"});
    ASSERT_TRUE(SignOn());
    EXPECT_EQ(opened.last(), "/srv/other");
    Start();
    ExpectSignOn("OPER", "OPER", {"secret"});
    ASSERT_TRUE(SignOn());
    EXPECT_EQ(opened.last(), "/srv/other") << "the last one";
}

TEST_F(CommLibraryTest, RemindsOfThePasswordsEnd) {
    for (const auto& [days, sentence] : {std::pair{"0", "Your password expires today."},
                                         {"1", "Your password expires tomorrow."},
                                         {"7", "Your password expires in 7 days."}}) {
        server.signOn = {{"WARN", days}};
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
}

} // namespace
} // namespace sysadmin
