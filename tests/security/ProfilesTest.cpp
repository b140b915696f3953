#include "framework/ListGrid.h"
#include "security/CompareDialog.h"
#include "security/ProfileScreen.h"
#include "support/ScreenTest.h"

#include <QDialog>
#include <QLabel>

namespace sysadmin {

namespace {

const QStringList MasterOrder{"Sec",       "SecV",    "ChgPwd",      "SysDf",      "SysDfV",
                              "ASPG",      "ASPGV",   "CatPG",       "CatPGV",     "CrcPG",
                              "CrcPGV",    "CrCnv",   "CrCnvV",      "MSPG",       "CluCreate",
                              "CluDelete", "CluEdit", "CluViewOnly", "EditPatGrp", "PatGrpV"};

const QString LastHolder = "At least one operator must keep the right to change security settings.";

/// A profile screen made from a declaration, as the catalogue does it.
template <ProfileSpec (*Spec)()>
class ScreenOf : public ProfileScreen {
public:
    ScreenOf(Application& application, QWidget* parent)
        : ProfileScreen(application, Spec(), parent) {}
};

wire::Fields Tagged(const QStringList& tags, const QString& value) {
    wire::Fields fields;
    for (const QString& tag : tags)
        fields.append({tag, value});
    return fields;
}

class ProfilesTest : public ScreenTest {
protected:
    void OpenMaster() {
        channel.Answer("LstMPrf", 0, {{"ID", "1"}, {"Nm", "Admins"}, {"ID", "2"}, {"Nm", "Viewers"}});
        Open<ScreenOf<MasterProfileSpec>>();
    }
    /// Two locations and two operators on each side; "Sec" is on.
    void AnswerGet(const QString& name = "Admins") {
        channel.Answer("GetMPrf", 0,
                       wire::Fields{{"Nm", name}, {"Sec", "Y"}} + wire::Fields{{"1", "11"},
                                                                               {"2", "Annex"},
                                                                               {"1", "12"},
                                                                               {"2", "Attic"},
                                                                               {"3", "21"},
                                                                               {"4", "Main"},
                                                                               {"3", "22"},
                                                                               {"4", "Law"},
                                                                               {"AOI", "ANN"},
                                                                               {"AON", "Ann"},
                                                                               {"AOI", "BOB"},
                                                                               {"AON", "Bob"},
                                                                               {"SOI", "SUE"},
                                                                               {"SON", "Sue"},
                                                                               {"SOI", "TOM"},
                                                                               {"SON", "Tom"}});
    }
    void Pick(const QString& grid, const QString& key) { ASSERT_TRUE(Grid(grid).SelectKey(key)); }
};

TEST_F(ProfilesTest, OnlyMovedRowsAreSentThenAllRightsThenTheName) {
    OpenMaster();
    AnswerGet();
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetMPrf", {{"ID", "1"}}}));
    EXPECT_TRUE(Get<QCheckBox>("chkSecurity").isChecked());
    EXPECT_EQ(GridRows("vsfSelectedOperators"), (QStringList{"Sue", "Tom"}));

    Pick("vsfAvailableOperators", "BOB");
    Click("cmdSelectOperator");
    Pick("vsfSelectedOperators", "SUE");
    Click("cmdDiscardOperator");
    Pick("vsfAvailableOperators", "ANN"); // out and back again: not sent
    Click("cmdSelectOperator");
    Pick("vsfSelectedOperators", "ANN");
    Click("cmdDiscardOperator");
    Click("cmdDiscardAllLocations");
    Pick("vsfAvailableLocations", "12");
    Click("cmdSelectLocation");
    Check("chkSecurity", false);
    Check("chkClusterEdit", true);
    channel.Answer("UpdMPrf", 0);
    Click("cmdSave");

    wire::Fields expected{{"SOI", "SUE"}, {"OSt", "3"}, {"SOI", "BOB"}, {"OSt", "1"}, {"3", "21"},
                          {"LSt", "3"},   {"3", "22"},  {"LSt", "3"},   {"3", "12"},  {"LSt", "1"}};
    for (const QString& tag : MasterOrder)
        expected.append({tag, tag == u"CluEdit" ? "Y" : "N"});
    expected += {{"Nm", "Admins"}, {"ID", "1"}, {"NNm", "N"}};
    EXPECT_EQ(channel.sent.last().fields, expected);
}

TEST_F(ProfilesTest, NewProfileGetsOperatorsInBatchesAndEveryLocation) {
    OpenMaster();
    channel.Answer("AvlMPrf", 55, {{"AOI", "ANN"}, {"AON", "Ann"}});
    channel.Answer("AvlMPrf", 0, {{"AOI", "BOB"}, {"AON", "Bob"}});
    channel.Answer(
        "LstLoc", 0,
        {{"ID", "11"}, {"Cd", "MAIN"}, {"Nm", "Main"}, {"ID", "12"}, {"Cd", "LAW"}, {"Nm", "Law"}});
    Click("cmdNew");
    EXPECT_EQ(GridRows("vsfAvailableOperators"), (QStringList{"Ann", "Bob"}));
    EXPECT_EQ(GridRows("vsfAvailableLocations"), (QStringList{"Main", "Law"}));
    EXPECT_EQ(channel.sent[2].fields, (wire::Fields{{"55", "Y"}}));
    Type("txtName", "Deputies");
    channel.Answer("AddMPrf", 0, {{"ID", "2"}, {"Nm", "Viewers"}, {"ID", "9"}, {"Nm", "Deputies"}});
    Click("cmdSave");
    const wire::Fields expected = Tagged(MasterOrder, "N") + wire::Fields{{"Nm", "Deputies"}};
    EXPECT_EQ(channel.sent.last().fields, expected);
    EXPECT_EQ(Grid().SelectedKey(), "9");
}

TEST_F(ProfilesTest, TheLastHolderOfTheSecurityRightStays) {
    OpenMaster();
    AnswerGet();
    Click("cmdEdit");
    Check("chkSecurity", false);
    channel.Answer("UpdMPrf", 53);
    prompter.ExpectBox(LastHolder);
    Click("cmdSave");
    EXPECT_FALSE(Get<QCheckBox>("chkSecurity").isChecked())
        << "the edit is still open as the operator left it";
    EXPECT_TRUE(IsEnabled("fraEdit"));
    Click("cmdCancel");
    channel.Answer("DelMPrf", 53);
    prompter.ExpectBox("You will delete Master Profile:\r\n\"Admins\"\r\n\r\nAre you sure?");
    prompter.ExpectBox(LastHolder);
    Click("cmdDelete");
    EXPECT_EQ(GridRows().size(), 2);
}

TEST_F(ProfilesTest, FailedGetIsReportedInTheOddWords) {
    OpenMaster();
    channel.Answer("GetMPrf", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Edit Security Cataloging Profile",
                      "Master Profile");
    Click("cmdEdit");
    EXPECT_FALSE(IsEnabled("fraEdit"));
}

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

TEST_F(ProfilesTest, EveryRightOfEveryModuleIsReadAndPutUnderItsTag) {
    for (const ProfileSpec& spec :
         {CatalogingProfileSpec(), CirculationProfileSpec(), AcqSerialsProfileSpec(), ReportingProfileSpec(),
          GlobalDataChangeProfileSpec(), MasterProfileSpec()}) {
        ProfileForm form(spec);
        ScriptedChannel one;
        for (FlagField& right : form.rights) {
            one.Answer("Get", 0, {{"Nm", "P"}, {right.Tag(), "Y"}});
            one.SendRequest("Get");
            form.Read(one);
            for (FlagField& other : form.rights) {
                other.Put(one);
                EXPECT_EQ(other.IsOn(), &other == &right) << right.Tag().toStdString();
            }
            one.Answer("Put", 0);
            one.SendRequest("Put");
            EXPECT_EQ(one.sent.last().Value(right.Tag()), "Y");
        }
        for (const QString& tag : spec.putOrder)
            EXPECT_TRUE(form.FindRight(tag) || spec.alwaysNo.contains(tag)) << tag.toStdString();
        EXPECT_TRUE(spec.putOrder.isEmpty() ||
                    spec.putOrder.size() == qsizetype(form.rights.size()) + spec.alwaysNo.size());
    }
}

} // namespace

} // namespace sysadmin
