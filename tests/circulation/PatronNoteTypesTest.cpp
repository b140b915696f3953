#include "circulation/CirculationScreens.h"
#include "support/ScreenTest.h"

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class PatronNoteTypesTest : public ScreenTest {};

TEST_F(PatronNoteTypesTest, NameIsTheWholeRecord) {
    channel.Answer("LstPatNoteTp", 0, {{"ID", "1"}, {"D", "General"}, {"ID", "2"}, {"D", "Address"}});
    Open(AddCirculationScreens, "Circulation_PatronNoteTypes");
    Click("cmdEdit");
    EXPECT_EQ(TextOf("txtName"), "Address");
    Type("txtName", "Addresses");
    channel.Answer("UpdPatNoteTp", 4);
    ExpectErrorDialog(prompter, "Duplicate Record", 4, "Save ", "Patron Note Type");
    Click("cmdSave");
    channel.Answer("UpdPatNoteTp", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"UpdPatNoteTp", {{"D", "Addresses"}, {"ID", "2"}, {"NNm", "Y"}}}));

    Click("cmdNew");
    Type("txtName", "Barcode");
    channel.Answer("AddPatNoteTp", 0, {{"ID", "9"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddPatNoteTp", {{"D", "Barcode"}}}));
    EXPECT_EQ(Grid().SelectedKey(), "9");
    prompter.ExpectBox("You will delete Patron Note Type:\r\n\"Barcode\"\r\n\r\nAre you sure?");
    prompter.ExpectBox(
        "This patron note type cannot be deleted while\r\nthere are patron notes assigned to it.", true,
        Box::Icon::None, "Cannot Delete Patron Note Type");
    channel.Answer("DelPatNoteTp", 13);
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelPatNoteTp", {{"ID", "9"}}}));
}

} // namespace

} // namespace sysadmin
