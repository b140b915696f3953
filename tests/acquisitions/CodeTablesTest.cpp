#include "acquisitions/AcquisitionsScreens.h"
#include "support/ScreenTest.h"

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class CodeTablesTest : public ScreenTest {};

TEST_F(CodeTablesTest, ClaimTypeIsLoadedChangedAndDeleted) {
    channel.Answer("LstClm", 0, {{"ID", "7"}, {"D", "Not received"}});
    Open(AddAcquisitionsScreens, "Acquisitions_ClaimTypes");
    application.pickLists.Set("cboClaimType", {{"7", "Not received"}});
    channel.Answer("GetClm", 0, {{"D", "Not received"}, {"E", "NR"}});
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetClm", {{"ID", "7"}}}));
    Type("txtName", "Never received");
    channel.Answer("UpdClm", 7);
    prompter.ExpectBox("This name already exists.  Please enter a unique name.");
    Click("cmdSave");
    channel.Answer("UpdClm", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (Sent{"UpdClm", {{"ID", "7"}, {"D", "Never received"}, {"E", "NR"}, {"NNm", "Y"}}}));
    EXPECT_EQ(GridRows(), QStringList{"Never received"});
    EXPECT_EQ(application.pickLists.Items("cboClaimType"), (QList<PickItem>{{"7", "Never received"}}));

    prompter.ExpectBox("You will delete Claim Type:\r\n\"Never received\"\r\n\r\nAre you sure?");
    prompter.ExpectBox("This claim type cannot be deleted because it is in a Mark Reason record.");
    channel.Answer("DelClm", 74);
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Claim Type:\r\n\"Never received\"\r\n\r\nAre you sure?");
    channel.Answer("DelClm", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Delete Acquisitions Claim Type", "Claim Type");
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Claim Type:\r\n\"Never received\"\r\n\r\nAre you sure?");
    channel.Answer("DelClm", 0);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelClm", {{"ID", "7"}}}));
    EXPECT_TRUE(application.pickLists.Items("cboClaimType").isEmpty());
}

TEST_F(CodeTablesTest, ClaimTypeSaveFailureHasItsOwnCaption) {
    channel.Answer("LstClm", 0);
    Open(AddAcquisitionsScreens, "Acquisitions_ClaimTypes");
    Click("cmdNew");
    Type("txtEDICode", "NR");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtName", "Not received");
    channel.Answer("AddClm", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save Acquisitions Claim Type", "Claim Type");
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddClm", {{"D", "Not received"}, {"E", "NR"}}}));
}

TEST_F(CodeTablesTest, POTypeIsKnownByItsNumber) {
    const wire::Fields types{{"T", "0"}, {"D", "Approval"}, {"B", "N"}, {"RT", "N"},
                             {"T", "3"}, {"D", "Gift"},     {"B", "N"}, {"RT", "N"}};
    channel.Answer("LstPOTp", 0, types);
    Open(AddAcquisitionsScreens, "Acquisitions_POTypes");
    EXPECT_EQ(GridRows(), (QStringList{"Approval", "Gift"}));
    Grid().SelectKey("3");
    channel.Answer("GetPOTp", 0, {{"D", "Gift"}});
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetPOTp", {{"T", "3"}}}));
    Type("txtName", "Exchange");
    channel.Answer("UpdPOTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"UpdPOTp", {{"T", "3"}, {"D", "Exchange"}, {"NNm", "Y"}}}));

    Click("cmdNew");
    Type("txtName", "Deposit account");
    channel.Answer("AddPOTp", 0, {{"T", "8"}, {"D", "Deposit account"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddPOTp", {{"D", "Deposit account"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "8");

    prompter.ExpectBox("You will delete PO Type:\r\n\"Deposit account\"\r\n\r\nAre you sure?");
    prompter.ExpectBox("This PO type cannot be deleted because it is used in a Purchase Order record.");
    channel.Answer("DelPOTp", 91);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelPOTp", {{"T", "8"}}}));
    prompter.ExpectBox("You will delete PO Type:\r\n\"Deposit account\"\r\n\r\nAre you sure?");
    channel.Answer("DelPOTp", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Delete Acquisitions PO Types", "PO Type");
    Click("cmdDelete");
}

TEST_F(CodeTablesTest, VendorReportKeepsItsCodeWhenOnlyTheNameChanges) {
    channel.Answer("LstVRpt", 0, {{"ID", "2"}, {"Nm", "Out of stock"}});
    Open(AddAcquisitionsScreens, "Acquisitions_VendorReports");
    channel.Answer("GetVRpt", 0, {{"Nm", "Out of stock"}, {"E", "OS"}});
    Click("cmdEdit");
    Type("txtName", "Temporarily out of stock");
    channel.Answer("UpdVRpt", 0);
    Click("cmdSave");
    EXPECT_EQ(
        channel.sent.last(),
        (Sent{"UpdVRpt", {{"ID", "2"}, {"Nm", "Temporarily out of stock"}, {"E", "OS"}, {"NNm", "Y"}}}));
}

TEST_F(CodeTablesTest, VendorReportIsKeptForClaimsOfBothKinds) {
    channel.Answer("LstVRpt", 0, {{"ID", "2"}, {"Nm", "Out of stock"}});
    Open(AddAcquisitionsScreens, "Acquisitions_VendorReports");
    for (const auto& [status, text] :
         {std::pair{63,
                    "This Vendor Report cannot be deleted because it is used in a Non-Serials Claim record."},
          std::pair{64,
                    "This Vendor Report cannot be deleted because it is used in a Serials Claim record."}}) {
        prompter.ExpectBox("You will delete Vendor Report:\r\n\"Out of stock\"\r\n\r\nAre you sure?");
        prompter.ExpectBox(text);
        channel.Answer("DelVRpt", status);
        Click("cmdDelete");
        EXPECT_EQ(channel.sent.last(), (Sent{"DelVRpt", {{"ID", "2"}}}));
    }
    prompter.ExpectBox("You will delete Vendor Report:\r\n\"Out of stock\"\r\n\r\nAre you sure?");
    channel.Answer("DelVRpt", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Delete Acquisitions Vendor Reports",
                      "Vendor Report");
    Click("cmdDelete");
}

} // namespace

} // namespace sysadmin
