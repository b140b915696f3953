#include "CoreTest.h"

#include "core/Navigation.h"
#include "look/IconLoader.h"

#include <QSet>

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
                            "Search",       "Security",  "System",     "WebServices"};

TEST_F(NavigationTest, TheTableIsWhole) {
    QList<qsizetype> counts;
    const Navigation navigation(catalogue);
    for (const NavigationGroup& group : navigation.Groups())
        counts.append(group.items.size());
    EXPECT_EQ(counts, QList<qsizetype>({9, 3, 8, 11, 5, 12, 8, 12, 3}));
    QSet<QString> keys;
    for (const ScreenEntry& entry : catalogue.Entries())
        keys.insert(entry.key);
    EXPECT_EQ(keys.size(), catalogue.Entries().size()) << "two items share a key";
    EXPECT_EQ(catalogue.Find("Search_SearchDefinitions")->caption,
              "Indexes - Headings && Left-Anchored Definitions");
    EXPECT_EQ(catalogue.Find("System_Nothing"), nullptr);
}

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

TEST_F(NavigationTest, FullRightsKeepEverything) {
    for (const QStringList& rights : {AllRights, ViewRights}) {
        Navigation navigation(catalogue);
        EXPECT_TRUE(navigation.TrimToRights(ProfileWith(rights)));
        EXPECT_EQ(Keys(navigation.Groups()), AllGroups);
        EXPECT_TRUE(ItemKeys(navigation, "Circulation").contains("Circulation_PatronGroups"));
    }
}

TEST_F(NavigationTest, CirculationAloneWithoutPatronGroups) {
    Navigation navigation(catalogue);
    EXPECT_TRUE(navigation.TrimToRights(ProfileWith(CirculationRights)));
    EXPECT_EQ(Keys(navigation.Groups()), QStringList({"Circulation"}));
    EXPECT_FALSE(ItemKeys(navigation, "Circulation").contains("Circulation_PatronGroups"));
    EXPECT_EQ(ItemKeys(navigation, "Circulation").size(), 10);
}

TEST_F(NavigationTest, TheSystemRightOpensFourGroups) {
    Navigation navigation(catalogue);
    EXPECT_TRUE(navigation.TrimToRights(ProfileWith({"SysDfV"})));
    EXPECT_EQ(Keys(navigation.Groups()), QStringList({"CallSlips", "OPAC", "Search", "System"}));
}

TEST_F(NavigationTest, EachRightOpensItsGroup) {
    const QHash<QString, QString> groups{
        {"ASPG", "Acquisitions"}, {"CatPGV", "Cataloging"}, {"Sec", "Security"}};
    for (auto it = groups.begin(); it != groups.end(); ++it) {
        Navigation navigation(catalogue);
        EXPECT_TRUE(navigation.TrimToRights(ProfileWith({it.key()})));
        EXPECT_EQ(Keys(navigation.Groups()), QStringList({it.value()}));
    }
}

TEST_F(NavigationTest, TheWebServicesFlagShowsTheGroupButIsNoRight) {
    Navigation withRight(catalogue);
    EXPECT_TRUE(withRight.TrimToRights(ProfileWith({"Sec", "PRB"})));
    EXPECT_EQ(Keys(withRight.Groups()), QStringList({"Security", "WebServices"}));
    Navigation without(catalogue);
    EXPECT_FALSE(without.TrimToRights(ProfileWith({"PRB", "ChgPwd", "EditPatGrp", "CrCnv"})));
    Navigation nothing(catalogue);
    EXPECT_FALSE(nothing.TrimToRights(ProfileWith({})));
    EXPECT_TRUE(nothing.Groups().isEmpty());
}

TEST_F(NavigationTest, AFailedRemovalIsRememberedAndStopsNoOther) {
    Navigation navigation(catalogue);
    EXPECT_TRUE(navigation.RemoveGroup("Acquisitions"));
    EXPECT_FALSE(navigation.RemoveGroup("Acquisitions"));
    EXPECT_FALSE(navigation.TrimToRights(ProfileWith({"Sec"})));
    EXPECT_EQ(Keys(navigation.Groups()), QStringList({"Security"}));

    Navigation withoutItem(catalogue);
    EXPECT_TRUE(withoutItem.RemoveItem("Circulation", "Circulation_PatronGroups"));
    EXPECT_FALSE(withoutItem.RemoveItem("Circulation", "Circulation_PatronGroups"));
    EXPECT_FALSE(withoutItem.RemoveItem("Nothing", "Circ_Calendars"));
    EXPECT_FALSE(withoutItem.TrimToRights(ProfileWith(CirculationRights)));
}

TEST_F(NavigationTest, ShowsOnlyWhatHasAScreen) {
    EXPECT_TRUE(Navigation(catalogue).ShownGroups().isEmpty());
    catalogue.Contribute<TestScreen>("Security_Options", 1);
    catalogue.Contribute<TestScreen>("Acquisitions_VendorTypes", 1);
    Navigation navigation(catalogue);
    EXPECT_EQ(Keys(navigation.ShownGroups()), QStringList({"Acquisitions", "Security"}));
    EXPECT_EQ(navigation.ShownGroups().first().items.size(), 1);
    EXPECT_TRUE(navigation.TrimToRights(ProfileWith({"SysDf"})))
        << "rights count, not what happens to be built";
    EXPECT_TRUE(navigation.ShownGroups().isEmpty());
}

} // namespace

} // namespace sysadmin
