#include "search/SearchScreens.h"
#include "support/ScreenTest.h"

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

class MaterialTypeTest : public ScreenTest {};

TEST_F(MaterialTypeTest, UpdateSaysWhatChangedAndWhichCodeItWas) {
    channel.Answer("LstBF", 0, {{"Cd", "am"}, {"Nm", "Book"}, {"Cd", "as"}, {"Nm", "Journal"}});
    Open(AddSearchScreens, "Search_MaterialType");
    channel.Answer("GetBF", 0, {{"Cd", "am"}, {"Nm", "Book"}});
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetBF", {{"Cd", "am"}}}));
    Type("txtCode", "aa");
    channel.Answer("UpdBF", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (Sent{"UpdBF", {{"Cd", "aa"}, {"Nm", "Book"}, {"OC", "am"}, {"NCd", "Y"}, {"NNm", "N"}}}));
    EXPECT_EQ(GridRows(), (QStringList{"aa|Book", "as|Journal"}));

    channel.Answer("GetBF", 0, {{"Cd", "aa"}, {"Nm", "Book"}});
    Click("cmdEdit");
    EXPECT_EQ(channel.sent.last(), (Sent{"GetBF", {{"Cd", "aa"}}}));
    Type("txtName", "");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Click("cmdCancel");

    Click("cmdNew");
    Type("txtCode", "as");
    Type("txtName", "Newspaper");
    channel.Answer("AddBF", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Save Search Material Type", "Material Type");
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddBF", {{"Cd", "as"}, {"Nm", "Newspaper"}}}));
    Click("cmdCancel");

    prompter.ExpectBox("You will delete Material Type:\r\n\"aa\"\r\n\r\nAre you sure?");
    prompter.ExpectBox("Record is in use.");
    channel.Answer("DelBF", 13);
    Click("cmdDelete");
    prompter.ExpectBox("You will delete Material Type:\r\n\"aa\"\r\n\r\nAre you sure?");
    channel.Answer("DelBF", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Delete Search Material Type", "Material Type");
    Click("cmdDelete");
    EXPECT_EQ(channel.sent.last(), (Sent{"DelBF", {{"Cd", "aa"}}}));
}

} // namespace

} // namespace sysadmin
