#include "framework/ClusterSelection.h"
#include "framework/ListGrid.h"
#include "support/ScreenTest.h"

#include <QDialog>

namespace sysadmin {

namespace {

const wire::Fields TwoClusters{{"CID", "7"},  {"CCD", "MAIN"},      {"CNM", "University"}, {"CPL", "11"},
                               {"CID", "12"}, {"CCD", "ART"},       {"CNM", "Art School"}, {"CPL", ""},
                               {"CID", "3"},  {"CCD", "UNRELATED"}, {"CNM", "Zoo"},        {"CPL", "5"}};

class ClusterSelectionTest : public ScreenTest {
protected:
    ClusterSelectionTest() {
        QObject::connect(&application.notices, &Notices::CurrentClusterChanged, [this] { ++notices; });
    }
    QString Current() {
        const clsCluster* current = application.clusters.Current();
        return current ? current->sClusterName : QString();
    }
    /// The operator chooses the cluster of this name, or gives up.
    void ExpectChoice(const QString& name, const QString& button = "cmdOK") {
        prompter.ExpectDialogResult("frmSelectCluster", [=](QDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Select Cluster");
            auto& grid = *dialog.findChild<ListGrid*>("vsfClusters");
            for (int row = 0; row < grid.Model().rowCount(); ++row)
                if (grid.Model().CellText(row, 0) == name)
                    grid.SelectKey(grid.Model().RowAt(row).key);
            dialog.findChild<QAbstractButton*>(button)->click();
        });
    }

    int notices = 0;
};

TEST_F(ClusterSelectionTest, TheOperatorChoosesAmongSeveral) {
    channel.Answer("GetClusterList", 0, TwoClusters);
    ExpectChoice("Art School");
    EXPECT_TRUE(GetClusterList(application, nullptr));
    EXPECT_EQ(Current(), "Art School");

    channel.Answer("GetClusterList", 0, TwoClusters);
    ExpectChoice("Zoo", "cmdCancel");
    EXPECT_FALSE(GetClusterList(application, nullptr));
    EXPECT_EQ(Current(), "") << "giving up leaves none";

    channel.Answer("GetClusterList", 0, TwoClusters);
    prompter.ExpectDialogResult("frmSelectCluster", [](QDialog& dialog) {
        emit dialog.findChild<ListGrid*>("vsfClusters")->RowActivated("12");
    });
    EXPECT_TRUE(GetClusterList(application, nullptr)) << "a double click chooses, too";
}

TEST_F(ClusterSelectionTest, FailuresLeaveNone) {
    const QString noLocations = "Access not allowed due to missing cluster-affiliated locations available "
                                "for current operator.";
    channel.Answer("GetClusterList", 98);
    prompter.ExpectBox(noLocations, true, Box::Icon::Critical);
    EXPECT_FALSE(GetClusterList(application, nullptr));

    channel.Answer("GetClusterList", 0);
    prompter.ExpectBox(noLocations, true, Box::Icon::Critical);
    EXPECT_FALSE(GetClusterList(application, nullptr)) << "nothing to choose from";

    channel.Answer("GetClusterList", 1);
    ExpectErrorDialog(prompter, "Communications Failure", 1, "Get Clusters", "Select Cluster Dialog");
    EXPECT_FALSE(GetClusterList(application, nullptr));
    EXPECT_EQ(application.clusters.Count(), 0);
}

TEST_F(ClusterSelectionTest, AChangeThatFailsKeepsTheClusterThatWas) {
    channel.Answer("GetClusterList", 0, TwoClusters.mid(0, 4));
    GetClusterList(application, nullptr);

    channel.Answer("GetClusterList", 0, TwoClusters);
    ExpectChoice("Zoo", "cmdCancel");
    ChangeCluster(application, nullptr);
    EXPECT_EQ(Current(), "University");
    channel.Answer("GetClusterList", 1);
    ExpectErrorDialog(prompter, "Communications Failure", 1, "Get Clusters", "Select Cluster Dialog");
    ChangeCluster(application, nullptr);
    EXPECT_EQ(Current(), "University");
    channel.Answer("GetClusterList", 0, TwoClusters);
    ExpectChoice("Zoo");
    ChangeCluster(application, nullptr);
    EXPECT_EQ(Current(), "Zoo");
    EXPECT_EQ(notices, 4);
}

} // namespace

} // namespace sysadmin
