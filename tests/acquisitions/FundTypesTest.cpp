#include "acquisitions/frmAcquisitions_FundTypes.h"
#include "support/ScreenTest.h"

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class FundTypesTest : public ScreenTest {
protected:
    void OpenOne() {
        channel.Answer("LstFndTp", 0, {{"ID", "3"}, {"Nm", "Allocated"}});
        Open<frmAcquisitions_FundTypes>();
    }
};

TEST_F(FundTypesTest, OnlyCheckedPairsSendAPercentage) {
    OpenOne();
    const wire::Fields record{{"Nm", "Allocated"}, {"OCW", "Y"}, {"OCWP", "90"},  {"OEW", "N"},
                              {"OEWP", ""},        {"OCL", "Y"}, {"OCLP", "110"}, {"OEL", "N"},
                              {"OELP", "75"},      {"UC", "N"},  {"UCP", ""},     {"UE", "Y"},
                              {"UEP", "0"}};
    channel.Answer("GetFndTp", 0, record);
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetFndTp", {{"ID", "3"}}}));
    EXPECT_TRUE(IsEnabled("txtOvercommitLimitPercent"));
    EXPECT_FALSE(IsEnabled("txtOverexpendLimitPercent"));

    Check("chkOverCommitWarning", false);
    Check("chkUndercommit", true);
    EXPECT_FALSE(IsEnabled("txtOvercommitWarningPercent"));
    EXPECT_FALSE(IsEnabled("cmdSave")) << "a checked pair needs its percentage";
    Type("txtUnderCommitPercent", "25");
    channel.Answer("UpdFndTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"UpdFndTp",
                                         {{"ID", "3"},
                                          {"Nm", "Allocated"},
                                          {"OCW", "N"},
                                          {"OEW", "N"},
                                          {"OCL", "Y"},
                                          {"OCLP", "110"},
                                          {"OEL", "N"},
                                          {"UC", "Y"},
                                          {"UCP", "25"},
                                          {"UE", "Y"},
                                          {"UEP", "0"},
                                          {"NNm", "N"}}}));
}

TEST_F(FundTypesTest, NewTypeIsFoundInTheReplyByItsName) {
    OpenOne();
    Click("cmdNew");
    Type("txtName", "Endowment");
    channel.Answer("AddFndTp", 0, {{"ID", "3"}, {"Nm", "Allocated"}, {"ID", "8"}, {"Nm", "Endowment"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddFndTp",
                                         {{"Nm", "Endowment"},
                                          {"OCW", "N"},
                                          {"OEW", "N"},
                                          {"OCL", "N"},
                                          {"OEL", "N"},
                                          {"UC", "N"},
                                          {"UE", "N"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "8");
    prompter.ExpectBox("You will delete Fund Type:\r\n\"Endowment\"\r\n\r\nAre you sure?");
    prompter.ExpectBox("This fund type cannot be deleted while there are fund records assigned to it.");
    channel.Answer("DelFndTp", 88);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelFndTp", {{"ID", "8"}}}));
}

} // namespace

} // namespace sysadmin
