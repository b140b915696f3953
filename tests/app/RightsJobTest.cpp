#include "app/JobTest.h"
#include "wire/Status.h"

#include <QTreeWidget>

namespace sysadmin {

namespace {

namespace status = wire::status;

class RightsJobTest : public JobTest {
protected:
    /// The keys of all screens that the program has, in these groups or in all.
    QStringList Built(const QStringList& groups = {}) {
        QStringList built;
        for (const ScreenEntry& entry : App().catalogue.Entries())
            if (entry.screen.make && (groups.isEmpty() || groups.contains(entry.groupKey)))
                built.append(entry.key);
        return built;
    }
    void ExpectOffered(const QStringList& keys) {
        EXPECT_EQ(Offered(), keys);
        int inBar = 0;
        const auto& bar = Get<QTreeWidget>(Window(), "tvwScreens");
        for (int i = 0; i < bar.topLevelItemCount(); ++i)
            inBar += bar.topLevelItem(i)->childCount();
        EXPECT_EQ(inBar, keys.size()) << "menu and navigation bar differ";
    }
};

TEST_F(RightsJobTest, EachOperatorIsOfferedWhatTheRightsAllowAndTheServerRefusesTheRest) {
    const wire::Fields type{{"Cd", "SLY"}, {"Nm", "Sly"}};
    SignOn("SYSADMIN");
    ExpectOffered(Built());
    SignOn("VIEWER");
    ExpectOffered(Built());
    EXPECT_EQ(Ask("LstVenTp"), status::Ok);
    EXPECT_EQ(Ask("AddVenTp", type), status::NotAuthorised);
    EXPECT_EQ(Ask("DelVenTp", {{"Cd", "MAP"}}), status::NotAuthorised);

    SignOn("CIRC");
    QStringList circulation = Built({"Circulation", "WebServices"});
    circulation.removeOne("Circulation_PatronGroups");
    ExpectOffered(circulation);
    EXPECT_EQ(Ask("LstVenTp"), status::NotAuthorised);
    EXPECT_TRUE(App().channel.ReplyFields().isEmpty());

    prompter.ExpectBox("You are not authorized to use System Adminstration.", true, Box::Icon::Critical);
    EXPECT_FALSE(TryToStart("GUEST"));
    EXPECT_EQ(Ask("LstMPrf"), status::NotAuthorised);
    EXPECT_EQ(Ask("AddVenTp", type), status::NotAuthorised);
    EXPECT_EQ(Store().FirstValue("SELECT COUNT(*) FROM vendor_types WHERE code='SLY'").toInt(), 0);
}

} // namespace

} // namespace sysadmin
