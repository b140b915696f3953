#include "framework/ListGrid.h"
#include "support/ScreenTest.h"
#include "system/frmSystem_LocLimitGroups.h"
#include "system/frmSystem_OwningLibraries.h"

#include <QTabWidget>

namespace sysadmin {

namespace {

const wire::Fields TwoAndTwo{{"AI", "1"}, {"AN", "Annex"}, {"AI", "2"}, {"AN", "Bindery"},
                             {"SI", "3"}, {"SN", "Main"},  {"SI", "4"}, {"SN", "Reserves"}};

/// The two screens that move locations between an available and a selected grid.
class LocationSetsTest : public ScreenTest {
protected:
    void OpenLibraries() {
        channel.Answer("LstLib", 0, {{"ID", "7"}, {"LN", "Law Library"}});
        Open<frmSystem_OwningLibraries>();
    }
    void EditLibrary() {
        channel.Answer("GetLib", 0,
                       wire::Fields{{"LN", "Law Library"}, {"DN", "Law"}, {"NC", "CSt-L"}} + TwoAndTwo);
        Click("cmdEdit");
    }
    void OpenGroups() {
        channel.Answer("LstLmt", 0, {{"ID", "5"}, {"C", "SCI"}, {"N", "Science"}});
        Open<frmSystem_LocLimitGroups>();
    }
    void Move(const QString& grid, const QString& key, const QString& button) {
        Grid(grid).SelectKey(key);
        Click(button);
    }
};

TEST_F(LocationSetsTest, LibraryShowsItsLocationsAndSendsOnlyMovedOnes) {
    OpenLibraries();
    EditLibrary();
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetLib", {{"ID", "7"}}}));
    EXPECT_TRUE(Get<QWidget>("txtName").hasFocus());
    EXPECT_EQ(GridRows("vsfAvailableLocations"), (QStringList{"Annex", "Bindery"}));
    EXPECT_EQ(GridRows("vsfSelectedLocations"), (QStringList{"Main", "Reserves"}));
    Click("cmdSelectAll");
    Click("cmdDiscardAll");
    Move("vsfAvailableLocations", "3", "cmdSelect");
    Move("vsfAvailableLocations", "2", "cmdSelect");
    channel.Answer("UpdLib", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"LN", "Law Library"},
                                                        {"DN", "Law"},
                                                        {"NC", "CSt-L"},
                                                        {"SI", "4"},
                                                        {"LS", "3"},
                                                        {"SI", "2"},
                                                        {"LS", "1"},
                                                        {"ID", "7"},
                                                        {"NNm", "N"}}));
}

TEST_F(LocationSetsTest, LibraryWithoutMovesSendsNoStates) {
    OpenLibraries();
    EditLibrary();
    Move("vsfAvailableLocations", "1", "cmdSelect");
    Move("vsfSelectedLocations", "1", "cmdDiscard");
    Type("txtName", "Law School Library");
    channel.Answer("UpdLib", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{
                  {"LN", "Law School Library"}, {"DN", "Law"}, {"NC", "CSt-L"}, {"ID", "7"}, {"NNm", "Y"}}));
    EXPECT_EQ(GridRows(), QStringList{"Law School Library"});
}

TEST_F(LocationSetsTest, NewLibraryAsksForAvailableLocations) {
    OpenLibraries();
    channel.Answer("AvlLib", 3);
    prompter.ExpectBox("Unable to load System Owning Libraries.");
    Click("cmdNew");
    EXPECT_FALSE(IsEnabled("fraEdit"));

    application.pickLists.Set("cboOwningLib", {{"7", "Law Library"}});
    channel.Answer("AvlLib", 0, {{"AI", "1"}, {"AN", "Annex"}});
    Click("cmdNew");
    EXPECT_EQ(FrameCaption(), "New Owning Library:");
    EXPECT_TRUE(GridRows("vsfSelectedLocations").isEmpty());
    Type("txtName", "Art Library");
    EXPECT_TRUE(IsEnabled("cmdSave")) << "not every library has a union catalogue code";
    Click("cmdSelectAll");
    channel.Answer("AddLib", 0, {{"ID", "7"}, {"LN", "Law Library"}, {"ID", "8"}, {"LN", "Art Library"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (ScriptedChannel::Sent{
                  "AddLib", {{"LN", "Art Library"}, {"DN", ""}, {"NC", ""}, {"SI", "1"}, {"LS", "1"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "8");
    EXPECT_EQ(application.pickLists.Items("cboOwningLib").first().text, "Art Library");
}

TEST_F(LocationSetsTest, LibraryInUseStays) {
    OpenLibraries();
    const QString question = "You will delete Owning Library:\r\n\"Law Library\"\r\n\r\nAre you sure?";
    prompter.ExpectBox(question);
    channel.Answer("DelLib", 62);
    prompter.ExpectBox(
        "An owning library cannot be deleted until all locations are reassigned to other owning "
        "libraries.");
    Click("cmdDelete");
    prompter.ExpectBox(question);
    channel.Answer("DelLib", 1);
    ExpectErrorDialog(prompter, "Communications Failure", 1, "Delete", "Owning Library");
    Click("cmdDelete");
    EXPECT_EQ(GridRows().size(), 1);
}

TEST_F(LocationSetsTest, GroupSendsRemovalsBeforeAdditions) {
    OpenGroups();
    EXPECT_EQ(FrameCaption(), "Location Limit Group");
    channel.Answer("GetLmt", 0, wire::Fields{{"C", "SCI"}, {"N", "Science"}, {"O", "Y"}} + TwoAndTwo);
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Location Limit Group:");
    EXPECT_TRUE(Get<QCheckBox>("chkCheck").isChecked());
    Move("vsfAvailableLocations", "1", "cmdSelect");
    Move("vsfSelectedLocations", "3", "cmdDiscard");
    Check("chkCheck", false);
    channel.Answer("UpdLmt", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"C", "SCI"},
                                                        {"N", "Science"},
                                                        {"O", "N"},
                                                        {"SI", "3"},
                                                        {"LS", "3"},
                                                        {"SI", "1"},
                                                        {"LS", "1"},
                                                        {"ID", "5"}}));
}

TEST_F(LocationSetsTest, GroupFailuresAreReportedUnderTheirContexts) {
    OpenGroups();
    channel.Answer("AvlLmt", 0, {});
    Click("cmdNew");
    Type("txtCode", "SCI");
    Type("txtName", "Sciences");
    channel.Answer("AddLmt", 8);
    prompter.ExpectBox("This code already exists.  Please enter a unique code.");
    Get<QTabWidget>("tabLocationLimitGroup").setCurrentIndex(1);
    Click("cmdSave");
    EXPECT_TRUE(Get<QWidget>("txtCode").hasFocus()) << "on the page that holds it";
    channel.Answer("AddLmt", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Save System Location Limit Groups",
                      "Location Limit Group");
    Click("cmdSave");
    Click("cmdCancel");
    prompter.ExpectBox("You will delete Location Limit Group:\r\n\"SCI\"\r\n\r\nAre you sure?");
    channel.Answer("DelLmt", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Edit Print Locations",
                      "Location Limit Group");
    Click("cmdDelete");
}

TEST_F(LocationSetsTest, ViewingMovesNothing) {
    SetRights(false);
    OpenLibraries();
    EditLibrary();
    EXPECT_EQ(FrameCaption(), "View Owning Library:");
    Grid("vsfAvailableLocations").SelectKey("1");
    for (const char* button : {"cmdSelect", "cmdSelectAll", "cmdDiscard", "cmdDiscardAll"})
        EXPECT_FALSE(IsEnabled(button)) << button;
}

} // namespace

} // namespace sysadmin
