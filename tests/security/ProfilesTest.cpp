#include "framework/ListGrid.h"
#include "security/CompareDialog.h"
#include "security/ProfileScreen.h"
#include "support/ScreenTest.h"

#include <QDialog>

namespace sysadmin {

namespace {

/// A profile screen made from a declaration, as the catalogue does it.
template <ProfileSpec (*Spec)()>
class ScreenOf : public ProfileScreen {
public:
    ScreenOf(Application& application, QWidget* parent)
        : ProfileScreen(application, Spec(), parent) {}
};

class ProfilesTest : public ScreenTest {
protected:
    void OpenMaster() {
        channel.Answer("LstMPrf", 0, {{"ID", "1"}, {"Nm", "Admins"}, {"ID", "2"}, {"Nm", "Viewers"}});
        Open<ScreenOf<MasterProfileSpec>>();
    }
    void AnswerGet() {
        channel.Answer("GetMPrf", 0,
                       {{"Nm", "Admins"},
                        {"Sec", "Y"},
                        {"1", "11"},
                        {"2", "Annex"},
                        {"3", "21"},
                        {"4", "Main"},
                        {"3", "22"},
                        {"4", "Law"},
                        {"AOI", "ANN"},
                        {"AON", "Ann"},
                        {"SOI", "SUE"},
                        {"SON", "Sue"},
                        {"SOI", "TOM"},
                        {"SON", "Tom"}});
    }
};

TEST_F(ProfilesTest, DuplicateIsANewProfileWithTheSameRightsAndMembers) {
    OpenMaster();
    AnswerGet();
    Click("cmdDuplicate");
    EXPECT_EQ(FrameCaption(), "New Master Profile:");
    Type("txtName", "Admins 2");
    channel.Answer("AddMPrf", 0, {{"ID", "9"}, {"Nm", "Admins 2"}});
    Click("cmdSave");
    const ScriptedChannel::Sent sent = channel.sent.last();
    EXPECT_EQ(sent.Values("SOI"), (QStringList{"SUE", "TOM"}));
    EXPECT_EQ(sent.Values("OSt"), (QStringList{"1", "1"}));
    EXPECT_EQ(sent.Values("3"), (QStringList{"21", "22"}));
    EXPECT_EQ(sent.Value("Sec"), "Y");
    EXPECT_EQ(sent.Value("ID"), "");
}

TEST_F(ProfilesTest, ComparisonMarksWhatDiffers) {
    OpenMaster();
    AnswerGet();
    // Another location of the same name is another location.
    channel.Answer(
        "GetMPrf", 0,
        {{"Nm", "Viewers"}, {"SecV", "Y"}, {"SOI", "SUE"}, {"SON", "Sue"}, {"3", "31"}, {"4", "Main"}});
    prompter.ExpectDialog("frmCompare", [](QDialog& dialog) {
        dialog.findChild<QCheckBox*>("chkOnlyDifferences")->click();
        const GridModel& model = dialog.findChild<ListGrid*>()->Model();
        QStringList items;
        for (int row = 0; row < model.rowCount(); ++row)
            items.append(model.CellText(row, 2) + "=" + model.CellText(row, 3) + "/" +
                         model.CellText(row, 4));
        EXPECT_EQ(items, (QStringList{"Security (add, edit, delete)=Yes/No", "Security (view)=No/Yes",
                                      "Tom=Yes/No", "Main=Yes/No", "Law=Yes/No", "Main=No/Yes"}));
        return false;
    });
    Click("cmdCompare");
}

TEST_F(ProfilesTest, PatronIdsTravelInARequestOfTheirOwn) {
    channel.Answer("LstCrPrf", 0, {{"ID", "1"}, {"Nm", "Desk"}});
    Open<ScreenOf<CirculationProfileSpec>>();
    channel.Answer("GetCrPrf", 0,
                   {{"Nm", "Desk"},
                    {"AllLoc", "N"},
                    {"SelItmBlkID", "7"},
                    {"SelItmBlkNm", "Lost"},
                    {"API", "3"},
                    {"APN", "Barcode"}});
    Click("cmdEdit");
    Click("cmdSelectAllPatronIds");
    Click("cmdDiscardAllItemBlocks");
    Check("chkAllLoc", true);
    EXPECT_FALSE(IsEnabled("cmdSelectLocation"));
    channel.Answer("UpdCrPrf", 0);
    channel.Answer("UpdPINs", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Save Security Circulation Profiles",
                      "Circulation Profile");
    Click("cmdSave");
    EXPECT_TRUE(IsEnabled("fraEdit")) << "what was not stored must not be lost";
    const ScriptedChannel::Sent profile = channel.LastSent("UpdCrPrf");
    EXPECT_EQ(profile.fields.mid(0, 3), (wire::Fields{{"AllLoc", "Y"}, {"SelItmBlkID", "7"}, {"IBSt", "3"}}));
    EXPECT_EQ(profile.Value("SPI"), "");
    const qsizetype sent = channel.sent.size();
    channel.Answer("UpdPINs", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.size(), sent + 1) << "the profile itself is stored already";
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"ID", "1"}, {"SPI", "3"}, {"PSt", "1"}}));
    EXPECT_FALSE(IsEnabled("fraEdit"));
}

} // namespace

} // namespace sysadmin
