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

} // namespace

} // namespace sysadmin
