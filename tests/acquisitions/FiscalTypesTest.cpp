#include "acquisitions/frmAcquisitions_FiscalTypes.h"
#include "support/ScreenTest.h"

#include <QDateEdit>

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class FiscalTypesTest : public ScreenTest {
protected:
    void OpenOne() {
        channel.Answer("LstFscPr", 0, {{"ID", "3"}, {"Nm", "FY 2027"}});
        Open<frmAcquisitions_FiscalTypes>();
    }
};

TEST_F(FiscalTypesTest, PeriodThatEndsBeforeItStartsIsNotSent) {
    OpenOne();
    Click("cmdNew");
    Type("txtName", "FY 2028");
    EXPECT_FALSE(IsEnabled("cmdSave")) << "both dates are needed";
    Get<QDateEdit>("fpStartDate").setDate(QDate(2027, 7, 1));
    Get<QDateEdit>("fpEndDate").setDate(QDate(2027, 6, 30));
    prompter.ExpectBox("The end date must not be before the start date.", true, Box::Icon::Exclamation);
    Click("cmdSave");
    EXPECT_EQ(channel.SentNames(), QStringList{"LstFscPr"});
    EXPECT_TRUE(IsEnabled("fraEdit"));

    Get<QDateEdit>("fpEndDate").setDate(QDate(2027, 7, 1)); // one day is a period, too
    channel.Answer("AddFscPr", 0, {{"ID", "3"}, {"Nm", "FY 2027"}, {"ID", "4"}, {"Nm", "FY 2028"}});
    Click("cmdSave");
    EXPECT_EQ(
        channel.sent.last(),
        (Sent{"AddFscPr", {{"Nm", "FY 2028"}, {"StDt", "2027-07-01"}, {"EDt", "2027-07-01 23:59:59"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "4");
}

} // namespace

} // namespace sysadmin
