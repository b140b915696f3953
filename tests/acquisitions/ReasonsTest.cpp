#include "acquisitions/AcquisitionsScreens.h"
#include "support/ScreenTest.h"

#include <QLabel>

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class MarkReasonsTest : public ScreenTest {
protected:
    void OpenWith(const wire::Fields& reasons) {
        channel.Answer("LstClm", 0, {{"ID", "4"}, {"D", "Not received"}, {"ID", "5"}, {"D", "Damaged"}});
        channel.Answer("LstMark", 0, reasons);
        Open(AddAcquisitionsScreens, "Acquisitions_MarkReasons");
    }
};

TEST_F(MarkReasonsTest, ClaimTypeIsChosenAmongThoseThatExist) {
    OpenWith({{"ID", "1"}, {"Nm", "Pages missing"}});
    EXPECT_EQ(channel.SentNames(), (QStringList{"LstClm", "LstMark"}));
    channel.Answer("GetMark", 0, {{"Nm", "Pages missing"}, {"C", "5"}});
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetMark", {{"ID", "1"}}}));
    EXPECT_EQ(Get<QComboBox>("cboClaimType").currentText(), "Damaged");
    Choose("cboClaimType", "Not received");
    channel.Answer("UpdMark", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (Sent{"UpdMark", {{"ID", "1"}, {"Nm", "Pages missing"}, {"C", "4"}, {"NNm", "N"}}}));

    Click("cmdNew");
    Type("txtName", "Wrong title");
    channel.Answer("AddMark", 0, {{"ID", "9"}, {"Nm", "Wrong title"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddMark", {{"Nm", "Wrong title"}, {"C", ""}}}));
    EXPECT_EQ(Grid().SelectedKey(), "9");
}

TEST_F(MarkReasonsTest, ClaimTypesAreFollowedWhileTheScreenIsOpen) {
    OpenWith({{"ID", "1"}, {"Nm", "Pages missing"}});
    channel.Answer("GetMark", 0, {{"Nm", "Pages missing"}, {"C", "5"}});
    Click("cmdEdit");
    application.pickLists.Put({"cboClaimType"}, {"5", "Damaged in transit"});
    application.pickLists.Put({"cboClaimType"}, {"6", "Wrong edition"});
    EXPECT_EQ(Get<QComboBox>("cboClaimType").currentText(), "Damaged in transit");
    Choose("cboClaimType", "Wrong edition");
    channel.Answer("UpdMark", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().Value("C"), "6");
}

TEST_F(MarkReasonsTest, WithoutTheClaimTypesTheReasonsStillOpen) {
    channel.Answer("LstClm", 2);
    prompter.ExpectBox("Unable to load Available Mark Reasons.");
    channel.Answer("LstMark", 0, {{"ID", "1"}, {"Nm", "Pages missing"}});
    Open(AddAcquisitionsScreens, "Acquisitions_MarkReasons");
    channel.Answer("GetMark", 0, {{"Nm", "Pages missing"}, {"C", "5"}});
    Click("cmdEdit");
    Type("txtName", "Pages torn");
    channel.Answer("UpdMark", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"ID", "1"}, {"Nm", "Pages torn"}, {"C", "5"}, {"NNm", "Y"}}));
}

TEST_F(MarkReasonsTest, MarkedRecordsKeepTheirReason) {
    OpenWith({{"ID", "1"}, {"Nm", "Pages missing"}});
    for (const auto& [status, text] :
         {std::pair{65,
                    "This Mark Reason cannot be deleted because it is used in a Marked Line Item record."},
          std::pair{66, "This Mark Reason cannot be deleted because it is used in a Marked Issue record."}}) {
        prompter.ExpectBox("You will delete Mark Reason:\r\n\"Pages missing\"\r\n\r\nAre you sure?");
        prompter.ExpectBox(text);
        channel.Answer("DelMark", status);
        Click("cmdDelete");
        EXPECT_EQ(channel.sent.last(), (Sent{"DelMark", {{"ID", "1"}}}));
    }
    EXPECT_EQ(GridRows(), QStringList{"Pages missing"});

    prompter.ExpectBox("You will delete Mark Reason:\r\n\"Pages missing\"\r\n\r\nAre you sure?");
    channel.Answer("DelMark", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Delete Acquisitions Mark Reason", "Mark Reason");
    Click("cmdDelete");
}

class AdjustReasonsTest : public ScreenTest {};

TEST_F(AdjustReasonsTest, EveryPartOfAReasonTravels) {
    channel.Answer("LstVen", 0, {{"ID", "11"}, {"Cd", "ACME"}, {"Nm", "Acme"}, {"ID", "12"}, {"Nm", "Bolt"}});
    channel.Answer("LstAdj", 0, {{"ID", "1"}, {"T", "Freight"}, {"ID", "2"}, {"T", "Discount"}});
    Open(AddAcquisitionsScreens, "Acquisitions_AdjustReasons");
    EXPECT_EQ(GridRows(), (QStringList{"Discount", "Freight"}));

    channel.Answer("GetAdj", 0, {{"T", "Discount"}, {"EC", "DI"}, {"CC", "A"}, {"V", "12"}});
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Adjust Reason:");
    EXPECT_TRUE(Get<QAbstractButton>("optKindA").isChecked());
    EXPECT_EQ(Get<QAbstractButton>("optKindC").focusPolicy(), Qt::ClickFocus) << "one tab stop for both";
    EXPECT_FALSE(qobject_cast<QAbstractButton*>(Get<QLabel>("lblKind").buddy()))
        << "the label's key would choose the option";
    EXPECT_EQ(Get<QComboBox>("cboVendor").currentText(), "Bolt");
    Click("optKindC");
    channel.Answer("UpdAdj", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (Sent{"UpdAdj",
                    {{"ID", "2"}, {"T", "Discount"}, {"EC", "DI"}, {"CC", "C"}, {"V", "12"}, {"NNm", "N"}}}));

    Click("cmdNew");
    Type("txtName", "Handling");
    channel.Answer("AddAdj", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save Acquisitions Adjust Reason",
                      "Adjust Reason");
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"T", "Handling"}, {"EC", ""}, {"CC", "C"}, {"V", ""}}));
}

TEST_F(AdjustReasonsTest, ReasonIsDeletedUnlessPricesWereAdjustedForIt) {
    channel.Answer("LstVen", 0);
    channel.Answer("LstAdj", 0, {{"ID", "1"}, {"T", "Freight"}, {"ID", "2"}, {"T", "Discount"}});
    Open(AddAcquisitionsScreens, "Acquisitions_AdjustReasons");
    prompter.ExpectBox("You will delete Adjust Reason:\r\n\"Discount\"\r\n\r\nAre you sure?");
    prompter.ExpectBox(
        "This Adjust Reason cannot be deleted because it is used in a Price Adjustment record.");
    channel.Answer("DelAdj", 86);
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Adjust Reason:\r\n\"Discount\"\r\n\r\nAre you sure?");
    channel.Answer("DelAdj", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Delete Acquisitions Adjust Reason",
                      "Adjust Reason");
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Adjust Reason:\r\n\"Discount\"\r\n\r\nAre you sure?");
    channel.Answer("DelAdj", 0);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelAdj", {{"ID", "2"}}}));
    EXPECT_EQ(GridRows(), QStringList{"Freight"});
}

TEST_F(AdjustReasonsTest, FailedVendorsAreReportedUnderTheirOwnCaption) {
    channel.Answer("LstVen", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Get Vendors", "Adjust Reason");
    channel.Answer("LstAdj", 0, {{"ID", "1"}, {"T", "Freight"}});
    Open(AddAcquisitionsScreens, "Acquisitions_AdjustReasons");
    channel.Answer("GetAdj", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Edit Acquisitions Adjust Reason",
                      "Adjust Reason");
    Click("cmdEdit");
    EXPECT_FALSE(IsEnabled("fraEdit"));
}

} // namespace

} // namespace sysadmin
