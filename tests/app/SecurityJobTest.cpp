#include "app/JobTest.h"
#include "server/store/Database.h"
#include "wire/Status.h"

#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace sysadmin {

namespace {

namespace status = wire::status;

const QString Operators = "Security_OperatorProfile";
const QString Profiles = "Security_MasterProfile";
const QString Options = "Security_Options";
const QString FirstPassword = "winter-2041";
const QString SecondPassword = "spring-2042";
const QString ThirdPassword = "summer-2043";
constexpr qint64 Hour = 3600;

const QString NotLetIn =
    "The operator id or the password is not right, or the operator is locked or disabled.";
const QString Repeated = "Password the same as a previous password(s) -- Please change password again.";
const QString TooYoung = "Minimum age violation (can't change password yet)";
const QString LastHolder = "At least one operator must keep the right to change security settings.";

class SecurityJobTest : public JobTest {
protected:
    SecurityJobTest() {
        for (const QString& password : {FirstPassword, SecondPassword, ThirdPassword})
            Secret(password);
    }

    /// Makes the operator CLARA on the operators' screen.
    void MakeClara() {
        Screen& screen = Open(Operators);
        QTest::keyClick(&Grid(screen), Qt::Key_Insert);
        EXPECT_EQ(FrameCaption(screen), "New Operator Profile:");
        Type(screen, "txtOperatorID", "CLARA");
        Type(screen, "txtLastName", "Cox");
        Type(screen, "txtFirstName", "Clara");
        Type(screen, "txtMIName", "J");
        Type(screen, "txtPassword", FirstPassword);
        Click(screen, "cmdSave");
        EXPECT_TRUE(Rows(screen).contains("Cox, Clara J|CLARA"));
        EXPECT_EQ(Grid(screen).SelectedKey(), "CLARA");
    }

    /// The sign-on dialog: tries the passwords one after the other. The last one lets the operator in, unless
    /// `givesUp`; the others get `NotLetIn`.
    void ExpectSignOn(const QString& operatorId, const QStringList& passwords, bool givesUp = false) {
        prompter.ExpectDialogResult("frmSignOn", [=, this](QDialog& dialog) {
            for (qsizetype i = 0; i < passwords.size(); ++i) {
                Type(dialog, "txtOperator", operatorId);
                Type(dialog, "txtPassword", passwords[i]);
                QTest::keyClick(&Get<QLineEdit>(dialog, "txtPassword"), Qt::Key_Return);
                if (i + 1 == passwords.size() && !givesUp)
                    return;
                EXPECT_EQ(Get<QLabel>(dialog, "lblProblem").text(), NotLetIn) << passwords[i].toStdString();
                EXPECT_EQ(TextOf(dialog, "txtPassword"), "");
            }
            Click(dialog, "cmdCancel");
        });
    }
    bool StartAs(const QString& operatorId, const QString& password) {
        ExpectSignOn(operatorId, {password});
        return StartWithDialog();
    }

    /// The dialog for one's own password: tries the new passwords one after the other, each with the problem
    /// that is told then. An empty problem is success; without one the operator gives up.
    void ExpectOwnPassword(const QString& old, const QList<QPair<QString, QString>>& attempts) {
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

    /// Opens an operator's record for editing.
    Screen& Edit(const QString& operatorId) {
        Screen& screen = Open(Operators);
        EXPECT_TRUE(Grid(screen).SelectKey(operatorId));
        QTest::keyClick(&Grid(screen), Qt::Key_F2);
        EXPECT_EQ(FrameCaption(screen), "Edit Operator Profile:");
        return screen;
    }
    void Move(Screen& screen, const QString& button, const QString& grid, const QStringList& rows) {
        QStringList keys;
        for (const QString& row : rows) {
            Select(screen, row, grid);
            keys.append(Grid(screen, grid).SelectedKeys());
        }
        Grid(screen, grid).SelectKeys(keys);
        Click(screen, button);
    }
    void ExpectDeleteQuestion(const QString& subject, const QString& item) {
        prompter.ExpectBox("You will delete " + subject + ":\r\n\"" + item + "\"\r\n\r\nAre you sure?", true,
                           Box::Icon::Question);
    }
    QString Value(const QString& sql) { return GetLibrary().Connect()->FirstValue(sql).toString(); }
};

TEST_F(SecurityJobTest, ANewOperatorMayDoWhatTheProfileSays) {
    SignOn("SYSADMIN");
    MakeClara();
    EXPECT_EQ(LastSent("AddOpr").Value("MdOpr"), "SYSADMIN");

    Screen* screen = &Open(Profiles);
    Select(*screen, "Circulation Settings");
    Click(*screen, "cmdDuplicate");
    EXPECT_EQ(FrameCaption(*screen), "New Master Profile:");
    Type(*screen, "txtName", "Branch Desk");
    Check(*screen, "chkClusterEdit", false);
    Check(*screen, "chkSystemWideConfigurationView");
    EXPECT_EQ(Rows(*screen, "vsfSelectedOperators"), QStringList{"Lindqvist, Per"}) << "as in the original";
    Click(*screen, "cmdDiscardAllOperators");
    Move(*screen, "cmdSelectOperator", "vsfAvailableOperators", {"Cox, Clara"});
    Click(*screen, "cmdDiscardAllLocations");
    Move(*screen, "cmdSelectLocation", "vsfAvailableLocations", {"Law Circ Desk", "Law Reserves"});
    EXPECT_EQ(Rows(*screen, "vsfSelectedLocations").size(), 2);
    Click(*screen, "cmdSave");
    const Sent added = LastSent("AddMPrf");
    EXPECT_EQ(added.fields.mid(0, 2), (wire::Fields{{"SOI", "CLARA"}, {"OSt", "1"}})) << "nobody else moved";
    EXPECT_EQ(added.Values("LSt"), (QStringList{"1", "1"}));
    EXPECT_EQ(Rows(*screen), (QStringList{"Branch Desk", "Circulation Settings", "System Administrators",
                                          "View Everything"}));
    EXPECT_EQ(Value("SELECT COUNT(*) FROM master_profile_operators m JOIN operators o ON o.id=m.operator_row "
                    "WHERE o.operator_id='CIRC'"),
              "1")
        << "the original keeps its operator";

    // Ids are found in any case of letters.
    ASSERT_TRUE(StartAs("clara", FirstPassword));
    EXPECT_EQ(App().OperatorId(), "CLARA");
    const QStringList offered = Offered();
    for (const char* key : {"System_Locations", "System_ItemTypes", "Circulation_PatronNoteTypes",
                            "Circ_Clusters", "WS_SelfRegistration"})
        EXPECT_TRUE(offered.contains(key)) << key;
    for (const QString& key : offered)
        EXPECT_FALSE(key.startsWith("Security_") || key.startsWith("Acquisitions_") ||
                     key == u"Circulation_PatronGroups")
            << key.toStdString();

    // Viewing only, edit, and not even that.
    screen = &Open("System_Locations");
    EXPECT_TRUE(Get<QPushButton>(*screen, "cmdNew").isHidden());
    Click(*screen, "cmdEdit");
    EXPECT_EQ(FrameCaption(*screen), "View Location:");
    EXPECT_EQ(
        Ask("AddLoc", {{"Cd", "SLY"}, {"Nm", "Sly"}, {"Spn", ""}, {"Dsp", ""}, {"OPAC", "N"}, {"Lb", ""}}),
        status::NotAuthorised);
    screen = &Open("Circulation_PatronNoteTypes");
    Click(*screen, "cmdNew");
    Type(*screen, "txtName", "Branch Note");
    Click(*screen, "cmdSave");
    EXPECT_TRUE(Rows(*screen).contains("Branch Note"));
    EXPECT_EQ(Ask("LstMPrf"), status::NotAuthorised);
    EXPECT_EQ(Ask("LstOpr", {{"Srt", "I"}}), status::NotAuthorised);
    EXPECT_EQ(Ask("ClearLockoutStatus", {{"OI", "CLARA"}}), status::NotAuthorised);
    EXPECT_EQ(Ask("DelCluster", {{"CID", "1"}}), status::NotAuthorised);

    // Both locations belong to one cluster: it is taken without a question.
    Open("WS_SelfRegistration");
    ASSERT_TRUE(App().clusters.Current());
    EXPECT_EQ(App().clusters.Current()->sClusterCD, "PROF");
    EXPECT_EQ(App().clusters.Count(), 1);

    // What the profile loses is gone with the next start.
    SignOn("SYSADMIN");
    screen = &Open(Profiles);
    Select(*screen, "Branch Desk");
    Click(*screen, "cmdEdit");
    Check(*screen, "chkSystemWideConfigurationView", false);
    Click(*screen, "cmdDiscardAllLocations");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdMPrf").Values("LSt"), (QStringList{"3", "3"}));
    EXPECT_TRUE(LastSent("UpdMPrf").Values("SOI").isEmpty());
    ASSERT_TRUE(StartAs("CLARA", FirstPassword));
    EXPECT_FALSE(Offered().contains("System_Locations"));
    prompter.ExpectBox("Access not allowed due to missing cluster-affiliated locations available for current "
                       "operator.",
                       true, Box::Icon::Critical);
    Window().OpenScreen("WS_SelfRegistration");
    EXPECT_FALSE(Window().FindScreen("WS_SelfRegistration"));
}

TEST_F(SecurityJobTest, LockedUnlockedExpiredChanged) {
    SignOn("SYSADMIN");
    MakeClara();
    Screen* screen = &Open(Profiles);
    Select(*screen, "View Everything");
    Click(*screen, "cmdEdit");
    Move(*screen, "cmdSelectOperator", "vsfAvailableOperators", {"Cox, Clara"});
    Click(*screen, "cmdSave");

    // Nobody learns which ids there are, nor that the right password would have come too late.
    ExpectSignOn("NOBODY", {FirstPassword}, true);
    EXPECT_FALSE(StartWithDialog());
    ExpectSignOn("CLARA", {"wrong-1", "wrong-2", "wrong-3", "wrong-4", "wrong-5", FirstPassword}, true);
    EXPECT_FALSE(StartWithDialog());

    SignOn("SYSADMIN");
    screen = &Edit("CLARA");
    EXPECT_EQ(TextOf(*screen, "txtStatus"), "Locked");
    EXPECT_EQ(Rows(*screen, "vsfOperatorList"), QStringList{"System Administration: View Everything"});
    prompter.ExpectDialogResult("frmSecurity_OperatorLockoutStatus", [this](QDialog& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtLoginAttempts"), "5");
        EXPECT_FALSE(TextOf(dialog, "txtLastLogin").isEmpty());
        EXPECT_FALSE(TextOf(dialog, "txtLockedAt").isEmpty());
        Click(dialog, "cmdUnlock");
    });
    Click(*screen, "cmdLockoutStatus");
    EXPECT_EQ(TextOf(*screen, "txtStatus"), "Active");
    EXPECT_FALSE(Get<QPushButton>(*screen, "cmdLockoutStatus").isEnabled());
    prompter.ExpectBox("Operator's password successfully expired.", true, Box::Icon::Information);
    Click(*screen, "cmdExpire");
    EXPECT_EQ(TextOf(*screen, "txtStatus"), "Expired");
    Click(*screen, "cmdCancel");

    // Whoever does not change the expired password gets nowhere.
    ExpectSignOn("CLARA", {FirstPassword});
    ExpectOwnPassword(FirstPassword, {{FirstPassword, Repeated}});
    EXPECT_FALSE(StartWithDialog());
    EXPECT_EQ(Ask("LstLoc"), status::NotAuthorised);
    ExpectSignOn("CLARA", {FirstPassword});
    ExpectOwnPassword(FirstPassword,
                      {{"short", "The new password does not keep to the rules for passwords."},
                       {"clara-2041", "The new password does not keep to the rules for passwords."},
                       {SecondPassword, ""}});
    EXPECT_TRUE(StartWithDialog());
    EXPECT_EQ(Ask("LstLoc"), status::Ok);

    // Within a day the new password stays; after it only the passwords before are refused.
    SignOn("SYSADMIN");
    screen = &Open(Options);
    Type(*screen, "fpMinPasswordAge", "1");
    Choose(*screen, "cboMinPasswordAge", "Days");
    Type(*screen, "fpMinPasswordAge", "1");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdSecOptions").Value("PAM"), "D1");
    screen = &Edit("CLARA");
    prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [this](QDialog& dialog) {
        Type(dialog, "txtPassword", ThirdPassword);
        prompter.ExpectBox(TooYoung, true, Box::Icon::Critical);
        Click(dialog, "cmdChange");
        Click(dialog, "cmdCancel");
    });
    Click(*screen, "cmdChangePassword");
    Click(*screen, "cmdCancel");
    Advance(25 * Hour);
    SignOn("SYSADMIN");
    screen = &Edit("CLARA");
    prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [this](QDialog& dialog) {
        Type(dialog, "txtPassword", FirstPassword);
        prompter.ExpectBox(Repeated, true, Box::Icon::Critical);
        Click(dialog, "cmdChange");
        Type(dialog, "txtPassword", ThirdPassword);
        Click(dialog, "cmdChange");
    });
    Click(*screen, "cmdChangePassword");
    Click(*screen, "cmdSave");
    EXPECT_FALSE(LastSent("UpdOpr").Value("PW").isEmpty());

    ASSERT_TRUE(StartAs("CLARA", ThirdPassword));
    ExpectOwnPassword(ThirdPassword, {{SecondPassword, TooYoung}});
    Get<QAction>(Window(), "mnuFileChangePassword").trigger();
    EXPECT_EQ(Value("SELECT COUNT(*) FROM password_history"), "2");
}

TEST_F(SecurityJobTest, SecurityOptionsHoldAtOnce) {
    SignOn("SYSADMIN");
    Screen* screen = &Open(Options);
    Type(*screen, "fpMinPasswordLen", "5");
    EXPECT_EQ(TextOf(*screen, "fpMinPasswordLen"), "8");
    Type(*screen, "fpMinPasswordLen", "12");
    Type(*screen, "fpMinUpperChar", "1");
    Type(*screen, "fpLoginAttempts", "2");
    Type(*screen, "fpLockoutDuration", "90");
    Choose(*screen, "cboLockoutDuration", "Minutes");
    Type(*screen, "fpLockoutDuration", "90");
    Write(*screen, "txtPasswordDisplay", "Twelve characters,\none of them a capital.");
    Write(*screen, "txtSecurityText", "Staff only.");
    Click(*screen, "cmdSave");
    const Sent sent = LastSent("UpdSecOptions");
    for (const auto& [tag, value] :
         QList<QPair<QString, QString>>{{"PLM", "12"},
                                        {"PUL", "1"},
                                        {"PGR", "0"},
                                        {"LGA", "2"},
                                        {"LKD", "M90"},
                                        {"PDT", "Twelve characters,\r\none of them a capital."},
                                        {"SWT", "Staff only."},
                                        {"LAT", "Y"}})
        EXPECT_EQ(sent.Value(tag), value) << tag.toStdString();

    screen = &Open(Operators);
    Click(*screen, "cmdNew");
    Type(*screen, "txtOperatorID", "CLARA");
    Type(*screen, "txtLastName", "Cox");
    Type(*screen, "txtPassword", FirstPassword);
    prompter.ExpectBox("The password does not follow the password rules:\r\n\r\n"
                       "- It must be at least 12 characters long.\r\n"
                       "- It must contain at least 1 uppercase letter.");
    Click(*screen, "cmdSave");
    const QString longOne = Secret("Long-Winter-2041");
    Type(*screen, "txtPassword", longOne);
    Click(*screen, "cmdSave");
    Select(*screen, "Cox|CLARA");
    Click(*screen, "cmdEdit");
    prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [this](QDialog& dialog) {
        EXPECT_EQ(Get<QPlainTextEdit>(dialog, "txtPasswordScreen").toPlainText(),
                  "Twelve characters,\none of them a capital.");
        Click(dialog, "cmdCancel");
    });
    Click(*screen, "cmdChangePassword");
    Click(*screen, "cmdCancel");

    prompter.ExpectDialogResult("frmSignOn", [this](QDialog& dialog) {
        QCoreApplication::processEvents();
        EXPECT_EQ(Get<QPlainTextEdit>(dialog, "txtWarning").toPlainText(), "Staff only.");
        Click(dialog, "cmdCancel");
    });
    EXPECT_FALSE(StartWithDialog());
    ExpectSignOn("CLARA", {"wrong-1", "wrong-2", longOne}, true);
    EXPECT_FALSE(StartWithDialog());
    Advance(89 * 60);
    ExpectSignOn("clara", {longOne}, true);
    EXPECT_FALSE(StartWithDialog());
    Advance(2 * 60);
    ExpectSignOn("CLARA", {longOne});
    prompter.ExpectBox("You are not authorized to use System Adminstration.", true, Box::Icon::Critical);
    EXPECT_FALSE(StartWithDialog()) << "let in, but without any right";

    // All that is in the log, which goes to a file whole and is then emptied.
    SignOn("SYSADMIN");
    screen = &Open(Options);
    const QStringList log = Rows(*screen, "vsfInvalidLogins");
    QStringList attempts;
    for (const QString& row : log) {
        const QStringList cells = row.split('|');
        attempts.append(cells[0] + '|' + cells[1] + '|' + cells[3] + '|' + cells[5]);
    }
    EXPECT_EQ(attempts, (QStringList{"clara|Cox|2|local", "CLARA|Cox|2|local", "CLARA|Cox|2|local",
                                     "CLARA|Cox|1|local"}));
    QTemporaryDir folder;
    prompter.ExpectSaveFile(folder.filePath("log.csv"));
    Click(*screen, "cmdExport");
    QFile file(folder.filePath("log.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QString written = QString::fromUtf8(file.readAll()).remove(QChar(0xfeff));
    QString expected = "\"UserID\",\"Operator Name\",\"Date / Time\",\"Lockout Counter\",\"Lockout Time\","
                       "\"Workstation IP\"\r\n";
    for (const QString& row : log)
        expected += '"' + row.split('|').join("\",\"") + "\"\r\n";
    EXPECT_EQ(written, expected);
    Click(*screen, "cmdClear");
    EXPECT_TRUE(Rows(*screen, "vsfInvalidLogins").isEmpty());
    Click(*screen, "cmdRefresh");
    EXPECT_TRUE(Rows(*screen, "vsfInvalidLogins").isEmpty());

    // The older screen's number of days is the same setting.
    prompter.ExpectDialogResult("dlgPasswordExpiration", [this](QDialog& dialog) {
        Type(dialog, "txtExpireInterval", "90");
        Click(dialog, "cmdSave");
    });
    Click(*screen, "cmdPasswordExpiration");
    EXPECT_EQ(LastSent("UpdMscExpire").fields, (wire::Fields{{"ED", "90"}}));
    EXPECT_EQ(TextOf(*screen, "fpMaxPasswordAge"), "90");
}

TEST_F(SecurityJobTest, SomebodyKeepsTheSecurityRight) {
    SignOn("SYSADMIN");
    MakeClara();
    Screen* screen = &Open(Operators);
    Grid(*screen).SelectKey("SYSADMIN");
    EXPECT_FALSE(Get<QPushButton>(*screen, "cmdDelete").isEnabled());
    screen = &Open(Profiles);
    Select(*screen, "System Administrators");
    ExpectDeleteQuestion("Master Profile", "System Administrators");
    prompter.ExpectBox(LastHolder);
    QTest::keyClick(&Grid(*screen), Qt::Key_Delete);
    Click(*screen, "cmdEdit");
    Check(*screen, "chkSecurity", false);
    prompter.ExpectBox(LastHolder);
    Click(*screen, "cmdSave");
    Check(*screen, "chkSecurity");
    Click(*screen, "cmdDiscardAllOperators");
    prompter.ExpectBox(LastHolder);
    Click(*screen, "cmdSave");
    EXPECT_EQ(FrameCaption(*screen), "Edit Master Profile:") << "the edit stays open";

    // With another one the administrator can go; and then it is that one who must stay.
    Move(*screen, "cmdSelectOperator", "vsfAvailableOperators", {"Cox, Clara"});
    Click(*screen, "cmdSave");
    const Sent sent = LastSent("UpdMPrf");
    EXPECT_EQ(sent.fields.mid(0, 4),
              (wire::Fields{{"SOI", "SYSADMIN"}, {"OSt", "3"}, {"SOI", "CLARA"}, {"OSt", "1"}}));
    EXPECT_EQ(Ask("LstOpr", {{"Srt", "L"}}), status::NotAuthorised) << "at once";

    ASSERT_TRUE(StartAs("CLARA", FirstPassword));
    screen = &Edit("CLARA");
    Check(*screen, "chkRestrictChange");
    Check(*screen, "chkExpireNow");
    prompter.ExpectBox(LastHolder, true, {}, "Cannot Save Operator Profile");
    Click(*screen, "cmdSave");
    Click(*screen, "cmdCancel");
    ExpectDeleteQuestion("Operator Profile", "Cox, Clara J CLARA");
    prompter.ExpectBox(LastHolder, true, {}, "Cannot Delete Operator Profile");
    Click(*screen, "cmdDelete");
    EXPECT_TRUE(Rows(*screen).contains("Cox, Clara J|CLARA"));
    Grid(*screen).SelectKey("GUEST");
    ExpectDeleteQuestion("Operator Profile", "Guest, Sample GUEST");
    Click(*screen, "cmdDelete");
    EXPECT_EQ(LastSent("DelOpr").fields, (wire::Fields{{"OI", "GUEST"}}));
    EXPECT_FALSE(Rows(*screen).contains("Guest, Sample|GUEST"));
}

TEST_F(SecurityJobTest, TwoRecordsAreCompared) {
    SignOn("SYSADMIN");
    Screen* screen = &Open(Profiles);
    Select(*screen, "Circulation Settings");
    prompter.ExpectDialogResult("frmCompare", [this](QDialog& dialog) {
        Choose(dialog, "cboOther", "View Everything");
        const QString summary = Get<QLabel>(dialog, "lblSummary").text();
        const QStringList all = Rows(dialog, "vsfComparison");
        EXPECT_TRUE(all.contains("|Rights|Circulation Policy Groups (view)|Yes|Yes"));
        EXPECT_TRUE(all.contains("\u2260|Rights|Cluster Edit|Yes|No"));
        EXPECT_TRUE(all.contains("\u2260|Operators|Okafor, Ada|No|Yes"));
        Check(dialog, "chkOnlyDifferences");
        const QStringList different = Rows(dialog, "vsfComparison");
        EXPECT_LT(different.size(), all.size());
        for (const QString& row : different)
            EXPECT_TRUE(row.startsWith("\u2260|")) << row.toStdString();
        EXPECT_EQ(summary, QString("%1 difference(s).").arg(different.size()));
        Click(dialog, "cmdClose");
    });
    Click(*screen, "cmdCompare");

    screen = &Open(Operators);
    Grid(*screen).SelectKey("CIRC");
    prompter.ExpectDialogResult("frmCompare", [this](QDialog& dialog) {
        Choose(dialog, "cboOther", "Ito, Naomi K");
        Check(dialog, "chkOnlyDifferences");
        for (const char* row : {"\u2260|Current Profiles|System Administration: Circulation Settings|Yes|No"})
            EXPECT_TRUE(Rows(dialog, "vsfComparison").contains(row)) << row;
        Choose(dialog, "cboOther", "O'Connor, Maeve T");
        EXPECT_TRUE(Rows(dialog, "vsfComparison").contains("\u2260|Account|Expired|No|Yes"));
        Click(dialog, "cmdClose");
    });
    Click(*screen, "cmdCompare");
}

} // namespace

} // namespace sysadmin
