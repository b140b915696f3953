#include "app/SecurityJob.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace sysadmin {

void SecurityJob::MakeClara() {
    Screen& screen = Open(operators);
    QTest::keyClick(&Grid(screen), Qt::Key_Insert);
    EXPECT_EQ(FrameCaption(screen), "New Operator Profile:");
    Type(screen, "txtOperatorID", "CLARA");
    Type(screen, "txtLastName", "Cox");
    Type(screen, "txtFirstName", "Clara");
    Type(screen, "txtMIName", "J");
    Type(screen, "txtPassword", firstPassword);
    Click(screen, "cmdSave");
    EXPECT_TRUE(Rows(screen).contains("Cox, Clara J|CLARA"));
    EXPECT_EQ(Grid(screen).SelectedKey(), "CLARA");
}

Screen& SecurityJob::Edit(const QString& operatorId) {
    Screen& screen = Open(operators);
    EXPECT_TRUE(Grid(screen).SelectKey(operatorId));
    QTest::keyClick(&Grid(screen), Qt::Key_F2);
    EXPECT_EQ(FrameCaption(screen), "Edit Operator Profile:");
    return screen;
}

void SecurityJob::ExpectSignOn(const QString& operatorId, const QStringList& passwords, bool givesUp) {
    prompter.ExpectDialogResult("frmSignOn", [=, this](QDialog& dialog) {
        for (qsizetype i = 0; i < passwords.size(); ++i) {
            Type(dialog, "txtOperator", operatorId);
            Type(dialog, "txtPassword", passwords[i]);
            QTest::keyClick(&Get<QLineEdit>(dialog, "txtPassword"), Qt::Key_Return);
            if (Get<QLabel>(dialog, "lblProblem").text().startsWith("There were too many wrong")) {
                Advance(3); // whoever goes on guessing is told to wait, and the try does not count
                Type(dialog, "txtPassword", passwords[i]);
                QTest::keyClick(&Get<QLineEdit>(dialog, "txtPassword"), Qt::Key_Return);
            }
            if (i + 1 == passwords.size() && !givesUp)
                return;
            EXPECT_EQ(Get<QLabel>(dialog, "lblProblem").text(), notLetIn) << passwords[i].toStdString();
            EXPECT_EQ(TextOf(dialog, "txtPassword"), "");
        }
        Click(dialog, "cmdCancel");
    });
}

bool SecurityJob::StartAs(const QString& operatorId, const QString& password) {
    ExpectSignOn(operatorId, {password});
    return StartWithDialog();
}

void SecurityJob::ExpectOwnPassword(const QString& old, const QList<QPair<QString, QString>>& attempts) {
    prompter.ExpectDialogResult("frmChangePassword", [=, this](QDialog& dialog) {
        for (const auto& [password, problem] : attempts) {
            Type(dialog, "txtOldPassword", old);
            Type(dialog, "txtNewPassword", password);
            Type(dialog, "txtRepeatPassword", password);
            Click(dialog, "cmdOK");
            if (problem.isEmpty())
                return;
            EXPECT_EQ(Get<QLabel>(dialog, "lblProblem").text(), problem);
            EXPECT_TRUE(dialog.isVisible());
        }
        Click(dialog, "cmdCancel");
    });
    if (!attempts.isEmpty() && attempts.last().second.isEmpty())
        prompter.ExpectBox("Your password has been changed.", true, Box::Icon::Information);
}

void SecurityJob::Move(Screen& screen, const QString& button, const QString& grid, const QStringList& rows) {
    QStringList keys;
    for (const QString& row : rows) {
        Select(screen, row, grid);
        keys.append(Grid(screen, grid).SelectedKeys());
    }
    Grid(screen, grid).SelectKeys(keys);
    Click(screen, button);
}

void SecurityJob::ExpectDeleteQuestion(const QString& subject, const QString& item) {
    prompter.ExpectBox("You will delete " + subject + ":\r\n\"" + item + "\"\r\n\r\nAre you sure?", true,
                       Box::Icon::Question);
}

} // namespace sysadmin
