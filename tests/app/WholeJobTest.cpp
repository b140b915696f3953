#include "framework/ListGrid.h"
#include "server/store/Database.h"
#include "support/ClientTest.h"
#include "wire/Status.h"

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>

namespace sysadmin {

namespace {

namespace status = wire::status;

constexpr char VendorTypes[] = "Acquisitions_VendorTypes";

class WholeJobTest : public ClientTest {
protected:
    ListGrid& Grid(Screen& screen) { return Get<ListGrid>(screen, "vsf"); }

    QStringList Rows(Screen& screen) {
        GridModel& model = Grid(screen).Model();
        QStringList rows;
        for (int row = 0; row < model.rowCount(); ++row)
            rows.append(model.CellText(row, 0) + '|' + model.CellText(row, 1));
        return rows;
    }

    /// The keys of the screens that the operator is offered, group by group.
    QMap<QString, QStringList> Offered() {
        QMap<QString, QStringList> offered;
        int items = 0;
        for (const QMenu* group : Get<QMenu>(Window(), "mnuFunctions").findChildren<QMenu*>())
            for (const QAction* action : group->actions()) {
                offered[group->objectName().section('_', 1)].append(action->objectName().section('_', 1));
                ++items;
            }
        int inBar = 0;
        const auto& bar = Get<QTreeWidget>(Window(), "tvwScreens");
        for (int i = 0; i < bar.topLevelItemCount(); ++i)
            inBar += bar.topLevelItem(i)->childCount();
        EXPECT_EQ(inBar, items) << "menu and navigation bar differ";
        return offered;
    }

    /// The keys of all screens that the program has, group by group.
    QMap<QString, QStringList> Built() {
        QMap<QString, QStringList> built;
        for (const ScreenEntry& entry : App().catalogue.Entries())
            if (entry.screen.make)
                built[entry.groupKey].append(entry.key);
        return built;
    }

    /// The server's answer to a request of the client as it is signed on.
    qint16 Ask(const QString& request, const wire::Fields& fields) {
        for (const wire::Field& field : fields)
            App().channel.PutField(field.tag, field.value);
        return App().channel.SendRequest(request);
    }

    void ExpectNotAuthorised(const QString& operation) {
        prompter.ExpectDialogResult("frmError", [this, operation](QDialog& dialog) {
            EXPECT_EQ(Get<QLabel>(dialog, "lblErrorMessage").text(),
                      "User is not authorized for System Administration.");
            EXPECT_EQ(Get<QLabel>(dialog, "lblReturnCodeText").text(), "12");
            EXPECT_EQ(Get<QLabel>(dialog, "lblModuleText").text(), operation);
            Click(dialog, "cmdOKCompress");
        });
    }
};

TEST_F(WholeJobTest, VendorTypesAreFoundAgainByTheNextClient) {
    SignOn("SYSADMIN");
    Screen* screen = &Open(VendorTypes);
    const QStringList before = Rows(*screen);
    ASSERT_TRUE(before.contains("BOOK|Bookseller") && before.contains("MAP|Map Dealer"));

    Click(*screen, "cmdNew");
    Type(*screen, "txtCode", "ZINE");
    Type(*screen, "txtName", "Zines & \"small\" presses, ½ price");
    Click(*screen, "cmdSave");

    Click(*screen, "cmdNew");
    Type(*screen, "txtCode", "BOOK");
    Type(*screen, "txtName", "Second-hand Books");
    prompter.ExpectBox("This code already exists.  Please enter a unique code.");
    Click(*screen, "cmdSave");
    EXPECT_TRUE(Get<QGroupBox>(*screen, "fraEdit").isEnabled());
    Type(*screen, "txtCode", "USED");
    Click(*screen, "cmdSave");

    Grid(*screen).SelectKey("BOOK");
    Click(*screen, "cmdEdit");
    Type(*screen, "txtCode", "BKS");
    Type(*screen, "txtName", "Booksellers");
    Click(*screen, "cmdSave");
    Grid(*screen).SelectKey("USED");
    Click(*screen, "cmdEdit");
    Type(*screen, "txtName", "Never kept");
    Click(*screen, "cmdCancel");

    const auto question = [](const QString& code) {
        return "You will delete Vendor Type:\r\n\"" + code + "\"\r\n\r\nAre you sure?";
    };
    Grid(*screen).SelectKey("PUB");
    prompter.ExpectBox(question("PUB"));
    prompter.ExpectBox(
        "This vendor type cannot be deleted while\r\nthere are vendor records assigned to it.");
    Click(*screen, "cmdDelete");
    Grid(*screen).SelectKey("AV");
    prompter.ExpectBox(question("AV"), false);
    Click(*screen, "cmdDelete");
    Grid(*screen).SelectKey("MAP");
    prompter.ExpectBox(question("MAP"));
    Click(*screen, "cmdDelete");

    QStringList wanted = before;
    wanted.removeOne("MAP|Map Dealer");
    wanted.removeOne("BOOK|Bookseller");
    wanted += {"BKS|Booksellers", "USED|Second-hand Books",
               QString::fromUtf8("ZINE|Zines & \"small\" presses, ½ price")};
    wanted.sort();
    EXPECT_EQ(Rows(*screen), wanted);
    SignOn("VIEWER");
    EXPECT_EQ(Rows(Open(VendorTypes)), wanted);
    EXPECT_EQ(GetLibrary()
                  .Connect()
                  ->FirstValue("SELECT COUNT(*) FROM vendors v JOIN vendor_types t ON t.id=v.vendor_type_id "
                               "WHERE t.code='BKS'")
                  .toInt(),
              8)
        << "the vendors kept their type under its new code";
}

TEST_F(WholeJobTest, EachOperatorIsOfferedWhatTheRightsAllow) {
    SignOn("SYSADMIN");
    const QMap<QString, QStringList> everything = Built();
    EXPECT_EQ(Offered(), everything);
    SignOn("VIEWER");
    EXPECT_EQ(Offered(), everything);

    SignOn("CIRC");
    QMap<QString, QStringList> circulation{{"Circulation", everything["Circulation"]},
                                           {"WebServices", everything["WebServices"]}};
    circulation["Circulation"].removeOne("Circulation_PatronGroups");
    EXPECT_EQ(Offered(), circulation);

    prompter.ExpectBox("You are not authorized to use System Adminstration.", true, Box::Icon::Critical);
    EXPECT_FALSE(TryToStart("GUEST"));
}

TEST_F(WholeJobTest, WhatTheClientDoesNotOfferTheServerRefuses) {
    const wire::Fields type{{"Cd", "SLY"}, {"Nm", "Sly"}};
    SignOn("VIEWER");
    EXPECT_EQ(Ask("LstVenTp", {}), status::Ok);
    EXPECT_EQ(Ask("AddVenTp", type), status::NotAuthorised);
    EXPECT_EQ(Ask("DelVenTp", {{"Cd", "MAP"}}), status::NotAuthorised);
    SignOn("CIRC");
    EXPECT_EQ(Ask("LstVenTp", {}), status::NotAuthorised);
    EXPECT_EQ(Ask("AddVenTp", type), status::NotAuthorised);
    EXPECT_TRUE(App().channel.ReplyFields().isEmpty());
    prompter.ExpectBox("You are not authorized to use System Adminstration.");
    EXPECT_FALSE(TryToStart("GUEST"));
    EXPECT_EQ(Ask("LstMPrf", {}), status::NotAuthorised);
    EXPECT_EQ(Ask("AddVenTp", type), status::NotAuthorised);
    SignOn("SYSADMIN");
    const QStringList rows = Rows(Open(VendorTypes));
    EXPECT_TRUE(rows.contains("MAP|Map Dealer"));
    EXPECT_FALSE(rows.contains("SLY|Sly"));
}

TEST_F(WholeJobTest, ARightTakenAwayEndsWithTheNextRequest) {
    SignOn("SYSADMIN");
    Screen& screen = Open(VendorTypes);
    Click(screen, "cmdNew");
    Type(screen, "txtCode", "LATE");
    Type(screen, "txtName", "Too late");
    const auto database = GetLibrary().Connect();
    database->Run("UPDATE master_profiles SET acquisitions_edit='N'");
    ExpectNotAuthorised("Save Acquisitions Vendor Types");
    Click(screen, "cmdSave");
    EXPECT_EQ(Get<QLineEdit>(screen, "txtName").text(), "Too late");
    Click(screen, "cmdCancel");

    Grid(screen).SelectKey("MAP");
    prompter.ExpectBox("You will delete Vendor Type:\r\n\"MAP\"\r\n\r\nAre you sure?");
    ExpectNotAuthorised("Delete Acquisitions Vendor Types");
    Click(screen, "cmdDelete");
    EXPECT_TRUE(Rows(screen).contains("MAP|Map Dealer"));
    EXPECT_EQ(Ask("LstVenTp", {}), status::Ok) << "the view right is still there";

    database->Run("UPDATE master_profiles SET acquisitions_edit='Y'");
    prompter.ExpectBox("You will delete Vendor Type:\r\n\"MAP\"\r\n\r\nAre you sure?");
    Click(screen, "cmdDelete");
    EXPECT_FALSE(Rows(screen).contains("MAP|Map Dealer"));
}

} // namespace

} // namespace sysadmin
