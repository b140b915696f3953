#include "CoreTest.h"

#include "core/Navigation.h"
#include "look/IconLoader.h"

namespace sysadmin {

namespace {

class NavigationTest : public CoreTest {
protected:
    static QStringList Keys(const QList<NavigationGroup>& groups) {
        QStringList keys;
        for (const NavigationGroup& group : groups)
            keys.append(group.key);
        return keys;
    }
    static QStringList ItemKeys(const Navigation& navigation, const QString& groupKey) {
        QStringList keys;
        for (const NavigationGroup& group : navigation.Groups())
            if (group.key == groupKey)
                for (const ScreenEntry& item : group.items)
                    keys.append(item.key);
        return keys;
    }

    ScreenCatalogue catalogue;
};

const QStringList AllGroups{"Acquisitions", "CallSlips", "Cataloging", "Circulation", "OPAC",
                            "Search",       "Security",  "System",     "WebServices", "Tools"};

TEST_F(NavigationTest, EveryItemAndGroupHasAPicture) {
    QStringList names;
    for (const ScreenEntry& entry : catalogue.Entries())
        names.append(entry.icon);
    for (const ScreenGroup& group : catalogue.Groups())
        names.append("Group_" + group.key);
    for (const QString& name : names) {
        const QImage picture = LoadIcon(name).pixmap(32, 32).toImage();
        int painted = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                painted += qAlpha(picture.pixel(x, y)) > 128;
        EXPECT_GT(painted, 40) << name.toStdString();
    }
}

TEST_F(NavigationTest, RightsDecideWhichGroupsStay) {
    const struct {
        QStringList rights;
        QStringList groups;
        bool mayStart;
        bool hasPatronGroups;
    } cases[] = {
        {AllRights, AllGroups, true, true},
        {ViewRights, AllGroups, true, true},
        {{"CrcPG"}, {"Circulation", "Tools"}, true, false},
        {{"CrcPG", "PatGrpV"}, {"Circulation", "Tools"}, true, true},
        {{"SysDfV"}, {"CallSlips", "OPAC", "Search", "System", "Tools"}, true, false},
        {{"ASPG"}, {"Acquisitions", "Tools"}, true, false},
        {{"CatPGV"}, {"Cataloging", "Tools"}, true, false},
        {{"Sec"}, {"Security", "Tools"}, true, false},
        // The flag of the web services shows the group, but is no right.
        {{"Sec", "PRB"}, {"Security", "WebServices", "Tools"}, true, false},
        {{"PRB", "ChgPwd", "EditPatGrp", "CrCnv"}, {"WebServices"}, false, false},
        {{}, {}, false, false},
    };
    for (const auto& [rights, groups, mayStart, hasPatronGroups] : cases) {
        SCOPED_TRACE(rights.join(' ').toStdString());
        Navigation navigation(catalogue);
        EXPECT_EQ(navigation.TrimToRights(ProfileWith(rights)), mayStart);
        EXPECT_EQ(Keys(navigation.Groups()), groups);
        const QStringList items = ItemKeys(navigation, "Circulation");
        EXPECT_EQ(items.contains("Circulation_PatronGroups"), hasPatronGroups);
        EXPECT_EQ(items.size(), groups.contains("Circulation") ? 10 + hasPatronGroups : 0);
        const QStringList tools = ItemKeys(navigation, "Tools");
        EXPECT_EQ(tools.contains("Tools_RuleCheck"), groups.contains("Circulation"));
        EXPECT_EQ(tools.contains("Tools_WhoMay"), groups.contains("Security"));
    }
}

TEST_F(NavigationTest, AFailedRemovalIsRememberedAndStopsNoOther) {
    Navigation navigation(catalogue);
    EXPECT_TRUE(navigation.RemoveGroup("Acquisitions"));
    EXPECT_FALSE(navigation.RemoveGroup("Acquisitions"));
    EXPECT_FALSE(navigation.TrimToRights(ProfileWith({"Sec"})));
    EXPECT_EQ(Keys(navigation.Groups()), QStringList({"Security", "Tools"}));

    Navigation withoutItem(catalogue);
    EXPECT_TRUE(withoutItem.RemoveItem("Circulation", "Circulation_PatronGroups"));
    EXPECT_FALSE(withoutItem.RemoveItem("Circulation", "Circulation_PatronGroups"));
    EXPECT_FALSE(withoutItem.RemoveItem("Nothing", "Circ_Calendars"));
    EXPECT_FALSE(withoutItem.TrimToRights(ProfileWith({"CrcPG"})));
}

} // namespace

} // namespace sysadmin
