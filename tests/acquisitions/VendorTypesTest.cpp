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

TEST_F(VendorTypesTest, ListIsLoadedAndTheFirstRowSelected) {
    OpenWith();
    EXPECT_EQ(channel.sent, (QList<ScriptedChannel::Sent>{{"LstVenTp", {}}}));
    EXPECT_EQ(GridRows(), (QStringList{"AG|Agent", "BK|Bookseller", "PUB|Publisher"}));
    EXPECT_EQ(Grid().SelectedKey(), "AG");
    EXPECT_FALSE(IsEnabled("fraEdit"));
}

TEST_F(VendorTypesTest, EmptyListLeavesOnlyNew) {
    OpenWith({});
    EXPECT_TRUE(IsEnabled("cmdNew"));
    EXPECT_FALSE(IsEnabled("cmdEdit"));
    EXPECT_FALSE(IsEnabled("cmdDelete"));
}

TEST_F(VendorTypesTest, EverySplitIsReportedAndOnlyTheLastBatchShown) {
    channel.Answer("LstVenTp", 55, {{"Cd", "A"}, {"Nm", "First"}});
    channel.Answer("LstVenTp", 55, {{"Cd", "B"}, {"Nm", "Second"}});
    channel.Answer("LstVenTp", 0, {{"Cd", "C"}, {"Nm", "Third"}});
    for (int split = 0; split < 2; ++split)
        ExpectErrorDialog(prompter, "Database Error", 55, "Load Acquisitions Vendor Types", "Vendor Type");
    Open(AddAcquisitionsScreens, "Acquisitions_VendorTypes");
    const wire::Fields again{{"55", "Y"}};
    EXPECT_EQ(channel.sent,
              (QList<ScriptedChannel::Sent>{{"LstVenTp", {}}, {"LstVenTp", again}, {"LstVenTp", again}}));
    EXPECT_EQ(GridRows(), QStringList{"C|Third"});
}

TEST_F(VendorTypesTest, NewRecordIsAddedToTheList) {
    OpenWith();
    Click("cmdNew");
    EXPECT_EQ(FrameCaption(), "New Vendor Type:");
    EXPECT_FALSE(IsEnabled("vsf"));
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtCode", "ONL");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtName", "Online shop");
    channel.Answer("AddVenTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (ScriptedChannel::Sent{"AddVenTp", {{"Cd", "ONL"}, {"Nm", "Online shop"}}}));
    EXPECT_EQ(GridRows().size(), 4);
    EXPECT_EQ(Grid().SelectedKey(), "ONL");
    EXPECT_FALSE(IsEnabled("fraEdit"));
    EXPECT_TRUE(IsEnabled("vsf"));
}

TEST_F(VendorTypesTest, UpdateSendsWhatChanged) {
    OpenWith();
    Grid().SelectKey("BK");
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Vendor Type:");
    EXPECT_EQ(TextOf("txtCode"), "BK");
    channel.Answer("UpdVenTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"Cd", "BK"}, {"Nm", "Bookseller"}, {"NCd", "N"}, {"NNm", "N"}, {"OCd", "BK"}}));

    Click("cmdEdit");
    Type("txtCode", "BKS");
    Type("txtName", "bookseller");
    channel.Answer("UpdVenTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"Cd", "BKS"}, {"Nm", "bookseller"}, {"NCd", "N"}, {"NNm", "Y"}, {"OCd", "BK"}}));
    EXPECT_EQ(GridRows(), (QStringList{"AG|Agent", "BKS|bookseller", "PUB|Publisher"}));
    EXPECT_EQ(Grid().SelectedKey(), "BKS");
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

TEST_F(VendorTypesTest, DeleteAsksFirst) {
    OpenWith();
    const QString question = "You will delete Vendor Type:\r\n\"AG\"\r\n\r\nAre you sure?";
    prompter.ExpectBox(question, false, Box::Icon::Question, "Delete Vendor Type");
    Click("cmdDelete");
    EXPECT_EQ(channel.SentNames(), QStringList{"LstVenTp"});

    prompter.ExpectBox(question);
    prompter.ExpectBox("This vendor type cannot be deleted while\r\nthere are vendor records assigned to it.",
                       true, Box::Icon::None, "Cannot Delete Vendor Type");
    channel.Answer("DelVenTp", 13);
    Click("cmdDelete");
    EXPECT_EQ(GridRows().size(), 3);

    prompter.ExpectBox(question);
    channel.Answer("DelVenTp", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Delete Acquisitions Vendor Types",
                      "Vendor Type");
    Click("cmdDelete");

    prompter.ExpectBox(question);
    channel.Answer("DelVenTp", 0);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"Cd", "AG"}}));
    EXPECT_EQ(GridRows(), (QStringList{"BK|Bookseller", "PUB|Publisher"}));
    EXPECT_EQ(Grid().SelectedKey(), "BK");
}

TEST_F(VendorTypesTest, ReadOnlyOperatorOnlyLooks) {
    SetRights(false);
    OpenWith();
    for (const char* gone : {"cmdNew", "cmdDelete", "cmdSave"})
        EXPECT_TRUE(Get<QWidget>(gone).isHidden()) << gone;
    EXPECT_EQ(Get<QAbstractButton>("cmdEdit").text(), "Vi&ew");
    emit Grid().RowActivated(Grid().SelectedKey());
    EXPECT_EQ(FrameCaption(), "View Vendor Type:");
    EXPECT_EQ(TextOf("txtName"), "Agent");
    EXPECT_TRUE(Get<QLineEdit>("txtName").isReadOnly());
    EXPECT_TRUE(IsEnabled("cmdCancel"));
    Click("cmdCancel");
    EXPECT_FALSE(IsEnabled("fraEdit"));
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
