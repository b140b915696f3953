#include "framework/ListGrid.h"
#include "security/frmSecurity_OperatorProfiles.h"
#include "support/ScreenTest.h"

#include <QDate>
#include <QDialog>
#include <QHeaderView>
#include <QPlainTextEdit>

namespace sysadmin {

namespace {

const wire::Fields ThreeOperators{{"OI", "SYSADMIN"}, {"LNm", "Administrator"},
                                  {"FNm", "System"},  {"MI", ""},
                                  {"OI", "AB"},       {"LNm", "Berg"},
                                  {"FNm", "Zoë"},     {"MI", "A"},
                                  {"OI", "KIOSK"},    {"LNm", ""},
                                  {"FNm", ""},        {"MI", ""}};

/// Rules under which "secret-1" is good and "weak" is not.
const wire::Fields Rules{{"PLM", "8"}, {"PLX", "25"}, {"PAL", "2"}, {"PNL", "1"}, {"PSL", "1"}, {"PSC", "-"}};

class OperatorProfilesTest : public ScreenTest {
protected:
    void OpenList() {
        channel.Answer("LstOpr", 0, ThreeOperators);
        Open<frmSecurity_OperatorProfiles>();
    }
    wire::Fields Record(const QString& expired = "N", const QString& locked = "N",
                        const QString& never = "N") const {
        return {{"FNm", "Zoë"},
                {"LNm", "Berg"},
                {"MI", "A"},
                {"CrDt", "03/04/2025"},
                {"MdDt", "05/06/2026"},
                {"MdOpr", "KIM"},
                {"Nexp", never},
                {"Exp", expired},
                {"Lock", locked},
                {"Rchg", "Y"},
                {"Prof", "System Administration: Desk"},
                {"Prof", "Circulation: Desk"}};
    }
    void Edit(const wire::Fields& record) {
        OpenList();
        Grid().SelectKey("AB");
        channel.Answer("GetOpr", 0, record);
        Click("cmdEdit");
    }
    /// Drives the change-password dialog: types the password and accepts it.
    void ChangeTo(const QString& password) {
        channel.Answer("GET_PWD_DISPLAY_TEXT", 0, {{"PDT", "Rules"}});
        channel.Answer("GetSecOptions", 0, Rules);
        channel.Answer("PwdUsg", 0);
        prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [=, this](QDialog& dialog) {
            Type(dialog, "txtPassword", password);
            Click(dialog, "cmdChange");
        });
        Click("cmdChangePassword");
    }
    void ClickHeader(int column) { emit Grid().horizontalHeader()->sectionClicked(column); }

    const QString m_today = QDate::currentDate().toString("MM/dd/yyyy");
};

TEST_F(OperatorProfilesTest, ClicksOnTheColumnsAskForAnotherOrder) {
    OpenList();
    EXPECT_EQ(GridRows(), (QStringList{"|KIOSK", "Administrator, System|SYSADMIN", "Berg, Zoë A|AB"}));
    Grid().SelectKey("AB");
    const auto sortedBy = [&](int column) {
        channel.Answer("LstOpr", 0, ThreeOperators);
        ClickHeader(column);
        EXPECT_EQ(Grid().SelectedKey(), "AB");
        return channel.sent.last().Value("Srt") + ": " + Grid().Model().ShownKeys().join(' ');
    };
    EXPECT_EQ(sortedBy(0), "F: KIOSK SYSADMIN AB");
    EXPECT_EQ(sortedBy(0), "L: KIOSK SYSADMIN AB");
    EXPECT_EQ(sortedBy(1), "I: AB KIOSK SYSADMIN");
    EXPECT_EQ(sortedBy(0), "L: KIOSK SYSADMIN AB");
}

TEST_F(OperatorProfilesTest, EditShowsTheAccountAndSendsNoPassword) {
    Edit(Record());
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetOpr", {{"OI", "AB"}}}));
    EXPECT_EQ(FrameCaption(), "Edit Operator Profile:");
    EXPECT_EQ(TextOf("txtOperatorID"), "AB");
    EXPECT_FALSE(IsEnabled("txtOperatorID"));
    EXPECT_FALSE(IsEnabled("txtPassword"));
    EXPECT_EQ(TextOf("txtStatus"), "Active");
    EXPECT_EQ(TextOf("txtCreateDate"), "03/04/2025");
    EXPECT_EQ(GridRows("vsfOperatorList"), (QStringList{"System Administration: Desk", "Circulation: Desk"}));
    EXPECT_FALSE(IsEnabled("cmdLockoutStatus"));
    Type("txtFirstName", "Aaron");
    Check("chkRestrictChange", false);
    channel.Answer("UpdOpr", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"OI", "AB"},
                                                        {"FNm", "Aaron"},
                                                        {"LNm", "Berg"},
                                                        {"MI", "A"},
                                                        {"MdDt", m_today},
                                                        {"MdOpr", "TESTER"},
                                                        {"Srt", "L"},
                                                        {"SPV", "N"},
                                                        {"Nexp", "N"},
                                                        {"Rchg", "N"},
                                                        {"CrDt", "03/04/2025"},
                                                        {"Exp", "N"},
                                                        {"PID", "AB"}}));
    EXPECT_EQ(GridRows().last(), "Berg, Aaron A|AB");
}

TEST_F(OperatorProfilesTest, NewOperatorNeedsAPasswordThatFollowsTheRules) {
    OpenList();
    Click("cmdNew");
    for (const char* notOffered : {"fraAccount", "cmdChangePassword", "cmdLockoutStatus", "txtStatus"})
        EXPECT_FALSE(Get<QWidget>(notOffered).isVisible()) << notOffered;
    Type("txtOperatorID", " CLARA ");
    Type("txtLastName", "Cox");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtPassword", "cLARa-2020");
    EXPECT_EQ(Get<QLineEdit>("txtPassword").echoMode(), QLineEdit::Password);
    channel.Answer("GetSecOptions", 0, Rules);
    prompter.ExpectBox("The password does not follow the password rules:\r\n\r\n"
                       "- It must not contain the user's id.",
                       true, Box::Icon::Exclamation);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().name, "GetSecOptions") << "nothing is added";
    EXPECT_TRUE(Get<QLineEdit>("txtPassword").hasFocus());

    Type("txtPassword", " secret-1 ");
    channel.Answer("GetSecOptions", 0, Rules);
    channel.Answer("AddOpr", 9);
    prompter.ExpectBox("This ID already exists.  Please enter a unique ID.");
    Click("cmdSave");
    EXPECT_TRUE(Get<QLineEdit>("txtOperatorID").hasFocus());

    Check("chkSkipValidation", true);
    Check("chkExpireNow", true);
    channel.Answer("AddOpr", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"OI", "CLARA"},
                                                        {"FNm", ""},
                                                        {"LNm", "Cox"},
                                                        {"MI", ""},
                                                        {"MdDt", m_today},
                                                        {"MdOpr", "TESTER"},
                                                        {"Srt", "L"},
                                                        {"PW", "sealed(secret-1)"},
                                                        {"SPV", "Y"},
                                                        {"Nexp", "N"},
                                                        {"Rchg", "N"},
                                                        {"CrDt", m_today},
                                                        {"Exp", "Y"}}));
    EXPECT_EQ(Grid().SelectedKey(), "CLARA");
    EXPECT_EQ(TextOf("txtPassword"), "") << "no password stays on the screen";
}

TEST_F(OperatorProfilesTest, ExpiryStateRulesTheControls) {
    Edit(Record("Y"));
    EXPECT_EQ(TextOf("txtStatus"), "Expired");
    EXPECT_FALSE(IsEnabled("cmdExpire"));
    EXPECT_FALSE(IsEnabled("chkExpireNow")) << "only a new password lifts an expiry";
    Click("cmdCancel");
    channel.Answer("GetOpr", 0, Record("N", "N", "Y"));
    Click("cmdEdit");
    EXPECT_TRUE(Get<QCheckBox>("chkNeverExpire").isChecked());
    EXPECT_FALSE(IsEnabled("cmdExpire"));
    EXPECT_FALSE(IsEnabled("chkExpireNow"));
    Check("chkNeverExpire", false);
    EXPECT_TRUE(IsEnabled("cmdExpire"));
    Check("chkExpireNow", true);
    Check("chkNeverExpire", true);
    EXPECT_FALSE(Get<QCheckBox>("chkExpireNow").isChecked());
}

TEST_F(OperatorProfilesTest, NewPasswordLiftsTheExpiry) {
    Edit(Record("Y"));
    ChangeTo("secret-1");
    EXPECT_EQ(channel.LastSent("PwdUsg").fields,
              (wire::Fields{{"OI", "AB"}, {"PW", "sealed(secret-1)"}, {"SPV", "N"}, {"AS", "Y"}}));
    EXPECT_TRUE(IsEnabled("chkExpireNow"));
    channel.Answer("UpdOpr", 107);
    prompter.ExpectBox("Password the same as a previous password(s) -- Please change password again.", true,
                       Box::Icon::Critical);
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtStatus"), "Expired");
    channel.Answer("UpdOpr", 108);
    prompter.ExpectBox("Minimum age violation (can't change password yet)", true, Box::Icon::Critical);
    Click("cmdSave");
    channel.Answer("UpdOpr", 0);
    prompter.ExpectBox("Changing the password removed the expiration on the account.", true,
                       Box::Icon::Information);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().Value("PW"), "sealed(secret-1)");
    EXPECT_EQ(channel.sent.last().Value("Exp"), "N");

    // The next edit knows nothing of it.
    channel.Answer("GetOpr", 0, Record());
    Click("cmdEdit");
    channel.Answer("UpdOpr", 0);
    Click("cmdSave");
    EXPECT_TRUE(channel.sent.last().Values("PW").isEmpty());
}

TEST_F(OperatorProfilesTest, PasswordDialogStaysOpenUntilThePasswordIsAccepted) {
    Edit(Record());
    channel.Answer("GET_PWD_DISPLAY_TEXT", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5,
                      "Load Cataloging Available Import Order", "Change Password");
    prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [this](QDialog& dialog) {
        EXPECT_TRUE(Get<QPlainTextEdit>(dialog, "txtPasswordScreen")
                        .toPlainText()
                        .startsWith("Your new password must\n- be a minimum of 8 and a maximum of 25"));
        Get<QLineEdit>(dialog, "txtPassword").setText(" Zoë-2026 "); // not on every keyboard
        channel.Answer("GetSecOptions", 0, Rules);
        prompter.ExpectBox("The password does not follow the password rules:\r\n\r\n"
                           "- It must not contain the user's name.");
        Click(dialog, "cmdChange");

        // Without the rules nothing is sent.
        Type(dialog, "txtPassword", "secret-1");
        channel.Answer("GetSecOptions", 12);
        ExpectErrorDialog(prompter, "User is not authorized for System Administration.", 12,
                          "Load Security Options", "Change Password");
        Click(dialog, "cmdChange");
        EXPECT_EQ(channel.sent.last().name, "GetSecOptions");

        const QList<QPair<qint16, QString>> refusals{
            {107, "Password the same as a previous password(s) -- Please change password again."},
            {108, "Minimum age violation (can't change password yet)"},
            {4, "Unknown Error has occurred."}};
        for (const auto& [status, words] : refusals) {
            channel.Answer("GetSecOptions", 0, Rules);
            channel.Answer("PwdUsg", status);
            prompter.ExpectBox(words, true, Box::Icon::Critical);
            Click(dialog, "cmdChange");
            EXPECT_TRUE(dialog.isVisible());
        }
        Click(dialog, "cmdCancel");
    });
    Click("cmdChangePassword");
    channel.Answer("UpdOpr", 0);
    Click("cmdSave");
    EXPECT_TRUE(channel.sent.last().Values("PW").isEmpty());
}

TEST_F(OperatorProfilesTest, WhatTheServerIsToldAtOnceIsShownAndKept) {
    Edit(Record("N", "Y"));
    EXPECT_EQ(TextOf("txtStatus"), "Locked");
    channel.Answer("GetOpr", 0, Record("N", "Y"));
    channel.Answer("GetLockoutStatus", 0, {{"LC", "5"}});
    prompter.ExpectDialogResult("frmSecurity_OperatorLockoutStatus", [this](QDialog& dialog) {
        channel.Answer("ClearLockoutStatus", 1);
        ExpectErrorDialog(prompter, "Communications Failure", 1, "Clear Lockout Status", "Lockout Status");
        Click(dialog, "cmdUnlock");
        EXPECT_TRUE(dialog.isVisible());
        channel.Answer("ClearLockoutStatus", 0);
        Click(dialog, "cmdUnlock");
    });
    Click("cmdLockoutStatus");
    EXPECT_EQ(TextOf("txtStatus"), "Active");

    channel.Answer("ExpOpr", 53);
    prompter.ExpectBox("At least one operator must keep the right to change security settings.");
    Click("cmdExpire");
    channel.Answer("ExpOpr", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Expire Security Operator Profile",
                      "Operator Profile");
    Click("cmdExpire");
    EXPECT_EQ(TextOf("txtStatus"), "Active");
    channel.Answer("ExpOpr", 0);
    prompter.ExpectBox("Operator's password successfully expired.", true, Box::Icon::Information);
    Click("cmdExpire");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"OI", "AB"}, {"MdOpr", "TESTER"}}));
    EXPECT_FALSE(IsEnabled("cmdExpire"));
    channel.Answer("UpdOpr", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().Value("Exp"), "Y") << "saving does not undo it";
}

} // namespace

} // namespace sysadmin
