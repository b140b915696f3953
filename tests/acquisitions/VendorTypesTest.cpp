#include "acquisitions/AcquisitionsScreens.h"
#include "framework/MaintenanceScreen.h"
#include "support/ScreenTest.h"

#include <QLabel>
#include <QTest>

namespace sysadmin {

namespace {

const wire::Fields ThreeTypes{{"Cd", "BK"},    {"Nm", "Bookseller"}, {"Cd", "AG"},
                              {"Nm", "Agent"}, {"Cd", "PUB"},        {"Nm", "Publisher"}};

class VendorTypesTest : public ScreenTest {
protected:
    Screen& OpenWith(const wire::Fields& types = ThreeTypes) {
        channel.Answer("LstVenTp", 0, types);
        return Open(AddAcquisitionsScreens, "Acquisitions_VendorTypes");
    }
};

TEST_F(VendorTypesTest, EmptyListLeavesOnlyNew) {
    OpenWith({});
    EXPECT_TRUE(IsEnabled("cmdNew"));
    EXPECT_FALSE(IsEnabled("cmdEdit"));
    EXPECT_FALSE(IsEnabled("cmdDelete"));
}

TEST_F(VendorTypesTest, RefusedSaveKeepsTheEditOpen) {
    OpenWith();
    Click("cmdNew");
    Type("txtCode", "AG");
    Type("txtName", "Again");
    channel.Answer("AddVenTp", 8);
    prompter.ExpectBox("This code already exists.  Please enter a unique code.", true,
                       Box::Icon::Exclamation);
    Click("cmdSave");
    EXPECT_TRUE(IsEnabled("fraEdit"));
    EXPECT_EQ(TextOf("txtName"), "Again");
    EXPECT_EQ(GridRows().size(), 3);

    channel.Answer("AddVenTp", 1);
    ExpectErrorDialog(prompter, "Communications Failure", 1, "Save Acquisitions Vendor Types", "Vendor Type");
    Click("cmdSave");
    EXPECT_EQ(FrameCaption(), "New Vendor Type:");
    Click("cmdCancel");
    EXPECT_EQ(TextOf("txtName"), "");
    EXPECT_TRUE(IsEnabled("cmdNew"));
}

TEST_F(VendorTypesTest, CloseIsRefusedWhileEditing) {
    Screen& screen = OpenWith();
    Click("cmdNew");
    prompter.ExpectBox("There is data currently being edited!\r\nPlease save or cancel the open work area.",
                       true, Box::Icon::Exclamation);
    EXPECT_FALSE(screen.close());
    EXPECT_TRUE(screen.isVisible());
    Click("cmdCancel");
    EXPECT_TRUE(screen.close());
}

TEST_F(VendorTypesTest, KeysDoWhatPeopleExpect) {
    auto& screen = dynamic_cast<MaintenanceScreen&>(OpenWith());
    EXPECT_EQ(Get<QLabel>("lblCode").text(), "&Vendor Type Code:");
    EXPECT_EQ(Get<QLabel>("lblName").text(), "Vend&or Type Name:") << "no letter twice";
    Grid().setFocus();
    QTest::keyClick(&Grid(), Qt::Key_F2);
    EXPECT_EQ(screen.GetState(), MaintenanceScreen::State::Editing);
    QTest::keyClick(&Get<QLineEdit>("txtCode"), Qt::Key_Escape);
    EXPECT_EQ(screen.GetState(), MaintenanceScreen::State::List);
    QTest::keyClick(&Grid(), Qt::Key_Insert);
    EXPECT_EQ(screen.GetState(), MaintenanceScreen::State::EditingNew);
    EXPECT_TRUE(Get<QLineEdit>("txtCode").hasFocus());
    QTest::keyClicks(&Get<QLineEdit>("txtCode"), "K");
    QTest::keyClicks(&Get<QLineEdit>("txtName"), "Key");
    channel.Answer("AddVenTp", 0);
    QTest::keyClick(&Get<QLineEdit>("txtName"), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Grid().SelectedKey(), "K");
    prompter.ExpectBox("You will delete Vendor Type:\r\n\"K\"\r\n\r\nAre you sure?", false);
    QTest::keyClick(&Grid(), Qt::Key_Delete);
}

} // namespace

} // namespace sysadmin
