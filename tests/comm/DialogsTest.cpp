#include "comm/ChangePasswordDialog.h"
#include "comm/ModelServer.h"
#include "comm/PasswordEncoder.h"
#include "comm/ProblemLabel.h"
#include "comm/SignOnDialog.h"
#include "comm/WireChannel.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

class ScriptedAttempts : public SignOnAttempts {
public:
    QStringList greeted; // where
    QStringList tried;   // who, with which password, where
    Greeting greeting;
    QString problem; // of the next attempts
    bool changed = false;

    static QString Where(const ServerChoice& choice) {
        return choice.server ? choice.server->Text() : choice.library;
    }
    Greeting Greet(const ServerChoice& choice) override {
        greeted.append(Where(choice));
        return greeting;
    }
    const Greeting& LastGreeting() const override { return greeting; }
    QString TrySignOn(const ServerChoice& choice, const QString& operatorId, QString& password) override {
        tried.append(operatorId + "/" + password + "@" + Where(choice));
        return problem;
    }
    bool CertificateChanged() const override { return changed; }
    bool AcceptCertificate() override {
        changed = false;
        greeting.problem.clear();
        return true;
    }
};

class SignOnDialogTest : public ::testing::Test {
protected:
    void Show(const ServerChoice& choice, const QString& operatorId = "SYSADMIN") {
        dialog = std::make_unique<SignOnDialog>(attempts, choice, operatorId);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        QCoreApplication::processEvents();
    }
    // What the dialog says after OK was pressed.
    QString ProblemAfterOK() {
        dialog->cmdOK->click();
        return Problem();
    }
    QString Problem() const {
        return dialog->lblProblem->isVisible() ? dialog->lblProblem->text() : QString();
    }

    ScriptedAttempts attempts;
    std::unique_ptr<SignOnDialog> dialog;
};

TEST_F(SignOnDialogTest, GreetsWhatItShowsAndTriesToSignOn) {
    attempts.greeting = {{}, "key", "nonce", "City Library", "Authorised\r\nuse only", "1.0", "Try SYSADMIN"};
    Show({{}, "/srv/library"});
    EXPECT_EQ(attempts.greeted, QStringList{"/srv/library"});
    EXPECT_EQ(dialog->lblLibraryName->text(), "City Library");
    EXPECT_TRUE(dialog->txtWarning->isVisible());
    EXPECT_EQ(dialog->txtWarning->toPlainText(), "Authorised\nuse only");
    EXPECT_EQ(dialog->lblHint->text(), "Try SYSADMIN");
    EXPECT_EQ(dialog->focusWidget(), dialog->txtPassword) << "the operator is known";
    QTest::keyClicks(dialog->txtPassword, "secret");
    QTest::keyClick(dialog->txtPassword, Qt::Key_Return);
    EXPECT_EQ(attempts.tried, QStringList{"SYSADMIN/secret@/srv/library"});
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(dialog->txtPassword->text().isEmpty());
}

TEST_F(SignOnDialogTest, StaysOpenAndSaysWhatIsWrong) {
    Show({ServerAddress{"h", 1}, {}}, {});
    EXPECT_EQ(dialog->focusWidget(), dialog->txtOperator);
    EXPECT_FALSE(dialog->txtWarning->isVisible() || dialog->lblHint->isVisible());
    EXPECT_EQ(ProblemAfterOK(), "Enter the operator id.");
    QTest::keyClicks(dialog->txtOperator, " circ ");
    EXPECT_EQ(ProblemAfterOK(), "Enter the password.");
    EXPECT_EQ(dialog->focusWidget(), dialog->txtPassword);
    EXPECT_TRUE(attempts.tried.isEmpty());

    attempts.problem =
        "Not right, and the reason is a long one that needs more than a line of the dialog to be told.";
    QTest::keyClicks(dialog->txtPassword, "wrong");
    const int height = dialog->height();
    EXPECT_EQ(ProblemAfterOK(), attempts.problem);
    EXPECT_EQ(attempts.tried, QStringList{"circ/wrong@h:1"});
    EXPECT_GT(dialog->height(), height) << "the dialog grows with the text";
    EXPECT_TRUE(dialog->isVisible() && dialog->txtPassword->text().isEmpty());
    EXPECT_EQ(dialog->focusWidget(), dialog->txtPassword);
    attempts.greeting.problem = attempts.problem = "Nobody answers.";
    QTest::keyClicks(dialog->txtPassword, "secret");
    EXPECT_EQ(ProblemAfterOK(), attempts.problem);
    EXPECT_EQ(dialog->txtPassword->text(), "secret") << "no server has looked at it";
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(SignOnDialogTest, AnotherServerIsGreetedWhenItsAddressIsComplete) {
    attempts.greeting.libraryName = "First";
    Show({{}, "/srv/library"});
    EXPECT_TRUE(dialog->txtFolder->isVisible() && !dialog->txtServer->isVisible());
    QTest::keyClick(dialog->cboLibrary, Qt::Key_Down);
    EXPECT_TRUE(dialog->txtServer->isVisible() && !dialog->txtFolder->isVisible());
    EXPECT_EQ(dialog->focusWidget(), dialog->txtServer);
    EXPECT_EQ(dialog->lblLibraryName->text(), "System Administration")
        << "nobody answers for an empty address";
    QTest::keyClicks(dialog->txtServer, "one two");
    EXPECT_EQ(ProblemAfterOK(), "Enter the server as host or host:port.");

    attempts.greeting.libraryName = "Second";
    attempts.greeting.problem = "changed";
    attempts.changed = true;
    dialog->txtServer->setText("second:7000");
    QTest::keyClick(dialog->txtServer, Qt::Key_Tab);
    EXPECT_EQ(Problem(), "changed");
    ASSERT_TRUE(dialog->cmdAcceptCertificate->isVisible());
    dialog->cmdAcceptCertificate->click();
    EXPECT_EQ(attempts.greeted, (QStringList{"/srv/library", "second:7000", "second:7000"}));
    EXPECT_EQ(Problem(), QString());
    EXPECT_FALSE(attempts.changed || dialog->cmdAcceptCertificate->isVisible());
    EXPECT_EQ(dialog->lblLibraryName->text(), "Second");
}

TEST(ChangePasswordDialog, ChecksBeforeItAsksAndExplainsEveryRefusal) {
    QStringList changes;
    qint16 status = 0;
    ChangePasswordDialog dialog("Because.", "Rules.",
                                [&](const QString& oldPassword, const QString& newPassword) {
                                    changes.append(oldPassword + ">" + newPassword);
                                    return status;
                                });
    dialog.show();
    const auto attempt = [&](const QString& oldPassword, const QString& newPassword,
                             const QString& repeated) {
        dialog.txtOldPassword->setText(oldPassword);
        dialog.txtNewPassword->setText(newPassword);
        dialog.txtRepeatPassword->setText(repeated);
        dialog.cmdOK->click();
        return dialog.lblProblem->text();
    };
    EXPECT_TRUE(attempt("", "new", "new").contains("old password"));
    EXPECT_TRUE(attempt("old", "", "").contains("new password"));
    EXPECT_TRUE(attempt("old", "new", "New").contains("repeated"));
    EXPECT_EQ(dialog.txtOldPassword->text(), "old") << "what was right stays";
    EXPECT_TRUE(changes.isEmpty());
    const std::pair<qint16, const char*> refusals[] = {
        {11, "The old password is not right. (After several wrong ones it is looked at again only after a "
             "while.)"},
        {110, "This is a password of the sample library, and everybody knows it. Choose another one."},
        {107, "Password the same as a previous password(s) -- Please change password again."},
        {108, "Minimum age violation (can't change password yet)"},
        {109, "The new password does not keep to the rules for passwords."},
        {12, "You may not change your password. Ask a security administrator."},
        {1, "Communications Failure"},
    };
    for (const auto& [refused, text] : refusals) {
        status = refused;
        EXPECT_EQ(attempt("old", "new", "new"), text);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(QString(dialog.txtOldPassword->text() + dialog.txtNewPassword->text()).isEmpty());
    }
    status = 0;
    attempt("old", "new", "new");
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(changes.count("old>new"), 8);
}

TEST(PasswordEncoder, SealsToTheServerOnly) {
    ModelServer server;
    ModelServer other;
    ModelServer::Connection connection;
    const std::optional<wire::Reply> hello = server.Handle(connection, {0, "Hello", {}});
    const auto key = QByteArray::fromBase64(wire::FirstValue(hello->fields, "PK").toLatin1());
    const PasswordEncoder encoder(key, connection.nonce);
    ASSERT_TRUE(encoder.IsUsable());
    using Purpose = wire::PasswordPurpose;
    const QString sealed = encoder.Encode("pässwörd 🔑", Purpose::Set);
    EXPECT_EQ(server.Open(sealed, Purpose::Set, connection.nonce), "pässwörd 🔑");
    EXPECT_EQ(other.Open(sealed, Purpose::Set, connection.nonce), "(not for this server)");
    EXPECT_EQ(server.Open(sealed, Purpose::Confirm, connection.nonce), "(not for this)");
    EXPECT_EQ(server.Open(sealed, Purpose::Set, "another"), "(not for this)");
    EXPECT_NE(encoder.Encode("same", Purpose::Set), encoder.Encode("same", Purpose::Set))
        << "nobody can tell equal passwords";
    EXPECT_EQ(PasswordEncoder("short", "n").Encode("x", Purpose::Set), QString());
    EXPECT_EQ(PasswordEncoder(key, "").Encode("x", Purpose::Set), QString());
    EXPECT_EQ(PasswordEncoder().Encode("x", Purpose::Set), QString());
}

TEST(PasswordEncoder, WipesEveryCopyThatSharesTheText) {
    QString text = QString("secret") + QString::number(1);
    const QString copy = text;
    WipeText(text);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(copy, QString(7, QChar(0)));
    QLineEdit edit;
    edit.setText(QString("secret") + QString::number(2));
    const QString shown = edit.text();
    WipeEdit(edit);
    EXPECT_EQ(shown, QString(7, QChar(0)));
    EXPECT_TRUE(edit.text().isEmpty());
    edit.undo();
    EXPECT_TRUE(edit.text().isEmpty());
}

} // namespace
} // namespace sysadmin
