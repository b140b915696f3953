#include "app/SecurityJob.h"
#include "wire/Status.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace sysadmin {

namespace {

namespace status = wire::status;

class SecurityRecordsTest : public SecurityJob {};

TEST_F(SecurityRecordsTest, SomebodyKeepsTheSecurityRight) {
    SignOn("SYSADMIN");
    MakeClara();
    Screen* screen = &Open(operators);
    Grid(*screen).SelectKey("SYSADMIN");
    EXPECT_FALSE(Get<QPushButton>(*screen, "cmdDelete").isEnabled());
    screen = &Open(profiles);
    Select(*screen, "System Administrators");
    ExpectDeleteQuestion("Master Profile", "System Administrators");
    prompter.ExpectBox(lastHolder);
    QTest::keyClick(&Grid(*screen), Qt::Key_Delete);
    Click(*screen, "cmdEdit");
    Check(*screen, "chkSecurity", false);
    prompter.ExpectBox(lastHolder);
    Click(*screen, "cmdSave");
    Check(*screen, "chkSecurity");
    Click(*screen, "cmdDiscardAllOperators");
    prompter.ExpectBox(lastHolder);
    Click(*screen, "cmdSave");
    EXPECT_EQ(FrameCaption(*screen), "Edit Master Profile:") << "the edit stays open";

    // With another one the administrator can go; and then it is that one who must stay.
    Move(*screen, "cmdSelectOperator", "vsfAvailableOperators", {"Cox, Clara"});
    Click(*screen, "cmdSave");
    const Sent sent = LastSent("UpdMPrf");
    EXPECT_EQ(sent.fields.mid(0, 4),
              (wire::Fields{{"SOI", "SYSADMIN"}, {"OSt", "3"}, {"SOI", "CLARA"}, {"OSt", "1"}}));
    EXPECT_EQ(Ask("LstOpr", {{"Srt", "L"}}), status::NotAuthorised) << "at once";

    ASSERT_TRUE(StartAs("CLARA", firstPassword));
    screen = &Edit("CLARA");
    Check(*screen, "chkRestrictChange");
    Check(*screen, "chkExpireNow");
    prompter.ExpectBox(lastHolder, true, {}, "Cannot Save Operator Profile");
    Click(*screen, "cmdSave");
    Click(*screen, "cmdCancel");
    ExpectDeleteQuestion("Operator Profile", "Cox, Clara J CLARA");
    prompter.ExpectBox(lastHolder, true, {}, "Cannot Delete Operator Profile");
    Click(*screen, "cmdDelete");
    EXPECT_TRUE(Rows(*screen).contains("Cox, Clara J|CLARA"));
    Grid(*screen).SelectKey("GUEST");
    ExpectDeleteQuestion("Operator Profile", "Guest, Sample GUEST");
    Click(*screen, "cmdDelete");
    EXPECT_EQ(LastSent("DelOpr").fields, (wire::Fields{{"OI", "GUEST"}}));
    EXPECT_FALSE(Rows(*screen).contains("Guest, Sample|GUEST"));
}

TEST_F(SecurityRecordsTest, TwoRecordsAreCompared) {
    SignOn("SYSADMIN");
    Screen* screen = &Open(profiles);
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
        EXPECT_EQ(summary, QString("%1 differences.").arg(different.size()));
        Click(dialog, "cmdClose");
    });
    Click(*screen, "cmdCompare");

    screen = &Open(operators);
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
