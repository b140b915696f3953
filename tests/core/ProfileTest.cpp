#include "CoreTest.h"

#include "core/data/YesNo.h"

namespace sysadmin {

namespace {

class ProfileTest : public CoreTest {};

TEST_F(ProfileTest, ViewingGivesAccessButNoEditing) {
    const SecurityProfile profile = ProfileWith({"ASPGV", "Sec", "PatGrpV", "CrCnv"});
    EXPECT_TRUE(profile.AcqAccess() && profile.AcqView());
    EXPECT_FALSE(profile.AcqEdit());
    EXPECT_TRUE(profile.SecurityAccess() && profile.SecurityEdit());
    EXPECT_FALSE(profile.SecurityView());
    EXPECT_TRUE(profile.PatronGroupAccess());
    EXPECT_FALSE(profile.PatronGroupEdit());
    EXPECT_TRUE(profile.CircConvAccess());
    EXPECT_FALSE(profile.CatAccess() || profile.CircAccess() || profile.SystemAccess() ||
                 profile.ChangePassword() || profile.MainWindowFlag() || profile.LoadFailed());
}

TEST_F(ProfileTest, AsksForTheOperatorTwiceAndTakesTheDecimals) {
    channel.Answer("SAInit", 0, {{"Dec", "3"}, {"ChgPwd", "Y"}});
    channel.Answer("CheckMasterProfile", 0);
    SecurityProfile profile;
    profile.Load(channel, "ANNA");
    const QList<ScriptedChannel::Sent> wanted{{"SAInit", {{"OI", "ANNA"}}},
                                              {"CheckMasterProfile", {{"OI", "ANNA"}}}};
    EXPECT_EQ(channel.sent, wanted);
    EXPECT_EQ(profile.MoneyDecimals(), 3);
    EXPECT_TRUE(profile.ChangePassword());
}

TEST_F(ProfileTest, OneFailureIsEnoughAndGrantsNothing) {
    for (const bool firstFails : {true, false}) {
        channel.Answer("SAInit", firstFails ? 2 : 0, {{"ASPG", "Y"}});
        channel.Answer("CheckMasterProfile", firstFails ? 0 : 1, {{"EditPatGrp", "Y"}});
        SecurityProfile profile;
        profile.Load(channel, "ANNA");
        EXPECT_TRUE(profile.LoadFailed());
        EXPECT_EQ(profile.AcqEdit(), !firstFails);
        EXPECT_EQ(profile.PatronGroupEdit(), firstFails);
    }
    EXPECT_TRUE(channel.AllAnswered()) << "the second request must follow a failure of the first";
}

TEST_F(ProfileTest, YesNoConversions) {
    channel.Answer("Get", 0, {{"N", "N"}, {"Y", "Y"}, {"y", "y"}, {"E", ""}});
    channel.SendRequest("Get");
    EXPECT_EQ(YNToCheck(channel, "N"), 0);
    EXPECT_EQ(YNToCheck(channel, "Y"), 1);
    EXPECT_EQ(YNToCheck(channel, "y"), -1);
    EXPECT_EQ(YNToCheck(channel, "E"), -1);
    EXPECT_EQ(YNToCheck(channel, "missing"), -1);
    EXPECT_EQ(YNIndex("NY"), -1);
    EXPECT_EQ(CheckToYN(0) + CheckToYN(1), "NY");
    EXPECT_EQ(CheckToYN(2), "");
    EXPECT_EQ(BoolToYN(true) + BoolToYN(false), "YN");
}

TEST(PickLists, FollowSavesAndDeletesButWaitForTheirFirstReader) {
    PickLists lists;
    QStringList changed;
    QObject::connect(&lists, &PickLists::Changed, [&](const QString& list) { changed.append(list); });

    lists.Put({"cboItemType"}, {"1", "Book"});
    EXPECT_FALSE(lists.Has("cboItemType")) << "a list with one entry would pass for the whole";
    lists.Set("cboItemType", {{"2", "map"}, {"1", "Book"}, {"3", "Atlas"}});
    const QList<PickItem> sorted{{"3", "Atlas"}, {"1", "Book"}, {"2", "map"}};
    EXPECT_EQ(lists.Items("cboItemType"), sorted);

    lists.Put({"cboItemType", "cboOther"}, {"1", "Zine"});
    lists.Remove({"cboItemType"}, "3");
    lists.Remove({"cboItemType"}, "no such id");
    const QList<PickItem> after{{"2", "map"}, {"1", "Zine"}};
    EXPECT_EQ(lists.Items("cboItemType"), after);
    EXPECT_EQ(changed, QStringList({"cboItemType", "cboItemType", "cboItemType"}));
}

} // namespace

} // namespace sysadmin
