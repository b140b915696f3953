#include "CoreTest.h"

#include "core/data/StatusTable.h"

#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QSet>

namespace sysadmin {

namespace {

const QSet<int> SeriousStatuses{1, 2, 3, 4, 5, 6, 10, 11, 12, 14, 15};

bool HasText(int status) {
    return (status >= 1 && status <= 16) || (status >= 20 && status <= 52) ||
           (status >= 56 && status <= 96) || (status >= 101 && status <= 103) || status == 111 ||
           status == 120 || status == 123 || status == 130 || status == 131 || status == -92;
}

TEST(StatusTable, RoutesEveryStatusToTheRightPlace) {
    for (int status = -32768; status <= 32767; ++status) {
        const StatusText text = TextOfStatus(qint16(status));
        if (HasText(status)) {
            ASSERT_EQ(text.serious, SeriousStatuses.contains(status)) << status;
            ASSERT_NE(text.message, "Database Error") << status;
        } else {
            ASSERT_TRUE(text.serious) << status;
            ASSERT_EQ(text.message, "Database Error") << status;
        }
    }
}

TEST(StatusTable, KeepsTextsToTheLetter) {
    const QHash<int, QString> texts{
        {1, "Communications Failure"},
        {4, "Duplicate Record"},
        {8, "This code already exists.  Please enter a unique code."},
        {12, "User is not authorized for System Administration."},
        {13, "Record is in use."},
        {16, "852B is a reserved search code.  Please enter a different code."},
        {24, "This location cannot be deleted while it belongs to an cataloging policy group."},
        {38, "This location cannot be deleted because it is being used in a issues received record."},
        {50, "This location cannot be deleted because it is in a Routing List Members record."},
        {56, "This calendar cannot be saved.  It is being used in more than one Circulation Policy Group "
             "with dates "
             "which overlap."},
        {60, "Unable to connect to remote database.\r\n\r\nPlease retry after verifying that the database "
             "address and "
             "port numbers are correct. To save your changes anyway, please uncheck the UB Database box."},
        {82, "This application has a more recent version available.\r\n\r\nPlease see your system "
             "administrator."},
        {87, "This Fine/Fee Reason cannot be deleted since it is used in a Fine/Fee record."},
        {96, "This patron group cannot be deleted because it is being used in a UB Patron Group Home Policy "
             "record."},
        {123, "This calendar cannot be saved.  A date is outside the calendar's coverage dates."},
        {131, "Somebody else has changed this record in the meantime.  Nothing was saved."},
        {-92, "The server or database is not compatible with this version of your application. The "
              "application will "
              "be aborted. Client version: #  Server version: #  Database version: #"},
    };
    for (auto it = texts.begin(); it != texts.end(); ++it)
        EXPECT_EQ(TextOfStatus(qint16(it.key())).message, it.value()) << it.key();
    EXPECT_EQ(TextOfStatus(83).message, TextOfStatus(94).message);
    EXPECT_NE(TextOfStatus(85).message, TextOfStatus(95).message);
}

class ReportTest : public CoreTest {};

TEST_F(ReportTest, ShowsABoxForALightFailureWithThePrefixDirectlyInFront) {
    prompter.ExpectBox("Code X: This code already exists.  Please enter a unique code.", true,
                       Box::Icon::Exclamation, "System Administration");
    application.ReportRequestFailure(8, "Save Acquisitions Vendor Types", "Vendor Type", "Code X: ");
    prompter.ExpectBox("This code already exists.  Please enter a unique code.");
    application.ReportRequestFailure(8, "Save Acquisitions Vendor Types", "Vendor Type");
}

TEST_F(ReportTest, ShowsTheErrorDialogForASeriousFailure) {
    channel.problem = "The connection was cut off.";
    prompter.ExpectDialogResult("frmError", [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "System Error");
        const auto text = [&](const char* label) { return dialog.findChild<QLabel*>(label)->text(); };
        EXPECT_EQ(text("lblErrorMessage"), "Loading: Database Error");
        EXPECT_EQ(text("lblFormNameText"), "Vendor Type");
        EXPECT_EQ(text("lblModuleText"), "Load Acquisitions Vendor Types");
        EXPECT_EQ(text("lblReturnCodeText"), "-7");
        EXPECT_FALSE(dialog.findChild<QLabel*>("imgError")->pixmap(Qt::ReturnByValue).isNull());
        EXPECT_FALSE(dialog.findChild<QLabel*>("lblCauseText"));
        auto* expand = dialog.findChild<QPushButton*>("cmdDetailsExpand");
        auto* compress = dialog.findChild<QPushButton*>("cmdDetailsCompress");
        EXPECT_EQ(expand->text() + '|' + compress->text(), "&Details  >>|<<  &Details");
        const auto showsDetails = [&](bool shows) {
            return dialog.findChild<QFrame*>("fraDetails")->isVisible() == shows &&
                   compress->isVisible() == shows && expand->isVisible() != shows;
        };
        EXPECT_TRUE(showsDetails(false));
        expand->click();
        EXPECT_TRUE(showsDetails(true));
        compress->click();
        EXPECT_TRUE(showsDetails(false));
        dialog.findChild<QPushButton*>("cmdOKCompress")->click();
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
    });
    application.ReportRequestFailure(-7, "Load Acquisitions Vendor Types", "Vendor Type", "Loading: ");
    // Only of a failed communication is more known than the status says.
    prompter.ExpectDialogResult("frmError", [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLabel*>("lblCause")->text(), "Cause:");
        EXPECT_EQ(dialog.findChild<QLabel*>("lblCauseText")->text(), "The connection was cut off.");
    });
    application.ReportRequestFailure(1, "Load Acquisitions Vendor Types", "Vendor Type");
}

} // namespace

} // namespace sysadmin
