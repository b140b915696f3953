#include "framework/ListGrid.h"
#include "support/ScreenTest.h"
#include "system/frmSystem_FineFeeReasons.h"

#include <QTabWidget>

namespace sysadmin {

namespace {

const wire::Fields ThreeLists{{"ID", "1"},    {"Cd", "OVER"},      {"Nm", "Overdue"}, {"ID", "2"},
                              {"Cd", "LOST"}, {"Nm", "Lost item"}, {"PId", "1"},      {"PNm", "Cash"},
                              {"PId", "2"},   {"PNm", "Card"},     {"PstId", "1"},    {"PstNm", "Waiver"},
                              {"TF", "Y"},    {"TD", "N"},         {"PstId", "2"},    {"PstNm", "Amnesty"},
                              {"TF", "N"},    {"TD", "Y"}};

class FineFeeReasonsTest : public ScreenTest {
protected:
    void OpenLists() {
        channel.Answer("LstFee", 0, ThreeLists);
        Open<frmSystem_FineFeeReasons>();
    }
    void ShowTab(int tab) { Get<QTabWidget>("tabTables").setCurrentIndex(tab); }
    void Delete(const QString& noun, const QString& text, qint16 status, const QString& request) {
        prompter.ExpectBox("You will delete " + noun + ":\r\n\"" + text + "\"\r\n\r\nAre you sure?");
        channel.Answer(request, status);
        Click("cmdDelete");
    }
};

TEST_F(FineFeeReasonsTest, NounAndRequestsFollowTheTab) {
    OpenLists();
    Grid("vsfFineFeeReasons").SelectKey("2");
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Fine Fee Reason:");
    EXPECT_FALSE(Get<QTabWidget>("tabTables").tabBar()->isEnabled()) << "the edit belongs to this tab";
    Type("txtCode", "LST");
    channel.Answer("UpdFee", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"ID", "2"}, {"Cd", "LST"}, {"Nm", "Lost item"}, {"NCd", "Y"}, {"NNm", "N"}}));

    ShowTab(1);
    Click("cmdNew");
    EXPECT_EQ(FrameCaption(), "New Payment Type:");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtPaymentName", "Voucher");
    channel.Answer("AddPmt", 0, {{"PId", "3"}, {"PNm", "Voucher"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"AddPmt", {{"PNm", "Voucher"}}}));
    EXPECT_EQ(Grid("vsfPaymentTypes").SelectedKey(), "3");

    ShowTab(2);
    Grid("vsfPostingTypes").SelectKey("2");
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Posting Type:");
    EXPECT_TRUE(Get<QCheckBox>("chkDemerits").isChecked());
    Check("chkFines", true);
    Type("txtPostingName", "Amnesty week");
    channel.Answer("UpdPstTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"PstId", "2"},
                                                        {"PstNm", "Amnesty week"},
                                                        {"TF", "Y"},
                                                        {"TD", "Y"},
                                                        {"NCd", "N"},
                                                        {"NNm", "Y"}}));
    Click("cmdEdit");
    EXPECT_TRUE(Get<QCheckBox>("chkFines").isChecked()) << "the list keeps the saved switches";
}

TEST_F(FineFeeReasonsTest, DeletesAndRefusalsFollowTheTab) {
    OpenLists();
    prompter.ExpectBox("You will delete Fine Fee Reason:\r\n\"LOST\"\r\n\r\nAre you sure?");
    channel.Answer("DelFee", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Edit Print Locations", "Fine Fee Reason");
    Click("cmdDelete");
    ShowTab(1);
    Delete("Payment Type", "Card", 0, "DelPmt");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"PId", "2"}}));
    EXPECT_EQ(GridRows("vsfPaymentTypes"), QStringList{"Cash"});
    ShowTab(2);
    prompter.ExpectBox("You will delete Posting Type:\r\n\"Amnesty\"\r\n\r\nAre you sure?");
    channel.Answer("DelPstTp", 13);
    prompter.ExpectBox("Record is in use.");
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"PstId", "2"}}));

    Click("cmdNew");
    Type("txtPostingName", "Waiver");
    channel.Answer("AddPstTp", 7);
    prompter.ExpectBox("This name already exists.  Please enter a unique name.");
    Get<QWidget>("chkFines").setFocus();
    Click("cmdSave");
    EXPECT_TRUE(Get<QWidget>("txtPostingName").hasFocus());
}

} // namespace

} // namespace sysadmin
