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

TEST_F(RightsJobTest, ARightTakenAwayEndsWithTheNextRequest) {
    const QString refusal = "User is not authorized for System Administration.";
    const QString question = "You will delete Vendor Type:\r\n\"MAP\"\r\n\r\nAre you sure?";
    SignOn("SYSADMIN");
    Screen& screen = Open("Acquisitions_VendorTypes");
    Click("cmdNew");
    Type("txtCode", "LATE");
    Type("txtName", "Too late");
    Store().Run("UPDATE master_profiles SET acquisitions_edit='N'");
    ExpectErrorDialog(prompter, refusal, 12, "Save Acquisitions Vendor Types", "Vendor Type");
    Click("cmdSave");
    EXPECT_EQ(TextOf("txtName"), "Too late");
    Click("cmdCancel");

    Select(screen, "MAP");
    prompter.ExpectBox(question);
    ExpectErrorDialog(prompter, refusal, 12, "Delete Acquisitions Vendor Types", "Vendor Type");
    Click("cmdDelete");
    EXPECT_TRUE(GridRows().contains("MAP|Map Dealer"));
    EXPECT_EQ(Ask("LstVenTp"), status::Ok) << "the view right is still there";

    Store().Run("UPDATE master_profiles SET acquisitions_edit='Y'");
    prompter.ExpectBox(question);
    Click("cmdDelete");
    EXPECT_FALSE(GridRows().contains("MAP|Map Dealer"));
}

} // namespace

} // namespace sysadmin
