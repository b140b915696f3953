#include "app/JobTest.h"
#include "wire/Status.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QTest>

namespace sysadmin {

namespace {

namespace status = wire::status;

constexpr qint64 Hour = 3600;
const QString Operators = "Security_OperatorProfile";
const QString Profiles = "Security_MasterProfile";
const QString Options = "Security_Options";
const QString NotLetIn =
    "The operator id or the password is not right, or the operator is locked or disabled.";
const QString Repeated = "Password the same as a previous password(s) -- Please change password again.";
const QString TooYoung = "Minimum age violation (can't change password yet)";

/// Jobs of a security administrator and of CLARA, an operator who is made for them.
class SecurityJobTest : public JobTest {
protected:
    SecurityJobTest() { SignOn("SYSADMIN"); }

    const QString first = Secret("winter-2041");
    const QString second = Secret("spring-2042");
    const QString third = Secret("summer-2043");

    void MakeClara() {
        Open(Operators);
        Click("cmdNew");
        Type("txtOperatorID", "CLARA");
        Type("txtLastName", "Cox");
        Type("txtPassword", first);
        Click("cmdSave");
        EXPECT_TRUE(GridRows().contains("Cox|CLARA"));
    }
    void Edit(const QString& operatorId) {
        Open(Operators);
        EXPECT_TRUE(Grid().SelectKey(operatorId));
        Click("cmdEdit");
    }
    void EditProfile(const QString& name, const QString& button = "cmdEdit") {
        Select(Open(Profiles), name);
        Click(button);
    }
    /// Moves a row of a profile's list to the other list.
    void Move(const QString& button, const QString& grid, const QString& row) {
        Select(*front, row, grid);
        Click(button);
    }

    /// The sign-on dialog: tries the passwords one after the other. The last one lets the operator in, unless
    /// `givesUp`; the others are refused.
    void ExpectSignOn(const QString& operatorId, const QStringList& passwords, bool givesUp = false) {
        prompter.ExpectDialogResult("frmSignOn", [=, this](QDialog& dialog) {
            const auto attempt = [&](const QString& password) {
                Type(dialog, "txtOperator", operatorId);
                Type(dialog, "txtPassword", password);
                QTest::keyClick(&Get<QLineEdit>(dialog, "txtPassword"), Qt::Key_Return);
                return Get<QLabel>(dialog, "lblProblem").text();
            };
            for (qsizetype i = 0; i < passwords.size(); ++i) {
                QString problem = attempt(passwords[i]);
                if (problem.startsWith("There were too many wrong")) {
                    Advance(3); // whoever goes on guessing is told to wait, and the try does not count
                    problem = attempt(passwords[i]);
                }
                if (i + 1 == passwords.size() && !givesUp)
                    return;
                EXPECT_EQ(problem, NotLetIn) << passwords[i].toStdString();
                EXPECT_EQ(TextOf(dialog, "txtPassword"), "");
            }
            Click(dialog, "cmdCancel");
        });
    }
    void Refuse(const QString& operatorId, const QStringList& passwords) {
        ExpectSignOn(operatorId, passwords, true);
        EXPECT_FALSE(StartWithDialog());
    }
    bool StartAs(const QString& operatorId, const QString& password) {
        ExpectSignOn(operatorId, {password});
        return StartWithDialog();
    }
    /// The dialog for one's own password: tries new passwords one after the other, each with the problem that
    /// is told then. An empty problem is success; without one the operator gives up.
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
            }
            Click(dialog, "cmdCancel");
        });
        if (attempts.last().second.isEmpty())
            prompter.ExpectBox("Your password has been changed.", true, Box::Icon::Information);
    }
    /// The administrator's dialog for CLARA's password, refused with these words; then cancelled.
    void ChangePassword(const QString& password, const QString& refusal = {}) {
        prompter.ExpectDialogResult("frmSecurity_OperatorPassword", [=, this](QDialog& dialog) {
            Type(dialog, "txtPassword", password);
            if (!refusal.isEmpty())
                prompter.ExpectBox(refusal, true, Box::Icon::Critical);
            Click(dialog, "cmdChange");
            if (!refusal.isEmpty())
                Click(dialog, "cmdCancel");
        });
        Click("cmdChangePassword");
    }
};

TEST_F(SecurityJobTest, ANewOperatorMayDoWhatTheProfileSays) {
    MakeClara();
    EditProfile("Circulation Settings", "cmdDuplicate");
    EXPECT_EQ(FrameCaption(), "New Master Profile:");
    Type("txtName", "Branch Desk");
    Check("chkClusterEdit", false);
    Check("chkSystemWideConfigurationView", true);
    EXPECT_EQ(GridRows("vsfSelectedOperators"), QStringList{"Lindqvist, Per"}) << "as in the original";
    Click("cmdDiscardAllOperators");
    Move("cmdSelectOperator", "vsfAvailableOperators", "Cox");
    Click("cmdDiscardAllLocations");
    Move("cmdSelectLocation", "vsfAvailableLocations", "Law Circ Desk");
    Move("cmdSelectLocation", "vsfAvailableLocations", "Law Reserves");
    Click("cmdSave");
    EXPECT_EQ(LastSent("AddMPrf").fields.mid(0, 2), (wire::Fields{{"SOI", "CLARA"}, {"OSt", "1"}}));

    // Ids are found in any case of letters.
    ASSERT_TRUE(StartAs("clara", first));
    EXPECT_EQ(App().OperatorId(), "CLARA");
    const QStringList offered = Offered();
    for (const char* key :
         {"System_Locations", "Circulation_PatronNoteTypes", "Circ_Clusters", "WS_SelfRegistration"})
        EXPECT_TRUE(offered.contains(key)) << key;
    for (const QString& key : offered)
        EXPECT_FALSE(key.startsWith("Security_") || key.startsWith("Acquisitions_")) << key.toStdString();

    // Viewing only, edit, and not even that.
    Open("System_Locations");
    EXPECT_TRUE(Get<QWidget>("cmdNew").isHidden());
    EXPECT_EQ(
        Ask("AddLoc", {{"Cd", "SLY"}, {"Nm", "Sly"}, {"Spn", ""}, {"Dsp", ""}, {"OPAC", "N"}, {"Lb", ""}}),
        status::NotAuthorised);
    Open("Circulation_PatronNoteTypes");
    Click("cmdNew");
    Type("txtName", "Branch Note");
    Click("cmdSave");
    EXPECT_TRUE(GridRows().contains("Branch Note"));
    for (const char* request : {"LstMPrf", "LstOpr", "ClearLockoutStatus", "DelCluster"})
        EXPECT_EQ(Ask(request, {{"Srt", "I"}, {"OI", "CLARA"}, {"CID", "1"}}), status::NotAuthorised)
            << request;

    // Both locations belong to one cluster: it is taken without a question.
    Open("WS_SelfRegistration");
    ASSERT_TRUE(App().clusters.Current());
    EXPECT_EQ(App().clusters.Current()->sClusterCD, "PROF");

    // What the profile loses is gone with the next start.
    SignOn("SYSADMIN");
    EditProfile("Branch Desk");
    Check("chkSystemWideConfigurationView", false);
    Click("cmdDiscardAllLocations");
    Click("cmdSave");
    ASSERT_TRUE(StartAs("CLARA", first));
    EXPECT_FALSE(Offered().contains("System_Locations"));
    prompter.ExpectBox("Access not allowed due to missing cluster-affiliated locations available for current "
                       "operator.",
                       true, Box::Icon::Critical);
    Window().OpenScreen("WS_SelfRegistration");
    EXPECT_FALSE(Window().FindScreen("WS_SelfRegistration"));
}

TEST_F(SecurityJobTest, LockedUnlockedExpiredChanged) {
    MakeClara();
    EditProfile("View Everything");
    Move("cmdSelectOperator", "vsfAvailableOperators", "Cox");
    Click("cmdSave");

    // Nobody learns which ids there are, nor that the right password would have come too late.
    Refuse("NOBODY", {first});
    Refuse("CLARA", {"wrong-1", "wrong-2", "wrong-3", "wrong-4", "wrong-5", first});
    Advance(3); // this address has to wait, whoever signs on from it

    SignOn("SYSADMIN");
    Edit("CLARA");
    EXPECT_EQ(TextOf("txtStatus"), "Locked");
    EXPECT_EQ(GridRows("vsfOperatorList"), QStringList{"System Administration: View Everything"});
    prompter.ExpectDialogResult("frmSecurity_OperatorLockoutStatus", [this](QDialog& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtLoginAttempts"), "5");
        EXPECT_FALSE(TextOf(dialog, "txtLastLogin").isEmpty());
        EXPECT_FALSE(TextOf(dialog, "txtLockedAt").isEmpty());
        Click(dialog, "cmdUnlock");
    });
    Click("cmdLockoutStatus");
    EXPECT_EQ(TextOf("txtStatus"), "Active");
    EXPECT_FALSE(IsEnabled("cmdLockoutStatus"));
    prompter.ExpectBox("Operator's password successfully expired.", true, Box::Icon::Information);
    Click("cmdExpire");
    EXPECT_EQ(TextOf("txtStatus"), "Expired");
    Click("cmdCancel");

    // Whoever does not change the expired password gets nowhere.
    ExpectSignOn("CLARA", {first});
    ExpectOwnPassword(first, {{first, Repeated}});
    EXPECT_FALSE(StartWithDialog());
    EXPECT_EQ(Ask("LstLoc"), status::NotAuthorised);
    ExpectSignOn("CLARA", {first});
    const QString againstRules = "The new password does not keep to the rules for passwords.";
    ExpectOwnPassword(first, {{"short", againstRules}, {"clara-2041", againstRules}, {second, ""}});
    EXPECT_TRUE(StartWithDialog());
    EXPECT_EQ(Ask("LstLoc"), status::Ok);

    // Within a day the new password stays; after it only the passwords before are refused.
    SignOn("SYSADMIN");
    Open(Options);
    Choose("cboMinPasswordAge", "Days");
    Type("fpMinPasswordAge", "1");
    Click("cmdSave");
    EXPECT_EQ(LastSent("UpdSecOptions").Value("PAM"), "D1");
    Edit("CLARA");
    ChangePassword(third, TooYoung);
    Click("cmdCancel");
    Advance(25 * Hour);
    SignOn("SYSADMIN");
    Edit("CLARA");
    ChangePassword(first, Repeated);
    ChangePassword(third);
    Click("cmdSave");

    ASSERT_TRUE(StartAs("CLARA", third));
    ExpectOwnPassword(third, {{second, TooYoung}});
    Get<QAction>(Window(), "mnuFileChangePassword").trigger();
    EXPECT_EQ(Store().FirstValue("SELECT COUNT(*) FROM password_history").toInt(), 2);
}

} // namespace

} // namespace sysadmin
