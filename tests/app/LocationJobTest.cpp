#include "app/JobTest.h"

#include <QDialog>
#include <QLabel>
#include <QTabWidget>
#include <QTest>

namespace sysadmin {

namespace {

const QString Locations = "System_Locations";
const QString Clusters = "Circ_Clusters";
const QString InACluster = "WS_SelfRegistration"; // a screen that works inside the current cluster

class LocationJobTest : public JobTest {
protected:
    LocationJobTest() { SignOn("SYSADMIN"); }

    // The addresses dialog: controls of the tab in front.
    QWidget& Tab(QDialog& dialog) { return *Get<QTabWidget>(dialog, "tabAddress").currentWidget(); }
    void EnterPhone(QDialog& dialog, const QString& button, const QString& type, const QString& number) {
        prompter.ExpectDialogResult("frmSystem_PhoneNumbers", [=, this](QDialog& phone) {
            Choose(phone, "cboPhoneType", type);
            Type(phone, "txtPhoneNumber", number);
            Click(phone, "cmdOK");
        });
        Click(Tab(dialog), button);
    }
    void ExpectCluster(const QString& name) {
        prompter.ExpectDialogResult("frmSelectCluster", [=, this](QDialog& dialog) {
            Select(dialog, name, "vsfClusters");
            QTest::keyClick(&Grid(dialog, "vsfClusters"), Qt::Key_Return);
        });
    }
    QString ClusterPanel() {
        auto& panel = Get<QLabel>(Window(), "lblCluster");
        return panel.isHidden() ? QString() : panel.text();
    }
};

TEST_F(LocationJobTest, ALocationMovesWithItsAddresses) {
    Screen* screen = &Open(Locations);
    Click("cmdNew");
    Type("txtCode", " ATTIC ");
    Type("txtName", "Attic Reading Room");
    Choose("cboOwningLib", "Law Library");
    prompter.ExpectBox("Proceeding to address information will save the location to the database. Continue?",
                       true, Box::Icon::Question, "Save Location?");
    prompter.ExpectDialogResult("frmSystem_Addresses", [this](QDialog& dialog) {
        Click(dialog, "cmdNew");
        Type(Tab(dialog), "txtContact", "Front Desk");
        Type(Tab(dialog), "txtAddress5", "Third floor");
        EnterPhone(dialog, "cmdAdd", "Primary", "555-0100");
        EnterPhone(dialog, "cmdAdd", "Fax", "555-0101");
        Click(dialog, "cmdSave");
        Click(dialog, "cmdNew");
        Type(Tab(dialog), "txtContact", "Loading Dock");
        EnterPhone(dialog, "cmdAdd", "Mobile", "555-0102");
        Click(dialog, "cmdSave");
        Click(dialog, "cmdClose");
    });
    Click("cmdAddress");
    EXPECT_EQ(LastSent("UpdLoc").Values("PhNm"), QStringList{"555-0102"})
        << "the phones of this address alone";

    // The edit goes on with the record that the addresses needed: another library.
    EXPECT_EQ(FrameCaption(), "Edit Location:");
    Choose("cboOwningLib", "Music Library");
    Click("cmdSave");
    EXPECT_EQ(LastSent("UpdLoc").Value("NCd"), "False");

    NextDay();
    screen = &Open(Locations);
    Select(*screen, "ATTIC|Attic Reading Room|Music Library");
    Click("cmdEdit");
    prompter.ExpectDialogResult("frmSystem_Addresses", [this](QDialog& dialog) {
        EXPECT_EQ(TextOf(Tab(dialog), "txtContact") + TextOf(Tab(dialog), "txtAddress5"),
                  "Front DeskThird floor");
        EXPECT_EQ(GridRows(Tab(dialog), "vsfPhone"), (QStringList{"Primary|555-0100", "Fax|555-0101"}));
        Select(Tab(dialog), "Fax", "vsfPhone");
        prompter.ExpectBox("Are you sure you want to delete this phone number?", true, Box::Icon::Question,
                           "Delete Phone Number");
        Click(Tab(dialog), "cmdRemove");
        Select(Tab(dialog), "Primary", "vsfPhone");
        EnterPhone(dialog, "cmdEdit", "Other", "555-0199");
        Click(dialog, "cmdSave");
        Get<QTabWidget>(dialog, "tabAddress").setCurrentIndex(1);
        EXPECT_EQ(GridRows(Tab(dialog), "vsfPhone"), QStringList{"Mobile|555-0102"});
        prompter.ExpectBox("You will delete Address:\r\n\"Loading Dock\"\r\n\r\nAre you sure?", true,
                           Box::Icon::Question);
        Click(dialog, "cmdDelete");
        Click(dialog, "cmdClose");
    });
    Click("cmdAddress"); // nothing changed: no question

    NextDay();
    screen = &Open(Locations);
    Select(*screen, "ATTIC");
    Click("cmdEdit");
    prompter.ExpectDialogResult("frmSystem_Addresses", [this](QDialog& dialog) {
        EXPECT_EQ(GridRows(Tab(dialog), "vsfPhone"), QStringList{"Other|555-0199"});
        EXPECT_FALSE(Get<QTabWidget>(dialog, "tabAddress").isTabEnabled(1));
        Click(dialog, "cmdClose");
    });
    Click("cmdAddress");
}

TEST_F(LocationJobTest, TheClusterWorkedInIsRenamedAndGoes) {
    Screen* screen = &Open(Clusters);
    Click("cmdNew");
    Type("txtCode", "BRANCH");
    Type("txtName", "Branch Libraries");
    Click("cmdSave");
    const QString id = Grid().SelectedKey();
    ExpectCluster("Branch Libraries");
    Open(InACluster);
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  Branch Libraries");
    EXPECT_EQ(LastSent("GetWSSelfReg").Value("CID"), id);

    screen = &Open(Clusters);
    EXPECT_EQ(ClusterPanel(), "");
    Select(*screen, "BRANCH");
    Click("cmdEdit");
    Type("txtName", "Branches & Depots");
    Click("cmdSave");
    Open(InACluster);
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  Branches & Depots");

    screen = &Open(Clusters);
    Select(*screen, "BRANCH");
    prompter.ExpectBox("You will delete Circ Cluster:\r\n\"BRANCH\"\r\n\r\nAre you sure?");
    ExpectCluster("University Libraries"); // for the open screen that works inside it
    Click("cmdDelete");
    EXPECT_EQ(LastSent("GetWSSelfReg").Value("CID"), App().clusters.Current()->sClusterID);
    Open(InACluster);
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  University Libraries");

    NextDay();
    Open(Clusters);
    EXPECT_EQ(GridRows(), (QStringList{"MAIN|University Libraries", "PROF|Professional School Libraries"}));
}

} // namespace

} // namespace sysadmin
