#include "framework/ListGrid.h"
#include "support/ScreenTest.h"
#include "system/SystemScreens.h"

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
        Open(AddSystemScreens, "System_OwningLibraries");
    }
    void EditLibrary() {
        channel.Answer("GetLib", 0,
                       wire::Fields{{"LN", "Law Library"}, {"DN", "Law"}, {"NC", "CSt-L"}} + TwoAndTwo);
        Click("cmdEdit");
    }
    void OpenGroups() {
        channel.Answer("LstLmt", 0, {{"ID", "5"}, {"C", "SCI"}, {"N", "Science"}});
        Open(AddSystemScreens, "System_LocLimitGroups");
    }
    void Move(const QString& grid, const QString& key, const QString& button) {
        Grid(grid).SelectKey(key);
        Click(button);
    }
};

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
