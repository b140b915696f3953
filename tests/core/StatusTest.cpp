#include "CoreTest.h"

#include "core/data/StatusTable.h"
#include "support/Words.h"

#include <QDialog>
#include <QFile>
#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace sysadmin {

namespace {

TEST(StatusTable, SaysOfEveryStatusWhatItsTableSays) {
    QFile file(QString(SYSADMIN_SOURCE_DIR) + "/tests/core/statuses.txt");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QHash<int, StatusText> wanted;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        const QStringList words = testing::SplitWords(line);
        if (words.size() == 3)
            wanted[words[1].toInt()] = {words[2], words[0] == u"serious"};
    }
    ASSERT_EQ(wanted.size(), 107);
    for (int status = -32768; status <= 32767; ++status) {
        const StatusText is = TextOfStatus(qint16(status));
        const StatusText text = wanted.value(status, {"Database Error", true});
        ASSERT_EQ(is.message, text.message) << status;
        ASSERT_EQ(is.serious, text.serious) << status;
    }
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
