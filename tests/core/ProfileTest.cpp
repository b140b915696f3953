#include "CoreTest.h"

#include "core/data/YesNo.h"

namespace sysadmin {

namespace {

class ProfileTest : public CoreTest {};

TEST_F(ProfileTest, ViewingGivesAccessButNoEditing) {
    const SecurityProfile profile = ProfileWith({"ASPGV", "Sec", "PatGrpV", "CrCnv"});
    EXPECT_TRUE(profile.AcqAccess() && profile.AcqView() && profile.SecurityAccess() &&
                profile.SecurityEdit() && profile.PatronGroupAccess() && profile.CircConvAccess());
    EXPECT_FALSE(profile.AcqEdit() || profile.SecurityView() || profile.PatronGroupEdit() ||
                 profile.CatAccess() || profile.CircAccess() || profile.SystemAccess() ||
                 profile.ChangePassword() || profile.MainWindowFlag() || profile.LoadFailed());
    EXPECT_EQ(profile.MoneyDecimals(), 2);
    const QList<ScriptedChannel::Sent> wanted{{"SAInit", {{"OI", "TESTER"}}},
                                              {"CheckMasterProfile", {{"OI", "TESTER"}}}};
    EXPECT_EQ(channel.sent, wanted);
    EXPECT_TRUE(ProfileWith({"ChgPwd"}).ChangePassword());
}

TEST_F(ProfileTest, YesNoConversions) {
    channel.Answer("Get", 0, {{"N", "N"}, {"Y", "Y"}, {"y", "y"}, {"E", ""}});
    channel.SendRequest("Get");
    for (const auto& [tag, state] : {std::pair{"N", 0}, {"Y", 1}, {"y", -1}, {"E", -1}, {"missing", -1}})
        EXPECT_EQ(YNToCheck(channel, tag), state) << tag;
    EXPECT_EQ(YNIndex("NY"), -1);
    EXPECT_EQ(CheckToYN(0) + CheckToYN(1) + CheckToYN(2) + BoolToYN(true) + BoolToYN(false), "NYYN");
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
