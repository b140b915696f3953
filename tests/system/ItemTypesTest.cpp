#include "framework/ListGrid.h"
#include "support/ScreenTest.h"
#include "system/SystemScreens.h"

namespace sysadmin {

namespace {

class ItemTypesTest : public ScreenTest {
protected:
    ItemTypesTest() {
        channel.Answer(
            "LstItmTp", 0,
            {{"ID", "4"}, {"Cd", "book"}, {"Nm", "Book"}, {"ID", "9"}, {"Cd", "map"}, {"Nm", "Map"}});
        application.pickLists.Set("cboItemType", {{"4", "Book"}, {"9", "Map"}});
        Open(AddSystemScreens, "System_ItemTypes");
    }
    /// What another screen's list of item types shows.
    QStringList Shown() const {
        QStringList texts;
        for (const PickItem& item : application.pickLists.Items("cboItemType"))
            texts << item.id + ":" + item.text;
        return texts;
    }
};

TEST_F(ItemTypesTest, AddFindsItsIdAmongTheReplysRecords) {
    Click("cmdNew");
    EXPECT_EQ(FrameCaption(), "New Item Types:");
    Type("txtCode", " dvd ");
    Type("txtName", "DVD");
    Type("txtDisplayName", "Film");
    channel.Answer("AddItmTp", 0, {{"ID", "4"}, {"Cd", "book"}, {"ID", "12"}, {"Cd", "dvd"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (ScriptedChannel::Sent{"AddItmTp", {{"Nm", "DVD"}, {"Cd", "dvd"}, {"Dsp", "Film"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "12");
    EXPECT_EQ(Shown(), (QStringList{"4:Book", "12:DVD", "9:Map"}));
    EXPECT_FALSE(application.pickLists.Has("cboTempItemType")) << "its first reader loads it whole";
}

TEST_F(ItemTypesTest, UpdateSaysWhetherTheNameChanged) {
    channel.Answer("GetItmTp", 0, {{"Cd", "book"}, {"Nm", "Book"}, {"Dsp", "A book"}});
    Click("cmdEdit");
    EXPECT_EQ(FrameCaption(), "Edit Item Types:");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"ID", "4"}}));
    EXPECT_EQ(TextOf("txtDisplayName"), "A book");
    Type("txtName", "Volume");
    channel.Answer("UpdItmTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields,
              (wire::Fields{{"Nm", "Volume"}, {"Cd", "book"}, {"Dsp", "A book"}, {"ID", "4"}, {"NNm", "Y"}}));
    EXPECT_EQ(Shown(), (QStringList{"9:Map", "4:Volume"}));
}

TEST_F(ItemTypesTest, FailuresAreReportedUnderTheirOwnContexts) {
    channel.Answer("GetItmTp", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Save System Item Types", "Item Type");
    Click("cmdEdit");
    EXPECT_FALSE(IsEnabled("fraEdit"));

    const QString question = "You will delete Item Type:\r\n\"book\"\r\n\r\nAre you sure?";
    prompter.ExpectBox(question);
    channel.Answer("DelItmTp", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Edit Print Locations", "Item Type");
    Click("cmdDelete");
    prompter.ExpectBox(question);
    channel.Answer("DelItmTp", 84);
    prompter.ExpectBox("This item type cannot be deleted while there are item records assigned to it.");
    Click("cmdDelete");
    EXPECT_EQ(Shown().size(), 2);

    prompter.ExpectBox(question);
    channel.Answer("DelItmTp", 0);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"ID", "4"}}));
    EXPECT_EQ(Shown(), QStringList{"9:Map"});
}

} // namespace

} // namespace sysadmin
