#include "app/SecurityJob.h"
#include "wire/Status.h"

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace sysadmin {

namespace {

namespace status = wire::status;

constexpr qint64 Hour = 3600;

class SecurityJobTest : public SecurityJob {};

TEST_F(SecurityJobTest, ANewOperatorMayDoWhatTheProfileSays) {
    SignOn("SYSADMIN");
    MakeClara();
    EXPECT_EQ(LastSent("AddOpr").Value("MdOpr"), "SYSADMIN");

    Screen* screen = &Open(profiles);
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
    EXPECT_EQ(
        Store()
            .FirstValue(
                "SELECT COUNT(*) FROM master_profile_operators m JOIN operators o ON o.id=m.operator_row "
                "WHERE o.operator_id='CIRC'")
            .toInt(),
        1)
        << "the original keeps its operator";

    // Ids are found in any case of letters.
    ASSERT_TRUE(StartAs("clara", firstPassword));
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
    screen = &Open(profiles);
    Select(*screen, "Branch Desk");
    Click(*screen, "cmdEdit");
    Check(*screen, "chkSystemWideConfigurationView", false);
    Click(*screen, "cmdDiscardAllLocations");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdMPrf").Values("LSt"), (QStringList{"3", "3"}));
    EXPECT_TRUE(LastSent("UpdMPrf").Values("SOI").isEmpty());
    ASSERT_TRUE(StartAs("CLARA", firstPassword));
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
    Screen* screen = &Open(profiles);
    Select(*screen, "View Everything");
    Click(*screen, "cmdEdit");
    Move(*screen, "cmdSelectOperator", "vsfAvailableOperators", {"Cox, Clara"});
    Click(*screen, "cmdSave");

    // Nobody learns which ids there are, nor that the right password would have come too late.
    ExpectSignOn("NOBODY", {firstPassword}, true);
    EXPECT_FALSE(StartWithDialog());
    ExpectSignOn("CLARA", {"wrong-1", "wrong-2", "wrong-3", "wrong-4", "wrong-5", firstPassword}, true);
    EXPECT_FALSE(StartWithDialog());
    Advance(3); // this address has to wait, whoever signs on from it

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
    ExpectSignOn("CLARA", {firstPassword});
    ExpectOwnPassword(firstPassword, {{firstPassword, repeated}});
    EXPECT_FALSE(StartWithDialog());
    EXPECT_EQ(Ask("LstLoc"), status::NotAuthorised);
    ExpectSignOn("CLARA", {firstPassword});
    ExpectOwnPassword(firstPassword,
                      {{"short", "The new password does not keep to the rules for passwords."},
                       {"clara-2041", "The new password does not keep to the rules for passwords."},
                       {secondPassword, ""}});
    EXPECT_TRUE(StartWithDialog());
    EXPECT_EQ(Ask("LstLoc"), status::Ok);

    // Within a day the new password stays; after it only the passwords before are refused.
    SignOn("SYSADMIN");
    screen = &Open(options);
    Type(*screen, "fpMinPasswordAge", "1");
    Choose(*screen, "cboMinPasswordAge", "Days");
    Type(*screen, "fpMinPasswordAge", "1");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdSecOptions").Value("PAM"), "D1");
    screen = &Edit("CLARA");
    prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [this](QDialog& dialog) {
        Type(dialog, "txtPassword", thirdPassword);
        prompter.ExpectBox(tooYoung, true, Box::Icon::Critical);
        Click(dialog, "cmdChange");
        Click(dialog, "cmdCancel");
    });
    Click(*screen, "cmdChangePassword");
    Click(*screen, "cmdCancel");
    Advance(25 * Hour);
    SignOn("SYSADMIN");
    screen = &Edit("CLARA");
    prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [this](QDialog& dialog) {
        Type(dialog, "txtPassword", firstPassword);
        prompter.ExpectBox(repeated, true, Box::Icon::Critical);
        Click(dialog, "cmdChange");
        Type(dialog, "txtPassword", thirdPassword);
        Click(dialog, "cmdChange");
    });
    Click(*screen, "cmdChangePassword");
    Click(*screen, "cmdSave");
    EXPECT_FALSE(LastSent("UpdOpr").Value("PW").isEmpty());

    ASSERT_TRUE(StartAs("CLARA", thirdPassword));
    ExpectOwnPassword(thirdPassword, {{secondPassword, tooYoung}});
    Get<QAction>(Window(), "mnuFileChangePassword").trigger();
    EXPECT_EQ(Store().FirstValue("SELECT COUNT(*) FROM password_history").toInt(), 2);
}

TEST_F(SecurityJobTest, SecurityOptionsHoldAtOnce) {
    SignOn("SYSADMIN");
    Screen* screen = &Open(options);
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

    screen = &Open(operators);
    Click(*screen, "cmdNew");
    Type(*screen, "txtOperatorID", "CLARA");
    Type(*screen, "txtLastName", "Cox");
    Type(*screen, "txtPassword", firstPassword);
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
    screen = &Open(options);
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

} // namespace

} // namespace sysadmin
