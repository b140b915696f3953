#include "circulation/frmClusterMaintenance.h"
#include "support/ScreenTest.h"

#include <QListWidget>
#include <QTest>

namespace sysadmin {

namespace {

const wire::Fields AllRights{{"CluViewOnly", "N"}, {"CluCreate", "Y"}, {"CluEdit", "Y"}, {"CluDelete", "Y"}};
const wire::Fields List{
    {"CID", "1"},        {"CCD", "MAIN"},         {"CNM", "University"}, {"CPL", "21"},
    {"PolExstClu", "N"}, {"PatExstClu", "Y"},     {"CalExstClu", "N"},   {"CID", "2"},
    {"CCD", "PROF"},     {"CNM", "Professional"}, {"CPL", ""},           {"PolExstClu", "N"},
    {"PatExstClu", "N"}, {"CalExstClu", "N"}};
const wire::Fields Record{
    {"CCD", "MAIN"}, {"CNM", "University"},  {"CPL", "22"},           {"BLT", "Y"},
    {"CPGID", "5"},  {"CLOCID", "21"},       {"CLOCNM", "Main desk"}, {"COPCDF", "Y"},
    {"CPGID", "6"},  {"CLOCID", "22"},       {"CLOCNM", "Art desk"},  {"COPCDF", "N"},
    {"CPLID", "21"}, {"CPLNm", "Main desk"}, {"CPLID", "22"},         {"CPLNm", "Art desk"}};

class ClustersTest : public ScreenTest {
protected:
    frmClusterMaintenance& OpenWith(const wire::Fields& rights = AllRights) {
        channel.Answer("GetClusterSecurity", 0, rights);
        channel.Answer("GetClusterList", 0, List);
        return Open<frmClusterMaintenance>();
    }
    void StartEdit() {
        channel.Answer("GetCluster", 0, Record);
        Click("cmdEdit");
    }
    void ClickDesk(int row) {
        auto& list = Get<QListWidget>("lstOpacCircDesk");
        const QRect place = list.visualItemRect(list.item(row));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
    }
    QString Pickup() { return Get<QComboBox>("lstDefPULoc").currentText(); }
};

TEST_F(ClustersTest, EachRightCountsForItself) {
    OpenWith({{"CluViewOnly", "N"}, {"CluCreate", "Y"}, {"CluEdit", "N"}, {"CluDelete", "N"}});
    EXPECT_TRUE(IsEnabled("cmdNew"));
    EXPECT_FALSE(IsEnabled("cmdDelete"));
    StartEdit();
    EXPECT_TRUE(Get<QLineEdit>("txtName").isReadOnly());
}

TEST_F(ClustersTest, ViewOnlyWinsOverTheOtherRights) {
    OpenWith({{"CluViewOnly", "Y"}, {"CluCreate", "Y"}, {"CluEdit", "Y"}, {"CluDelete", "Y"}});
    EXPECT_TRUE(Get<QWidget>("cmdNew").isHidden());
    StartEdit();
    EXPECT_EQ(FrameCaption(), "View Cluster Information:");
    ClickDesk(1);
    EXPECT_EQ(Get<QListWidget>("lstOpacCircDesk").item(1)->checkState(), Qt::Unchecked);
}

TEST_F(ClustersTest, FailuresOfLoading) {
    channel.Answer("GetClusterSecurity", 1);
    ExpectErrorDialog(prompter, "Communications Failure", 1, "Retrieving Cluster Security", "Circ Cluster");
    channel.Answer("GetClusterList", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Load Circ Clusters", "Circ Cluster");
    Open<frmClusterMaintenance>();
    EXPECT_TRUE(Get<QWidget>("cmdNew").isHidden()) << "unknown rights are no rights";

    channel.Answer("GetClusterSecurity", 0, AllRights);
    channel.Answer("GetClusterList", 98);
    prompter.ExpectBox("Access not allowed due to missing cluster-affiliated locations available for current "
                       "operator.",
                       true, Box::Icon::Critical);
    Open<frmClusterMaintenance>();
    EXPECT_TRUE(IsEnabled("cmdNew")) << "the first cluster can be made";
}

TEST_F(ClustersTest, EditShowsDesksAndSendsThemInOrder) {
    OpenWith();
    StartEdit();
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetCluster", {{"CID", "1"}}}));
    EXPECT_EQ(FrameCaption(), "Edit Circ Cluster:");
    auto& desks = Get<QListWidget>("lstOpacCircDesk");
    ASSERT_EQ(desks.count(), 2);
    EXPECT_EQ(desks.item(0)->checkState(), Qt::Checked);
    EXPECT_EQ(Pickup(), "Art desk") << "the default pickup location, not the first entry";
    EXPECT_TRUE(Get<QCheckBox>("chkBlockLocalTrans").isChecked());

    ClickDesk(1); // takes the mark from the first one
    EXPECT_EQ(desks.item(0)->checkState(), Qt::Unchecked);
    Choose("lstDefPULoc", "Main desk");
    channel.Answer("UpdCluster", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"CID", "1"},
                                                        {"CCD", "MAIN"},
                                                        {"CNM", "University"},
                                                        {"CPGID", "5"},
                                                        {"CLOCID", "21"},
                                                        {"COPCDF", "N"},
                                                        {"CPGID", "6"},
                                                        {"CLOCID", "22"},
                                                        {"COPCDF", "Y"},
                                                        {"CPLID", "21"},
                                                        {"BLT", "Y"}}));
    StartEdit();
    ClickDesk(0);
    EXPECT_EQ(desks.item(0)->checkState(), Qt::Unchecked) << "a second click takes the mark away";
}

TEST_F(ClustersTest, ARenamedCurrentClusterIsSeenAtOnce) {
    application.clusters.Put({"21", "University", "MAIN", "1"});
    application.clusters.SetCurrent("1");
    int notices = 0;
    QObject::connect(&application.notices, &Notices::CurrentClusterChanged, [&] { ++notices; });
    OpenWith();
    StartEdit();
    Type("txtName", "All Libraries");
    channel.Answer("UpdCluster", 0);
    Click("cmdSave");
    EXPECT_EQ(application.clusters.Current()->sClusterName, "All Libraries");
    EXPECT_EQ(application.clusters.Current()->sInUsePULoc, "22");
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(GridRows().first(), "MAIN|All Libraries");
}

TEST_F(ClustersTest, AClusterInUseIsNotDeleted) {
    application.clusters.Put({"", "Professional", "PROF", "2"});
    application.clusters.SetCurrent("2");
    OpenWith();
    prompter.ExpectBox("Circ Cluster in use.  ", true, {}, "Cannot delete.");
    Click("cmdDelete");
    EXPECT_FALSE(channel.SentNames().contains("DelCluster"));

    Grid().SelectKey("2");
    prompter.ExpectBox("You will delete Circ Cluster:\r\n\"PROF\"\r\n\r\nAre you sure?", true,
                       Box::Icon::Question, "Delete Circ Cluster");
    channel.Answer("DelCluster", 13);
    prompter.ExpectBox("Record is in use.");
    Click("cmdDelete");
    EXPECT_TRUE(application.clusters.Find("2"));

    prompter.ExpectBox("You will delete Circ Cluster:\r\n\"PROF\"\r\n\r\nAre you sure?");
    channel.Answer("DelCluster", 0);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"DelCluster", {{"CID", "2"}}}));
    EXPECT_EQ(GridRows(), QStringList{"MAIN|University"});
    EXPECT_EQ(application.clusters.Current(), nullptr);
}

} // namespace

} // namespace sysadmin
