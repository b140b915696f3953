#include "support/ScreenTest.h"
#include "system/frmSystem_PrintLocations.h"

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class PrintLocationsTest : public ScreenTest {
protected:
    void OpenTwo() {
        channel.Answer("LstPL", 0,
                       {{"ID", "1"},
                        {"DP", "Y"},
                        {"Cd", "MAIN"},
                        {"Nm", "Main desk"},
                        {"ID", "2"},
                        {"DP", "N"},
                        {"Cd", "LAW"},
                        {"Nm", "Law desk"}});
        Open<frmSystem_PrintLocations>();
        Grid().SelectKey("2");
    }
};

TEST_F(PrintLocationsTest, NewDefaultTakesTheMarkFromTheFormerOne) {
    OpenTwo();
    channel.Answer("GetPL", 0,
                   {{"Cd", "LAW"},
                    {"Nm", "Law desk"},
                    {"DP", "N"},
                    {"CG", "Y"},
                    {"AG", "N"},
                    {"MSG", "N"},
                    {"CtG", "Y"}});
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetPL", {{"ID", "2"}}}));
    Check("chkDefault", true);
    Check("chkAcqGroups", true);
    channel.Answer("UpdPL", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"UpdPL",
                                         {{"ID", "2"},
                                          {"Cd", "LAW"},
                                          {"Nm", "Law desk"},
                                          {"DP", "Y"},
                                          {"CG", "Y"},
                                          {"AG", "Y"},
                                          {"MSG", "N"},
                                          {"CtG", "Y"},
                                          {"NCd", "N"},
                                          {"NNm", "N"}}}));
    QStringList rows = GridRows();
    rows.sort();
    EXPECT_EQ(rows, (QStringList{"|MAIN|Main desk", "✓|LAW|Law desk"}));
    EXPECT_EQ(Grid().SelectedKey(), "2");
}

TEST_F(PrintLocationsTest, DefaultIsNotDeleted) {
    OpenTwo();
    prompter.ExpectBox("You will delete Print Location:\r\n\"LAW\"\r\n\r\nAre you sure?");
    prompter.ExpectBox("Record is in use.");
    channel.Answer("DelPL", 13);
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Print Location:\r\n\"LAW\"\r\n\r\nAre you sure?");
    channel.Answer("DelPL", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Edit Print Locations",
                      "Print Location");
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Print Location:\r\n\"LAW\"\r\n\r\nAre you sure?");
    channel.Answer("DelPL", 0);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelPL", {{"ID", "2"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "1");

    prompter.ExpectBox("This print location cannot be deleted because it is the default print location.");
    const qsizetype before = channel.sent.size();
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.size(), before);
    EXPECT_EQ(GridRows(), QStringList{"✓|MAIN|Main desk"});
}

} // namespace

} // namespace sysadmin
