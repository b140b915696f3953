#include "framework/MaintenanceScreen.h"
#include "framework/PlainScreens.h"
#include "support/ScreenTest.h"
#include "wire/Status.h"

namespace sysadmin {

namespace {

using Sent = ScriptedChannel::Sent;

/// A table that says as little as a table can.
PlainTable Media() {
    return {
        {"System_Media", 1, "Media", Area::System},
        {.subject = "Medium",
         .word = "Med",
         .plural = "Media",
         .matchTag = "Nm",
         .pickLists = {"cboMedium"},
         .pickTag = "Nm"},
        {Declare<TextField>(
             {.name = "txtCode", .tag = "Cd", .caption = "Code:", .required = true, .column = {"Codes", 80}}),
         Declare<TextField>(
             {.name = "txtName", .tag = "Nm", .caption = "Name:", .column = {"Names"}, .changedTag = "NNm"}),
         Declare<ChoiceField>({.name = "cboKind",
                               .tag = "K",
                               .caption = "Kind:",
                               .source = {.request = "LstKnd", .none = "(none)"}})}};
}

void AddMedia(ScreenCatalogue& catalogue) {
    ScreenMaker maker{1, false, [](Application& application, QWidget* parent) {
                          return Media().MakeScreen(application, parent);
                      }};
    catalogue.Contribute("System_Misc", maker);
}

class DeclarationTest : public ScreenTest {
protected:
    void OpenMedia() {
        channel.Answer("LstKnd", 0, {{"ID", "1"}, {"Nm", "Disc"}});
        channel.Answer("LstMed", 0, {{"ID", "5"}, {"Cd", "CD"}, {"Nm", "Compact"}});
        Open(AddMedia, "System_Misc");
    }
};

TEST_F(DeclarationTest, ListPickListsAndSelectionShowWhatWasStored) {
    application.pickLists.Set("cboMedium", {});
    OpenMedia();
    Click("cmdNew");
    Type("txtCode", " DVD ");
    Type("txtName", "Film ");
    channel.Answer("AddMed", 0, {{"ID", "5"}, {"Nm", "Compact"}, {"ID", "9"}, {"Nm", "Film"}});
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(), (Sent{"AddMed", {{"Cd", "DVD"}, {"Nm", "Film"}, {"K", ""}}}));
    EXPECT_EQ(Grid().SelectedKey(), "9");
    EXPECT_EQ(GridRows(), (QStringList{"CD|Compact", "DVD|Film"}));
    EXPECT_EQ(application.pickLists.Items("cboMedium"), (QList<PickItem>{{"9", "Film"}}));

    // Blanks that somebody else stored are not this operator's change.
    channel.Answer("GetMed", 0, {{"Cd", " X"}, {"Nm", "Film"}});
    Click("cmdEdit");
    Type("txtName", "Film  ");
    channel.Answer("UpdMed", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last(),
              (Sent{"UpdMed", {{"ID", "9"}, {"Cd", " X"}, {"Nm", "Film"}, {"K", ""}, {"NNm", "N"}}}));
}

TEST_F(DeclarationTest, ListsAreReadStrictlyOrContinuing) {
    struct Case {
        ListForm form;
        qint16 last;
        QStringList read;
        QList<qint16> reported;
    };
    for (const Case& one :
         {Case{ListForm::Strict, 0, {"2"}, {55}}, Case{ListForm::Strict, 3, {}, {55, 3}},
          Case{ListForm::Continuing, 0, {"1", "2"}, {}}, Case{ListForm::Continuing, 3, {"1"}, {3}}}) {
        channel.sent.clear();
        channel.Answer("LstX", 55, {{"ID", "1"}});
        channel.Answer("LstX", one.last, {{"ID", "2"}});
        QStringList read;
        QList<qint16> reported;
        const qint16 result =
            ReadList(channel,
                     {.request = "LstX",
                      .form = one.form,
                      .putKey = [](RequestChannel& to) { to.PutField("K", "1"); },
                      .report = [&](qint16 status) { reported.append(status); }},
                     {{"ID", [&](RequestChannel& from) { read.append(from.GetField("ID")); }}});
        EXPECT_EQ(result, one.last);
        EXPECT_EQ(read, one.read);
        EXPECT_EQ(reported, one.reported);
        EXPECT_EQ(channel.sent, (QList<Sent>{{"LstX", {{"K", "1"}}}, {"LstX", {{"K", "1"}, {"55", "Y"}}}}));
    }
}

} // namespace

} // namespace sysadmin
