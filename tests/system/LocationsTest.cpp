#include "framework/ListGrid.h"
#include "framework/LocationAlerts.h"
#include "support/ScreenTest.h"
#include "system/frmSystem_Locations.h"

#include <QDialog>

namespace sysadmin {

namespace {

const wire::Fields Libraries{{"ID", "1"}, {"LN", "Music Library"}, {"ID", "2"}, {"LN", "Art Library"}};
const wire::Fields Locations{{"ID", "11"},  {"Cd", "STACKS"},    {"Nm", "Stacks"}, {"LN", "Music Library"},
                             {"ID", "12"},  {"Cd", "DESK"},      {"Nm", "Desk"},   {"LN", "Art Library"},
                             {"PTps", "1"}, {"PDsc", "Primary"}, {"PTps", "2"},    {"PDsc", "Fax"}};
const wire::Fields Desk{{"Cd", "DESK"},         {"Nm", "Desk"}, {"Spn", "D"},
                        {"Dsp", "Ask at desk"}, {"OPAC", "Y"},  {"Lb", "2"},
                        {"CtGrp", "Central"},   {"ASGrp", ""},  {"CrGrp", "Art"}};

class LocationsTest : public ScreenTest {
protected:
    frmSystem_Locations& OpenWith(const wire::Fields& locations = Locations) {
        channel.Answer("LstLib", 0, Libraries);
        channel.Answer("LstLoc", 0, locations);
        return Open<frmSystem_Locations>();
    }
    void StartEdit(const wire::Fields& record = Desk) {
        channel.Answer("GetLoc", 0, record);
        Click("cmdEdit");
    }
    const QString unableToLoad = "Unable to load System Locations.";
};

TEST_F(LocationsTest, LibrariesThenLocationsAreLoaded) {
    OpenWith();
    EXPECT_EQ(channel.sent, (QList<ScriptedChannel::Sent>{{"LstLib", {}}, {"LstLoc", {}}}));
    EXPECT_EQ(GridRows(), (QStringList{"DESK|Desk|Art Library", "STACKS|Stacks|Music Library"}));
    EXPECT_EQ(application.pickLists.Items("cboPhoneType"), (QList<PickItem>{{"2", "Fax"}, {"1", "Primary"}}));
}

TEST_F(LocationsTest, AddressButtonSavesFirst) {
    OpenWith();
    EXPECT_FALSE(IsEnabled("cmdAddress"));
    StartEdit();
    channel.Answer("GetLoc", 0, Desk);
    prompter.ExpectDialog("frmSystem_Addresses", [](QDialog&) { return false; });
    Click("cmdAddress"); // nothing to save

    const QString question =
        "Proceeding to address information will save the location to the database. Continue?";
    Type("txtName", "Front desk");
    prompter.ExpectBox(question, false, Box::Icon::Question, "Save Location?");
    Click("cmdAddress");
    EXPECT_FALSE(channel.SentNames().contains("UpdLoc"));
    prompter.ExpectBox(question);
    channel.Answer("UpdLoc", 8);
    prompter.ExpectBox("This code already exists.  Please enter a unique code.");
    Click("cmdAddress");
    Click("cmdCancel");

    Click("cmdNew");
    EXPECT_FALSE(IsEnabled("cmdAddress"));
    Type("txtCode", "LOFT");
    Type("txtName", "Loft");
    prompter.ExpectBox(question);
    channel.Answer("AddLoc", 0, {{"ID", "13"}, {"Cd", "LOFT"}});
    channel.Answer("GetLoc", 0, {{"Cd", "LOFT"}, {"Nm", "Loft"}});
    prompter.ExpectDialog("frmSystem_Addresses", [](QDialog&) { return false; });
    Click("cmdAddress");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetLoc", {{"ID", "13"}}}));
    EXPECT_EQ(FrameCaption(), "Edit Location:") << "the edit goes on with the new id";
    channel.Answer("UpdLoc", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().Value("ID"), "13");
    EXPECT_EQ(GridRows().size(), 3);
}

TEST_F(LocationsTest, ARenamedLibraryIsSeenInListAndChoice) {
    OpenWith();
    application.pickLists.Put({"cboOwningLib"}, {"2", "Fine Arts Library"});
    wire::Fields renamed = Locations;
    renamed[7].value = "Fine Arts Library";
    channel.Answer("LstLoc", 0, renamed);
    emit application.notices.SubjectChanged("Lib");
    EXPECT_EQ(GridRows().first(), "DESK|Desk|Fine Arts Library");

    StartEdit();
    EXPECT_EQ(Get<QComboBox>("cboOwningLib").currentText(), "Fine Arts Library");
    emit application.notices.SubjectChanged("Lib"); // waits for the edit's end
    channel.Answer("LstLoc", 0, Locations);
    Click("cmdCancel");
    EXPECT_EQ(GridRows().first(), "DESK|Desk|Art Library");
}

TEST_F(LocationsTest, ReadOnlyOperatorSeesTheAddresses) {
    SetRights(false);
    OpenWith();
    StartEdit();
    EXPECT_EQ(FrameCaption(), "View Location:");
    channel.Answer("GetLoc", 0, Desk);
    prompter.ExpectDialog("frmSystem_Addresses", [](QDialog& dialog) {
        EXPECT_TRUE(dialog.findChild<QAbstractButton*>("cmdNew")->isHidden());
        return false;
    });
    Click("cmdAddress");
}

TEST(LocationAlertsTest, AreReadBackByIndex) {
    clsLocationAlerts alerts;
    alerts.AddData({"3", "1", "Y", "N", "N"});
    alerts.AddData({"5", "2", "N", "Y", "Y"});
    EXPECT_EQ(alerts.GetColCount(), 2);
    EXPECT_EQ(alerts.GetAlertID(1), "5");
    EXPECT_EQ(alerts.GetDisplay(0), "1");
    EXPECT_EQ(alerts.GetName(0), "Y");
    EXPECT_EQ(alerts.GetBarcode(1), "Y");
    EXPECT_EQ(alerts.GetPhone(0), "N");
    EXPECT_EQ(alerts.GetName(2), "");
}

} // namespace

} // namespace sysadmin
