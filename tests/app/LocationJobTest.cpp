#include "app/JobTest.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
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
    void AddPhone(QDialog& dialog, const QString& type, const QString& number) {
        ExpectPhone(type, number);
        Click(Tab(dialog), "cmdAdd");
    }
    void ExpectPhone(const QString& type, const QString& number) {
        prompter.ExpectDialogResult("frmSystem_PhoneNumbers", [=, this](QDialog& phone) {
            EXPECT_EQ(Get<QComboBox>(phone, "cboPhoneType").currentText(), "Primary");
            Choose(phone, "cboPhoneType", type);
            Type(phone, "txtPhoneNumber", number);
            Click(phone, "cmdOK");
        });
    }
    /// Adds a location on the screen as it stands in front.
    void AddLocation(Screen& screen, const QString& code, const QString& name) {
        Click(screen, "cmdNew");
        Type(screen, "txtCode", code);
        Type(screen, "txtName", name);
        Click(screen, "cmdSave");
        Select(screen, code + '|');
    }
    void ExpectDeleteQuestion(const QString& code) {
        prompter.ExpectBox("You will delete Location:\r\n\r\n" + code +
                               "\r\n\r\nThis may take a long time!\r\n\r\nAre you sure?",
                           true, Box::Icon::Question);
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
    EXPECT_EQ(Grid(*screen).Model().rowCount(), 633);
    QTest::keyClick(&Grid(*screen), Qt::Key_Insert);
    Type(*screen, "txtCode", " ATTIC ");
    Type(*screen, "txtName", "Attic Reading Room");
    Type(*screen, "txtSpine", "ATT");
    Type(*screen, "txtOPACName", "Upstairs");
    Check(*screen, "chkOPAC");
    Choose(*screen, "cboOwningLib", "Law Library");
    prompter.ExpectBox("Proceeding to address information will save the location to the database. Continue?",
                       true, Box::Icon::Question, "Save Location?");
    prompter.ExpectDialogResult("frmSystem_Addresses", [this](QDialog& dialog) {
        Click(dialog, "cmdNew");
        Type(Tab(dialog), "txtContact", "Front Desk");
        Type(Tab(dialog), "txtEmail", "attic@example.edu");
        Type(Tab(dialog), "txtAddress1", "1 Library Walk");
        Type(Tab(dialog), "txtAddress5", "Third floor");
        Type(Tab(dialog), "txtZip", "12345");
        Check(Tab(dialog), "chkShipToAddress");
        Check(Tab(dialog), "chkCircDeskAddress");
        AddPhone(dialog, "Primary", "555-0100");
        AddPhone(dialog, "Fax", "555-0101");
        Click(dialog, "cmdSave");
        Click(dialog, "cmdNew");
        Type(Tab(dialog), "txtContact", "Loading Dock");
        AddPhone(dialog, "Mobile", "555-0102");
        Click(dialog, "cmdSave");
        Click(dialog, "cmdClose");
    });
    Click(*screen, "cmdAddress");
    EXPECT_EQ(LastSent("AddLoc").Value("Cd"), "ATTIC");
    const Sent dock = LastSent("UpdLoc");
    EXPECT_EQ(dock.fields.mid(0, 3),
              (wire::Fields{{"AdrRq", "1"}, {"AdrID", ""}, {"AdrNm", "Loading Dock"}}));
    EXPECT_EQ(dock.Values("PhNm"), QStringList{"555-0102"}) << "the phones of this address alone";
    EXPECT_EQ(dock.Value("NCd"), "N");

    // The edit goes on with the record that the addresses needed: another library.
    EXPECT_EQ(FrameCaption(*screen), "Edit Location:");
    Choose(*screen, "cboOwningLib", "Music Library");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdLoc").Value("NCd"), "False");
    EXPECT_EQ(LastSent("UpdLoc").Value("NNm"), "N");
    EXPECT_EQ(Grid(*screen).SelectedRow()->cells,
              (QStringList{"ATTIC", "Attic Reading Room", "Music Library"}));

    NextDay();
    screen = &Open(Locations);
    EXPECT_EQ(Grid(*screen).Model().rowCount(), 634);
    QTest::keyClicks(Grid(*screen).FilterBox(), "attic reading");
    EXPECT_EQ(Rows(*screen), QStringList{"ATTIC|Attic Reading Room|Music Library"});
    Select(*screen, "ATTIC");
    QTest::keyClick(&Grid(*screen), Qt::Key_Return);
    EXPECT_EQ(TextOf(*screen, "txtSpine"), "ATT");
    EXPECT_EQ(TextOf(*screen, "txtOPACName"), "Upstairs");
    prompter.ExpectDialogResult("frmSystem_Addresses", [this](QDialog& dialog) {
        EXPECT_EQ(TextOf(Tab(dialog), "txtContact"), "Front Desk");
        EXPECT_EQ(TextOf(Tab(dialog), "txtAddress5"), "Third floor");
        EXPECT_EQ(Rows(Tab(dialog), "vsfPhone"), (QStringList{"Primary|555-0100", "Fax|555-0101"}));
        Select(Tab(dialog), "Fax", "vsfPhone");
        prompter.ExpectBox("Are you sure you want to delete this phone number?", true, Box::Icon::Question,
                           "Delete Phone Number");
        Click(Tab(dialog), "cmdRemove");
        Select(Tab(dialog), "Primary", "vsfPhone");
        ExpectPhone("Other", "555-0199");
        Click(Tab(dialog), "cmdEdit");
        Click(dialog, "cmdSave");
        Get<QTabWidget>(dialog, "tabAddress").setCurrentIndex(1);
        EXPECT_EQ(Rows(Tab(dialog), "vsfPhone"), QStringList{"Mobile|555-0102"});
        prompter.ExpectBox("You will delete Address:\r\n\"Loading Dock\"\r\n\r\nAre you sure?", true,
                           Box::Icon::Question);
        Click(dialog, "cmdDelete");
        Click(dialog, "cmdClose");
    });
    Click(*screen, "cmdAddress"); // nothing changed: no question
    QStringList actions;
    const QList<Sent> traffic = Traffic();
    for (const Sent& sent : traffic)
        if (sent.name == u"UpdLoc" && !sent.Value("AdrRq").isEmpty())
            actions.append(sent.Value("AdrRq") + ':' + sent.Values("PhRq").join(','));
    EXPECT_EQ(actions, (QStringList{"1:1,1", "1:1", "2:2,3", "3:3"}));

    NextDay();
    screen = &Open(Locations);
    Select(*screen, "ATTIC");
    Click(*screen, "cmdEdit");
    prompter.ExpectDialogResult("frmSystem_Addresses", [this](QDialog& dialog) {
        EXPECT_EQ(Rows(Tab(dialog), "vsfPhone"), QStringList{"Other|555-0199"});
        EXPECT_FALSE(Get<QTabWidget>(dialog, "tabAddress").isTabEnabled(1));
        Click(dialog, "cmdClose");
    });
    Click(*screen, "cmdAddress");
}

TEST_F(LocationJobTest, ALocationInUseStays) {
    Screen& screen = Open(Locations);
    AddLocation(screen, "ATTIC", "Attic");
    const QString id = Grid(screen).SelectedKey();
    const auto refuse = [&](const QString& reason) {
        SCOPED_TRACE(reason.toStdString());
        ExpectDeleteQuestion("ATTIC");
        prompter.ExpectBox("This location cannot be deleted " + reason, true, Box::Icon::Exclamation);
        Click(screen, "cmdDelete");
        EXPECT_EQ(Grid(screen).SelectedKey(), id) << "the row stays";
    };

    const QList<QPair<QString, QString>> usages{
        {"holdings records", "being used in a holdings record."},
        {"items", "being used in an item record."},
        {"line items", "being used in a line item record."},
        {"line item copies", "being used in a line item copy record."},
        {"account locations", "being used in an account location record."},
        {"purchase orders", "being used in a purchase order."},
        {"ledger locations", "being used in a ledger location."},
        {"invoices", "being used in an invoice."},
        {"holds and recalls", "being used in a hold/recall record."},
        {"fine and fee transactions", "being used in a fine/fee transaction record."},
        {"fines and fees", "being used in a fine/fee record."},
        {"exceptions", "being used in an exception record."},
        {"serial claims", "being used in a serial claim record."},
        {"marked issues", "being used in a marked issue record."},
        {"marked line items", "being used in a marked line item record."},
        {"issues received", "being used in a issues received record."},
        {"reserve lists", "being used in a reserve list record."},
        {"renewals", "being used in a renew transactions record."},
        {"archived renewals", "being used in a renew transactions archive record."},
        {"circulation transactions", "being used in a circ transaction record."},
        {"archived circulation transactions", "being used in a circ transaction archive record."},
        {"circulation transaction exceptions", "being used in a circ transaction exception record."},
        {"media rooms", "being used in a Media Room record."},
        {"scheduled media rooms", "being used in a Media Schedule Room record."},
        {"archived scheduled media rooms", "being used in a Media Schedule Room Archive record."},
        {"media policy locations", "being used in a Media Policy Location record."},
        {"media security locations", "being used in a Media Security Location record."},
        {"routing list members", "in a Routing List Members record."},
        {"call slip rules", "being used in a call slip rule record."},
    };
    EXPECT_EQ(usages.size(), 29);
    for (const auto& [kind, words] : usages) {
        Store().RunInsert("INSERT INTO usage (table_name, kind, record_id, used) VALUES (?, ?, ?, ?)",
                          {"locations", kind, id.toLongLong(), 3});
        refuse("because it is " + words);
        Store().Run("DELETE FROM usage WHERE record_id=?", {id.toLongLong()});
    }

    const auto inGroup = [&](const QString& kind, const QString& more, const QString& reason) {
        const QString table = kind + "_policy_locations";
        Store().Run("INSERT INTO " + table + " (group_id, location_id" + (more.isEmpty() ? "" : ", " + more) +
                        ") SELECT MIN(id), ?" + (more.isEmpty() ? "" : ", 'Y'") + " FROM " + kind +
                        "_policy_groups",
                    {id.toLongLong()});
        refuse(reason);
        Store().Run("DELETE FROM " + table + " WHERE location_id=?", {id.toLongLong()});
    };
    inGroup("acquisitions", "", "while it belongs to an acquisitions policy group.");
    inGroup("cataloging", "", "while it belongs to an cataloging policy group.");
    inGroup("circulation", "", "while it belongs to a circ policy group.");
    inGroup("circulation", "is_opac_desk", "while it is the OPAC circ desk.");
    Store().Run("INSERT INTO data_change_profiles_locations (profile_id, location_id) SELECT MIN(id), ? FROM "
                "data_change_profiles",
                {id.toLongLong()});
    refuse("because it is in use in a GDC Security Profile.");
    Store().Run("DELETE FROM data_change_profiles_locations WHERE location_id=?", {id.toLongLong()});

    ExpectDeleteQuestion("ATTIC");
    Click(screen, "cmdDelete");
    EXPECT_FALSE(Rows(screen).contains("ATTIC|Attic|"));
    EXPECT_EQ(LastSent("DelLoc").fields, (wire::Fields{{"ID", id}}));
}

TEST_F(LocationJobTest, AClusterIsMadeSelectedRenamedAndDeleted) {
    Screen* screen = &Open(Clusters);
    Click(*screen, "cmdNew");
    Type(*screen, "txtCode", "BRANCH");
    Type(*screen, "txtName", "Branch Libraries");
    Check(*screen, "chkBlockLocalTrans");
    Click(*screen, "cmdSave");
    const QString id = Grid(*screen).SelectedKey();
    EXPECT_EQ(Rows(*screen), (QStringList{"BRANCH|Branch Libraries", "MAIN|University Libraries",
                                          "PROF|Professional School Libraries"}));

    ExpectCluster("Branch Libraries");
    Open(InACluster);
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  Branch Libraries");
    EXPECT_EQ(LastSent("GetWSSelfReg").Value("CID"), id);

    screen = &Open(Clusters);
    EXPECT_EQ(ClusterPanel(), "");
    Select(*screen, "BRANCH");
    Click(*screen, "cmdEdit");
    Type(*screen, "txtName", "Branches & Depots");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdCluster").fields.first(), (wire::Field{"CID", id}));
    Open(InACluster);
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  Branches & Depots");

    // Another cluster by the menu: the screen inside it follows. Giving up changes nothing.
    ExpectCluster("University Libraries");
    Get<QAction>(Window(), "mnuFileSelectCluster").trigger();
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  University Libraries");
    EXPECT_EQ(LastSent("GetWSSelfReg").Value("CID"), App().clusters.Current()->sClusterID);
    EXPECT_EQ(App().clusters.Current()->sClusterCD, "MAIN");
    prompter.ExpectDialogResult("frmSelectCluster", [this](QDialog& dialog) {
        EXPECT_EQ(
            Rows(dialog, "vsfClusters"),
            (QStringList{"Branches & Depots", "Professional School Libraries", "University Libraries"}));
        Select(dialog, "Branches", "vsfClusters");
        Click(dialog, "cmdCancel");
    });
    Get<QAction>(Window(), "mnuFileSelectCluster").trigger();
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  University Libraries");

    // The desk of the public catalogue and the pickup location are kept.
    screen = &Open(Clusters);
    Select(*screen, "MAIN");
    Click(*screen, "cmdEdit");
    auto& desks = Get<QListWidget>(*screen, "lstOpacCircDesk");
    int desk = 0;
    while (desks.item(desk)->checkState() == Qt::Checked)
        ++desk;
    const QString deskName = desks.item(desk)->text();
    const int deskCount = desks.count();
    QTest::mouseClick(desks.viewport(), Qt::LeftButton, {}, desks.visualItemRect(desks.item(desk)).center());
    Choose(*screen, "lstDefPULoc", "Media Circ Desk");
    Click(*screen, "cmdSave");
    EXPECT_EQ(LastSent("UpdCluster").Values("COPCDF").size(), deskCount);
    EXPECT_EQ(LastSent("UpdCluster").Values("COPCDF").count("Y"), 1);
    EXPECT_EQ(App().clusters.Current()->sInUsePULoc, LastSent("UpdCluster").Value("CPLID"));

    // What is in use is not even asked about.
    prompter.ExpectBox("Circ Cluster in use.  ", true, {}, "Cannot delete.");
    Click(*screen, "cmdDelete");
    Select(*screen, "BRANCH");
    prompter.ExpectBox("You will delete Circ Cluster:\r\n\"BRANCH\"\r\n\r\nAre you sure?");
    Click(*screen, "cmdDelete");
    EXPECT_EQ(LastSent("DelCluster").fields, (wire::Fields{{"CID", id}}));
    EXPECT_EQ(App().clusters.Count(), 2);

    NextDay();
    screen = &Open(Clusters);
    EXPECT_EQ(Rows(*screen),
              (QStringList{"MAIN|University Libraries", "PROF|Professional School Libraries"}));
    Select(*screen, "MAIN");
    Click(*screen, "cmdEdit");
    auto& kept = Get<QListWidget>(*screen, "lstOpacCircDesk");
    for (int i = 0; i < kept.count(); ++i)
        EXPECT_EQ(kept.item(i)->checkState() == Qt::Checked, kept.item(i)->text() == deskName);
    EXPECT_EQ(Get<QComboBox>(*screen, "lstDefPULoc").currentText(), "Media Circ Desk");
}

TEST_F(LocationJobTest, TheClusterWorkedInMayGo) {
    Screen& screen = Open(Clusters);
    Click(screen, "cmdNew");
    Type(screen, "txtCode", "BRANCH");
    Type(screen, "txtName", "Branch Libraries");
    Click(screen, "cmdSave");
    ExpectCluster("Branch Libraries");
    Open(InACluster);
    Open(Clusters);
    prompter.ExpectBox("You will delete Circ Cluster:\r\n\"BRANCH\"\r\n\r\nAre you sure?");
    ExpectCluster("University Libraries"); // for the open screen that works inside it
    Click(screen, "cmdDelete");
    ASSERT_TRUE(App().clusters.Current());
    EXPECT_EQ(App().clusters.Current()->sClusterCD, "MAIN");
    Open(InACluster);
    EXPECT_EQ(ClusterPanel(), "Circ Cluster:  University Libraries");
}

} // namespace

} // namespace sysadmin
