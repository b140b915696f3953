#include "framework/FormView.h"
#include "framework/FieldEditor.h"
#include "framework/MarcPlaceField.h"
#include "framework/forms/ValueFields.h"
#include "support/ScriptedChannel.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

TEST(FormViewTest, BlocksButtonsSecondPlacesAndMarcPlaces) {
    Form form;
    TimeField open(form, {.name = "txtMonOpen", .tag = "MnOTm", .words = {"Closed"}});
    TimeField close(form, {.name = "txtMonClose", .tag = "MnCTm", .words = {"Closed"}});
    TextField note(form, {.name = "txtNote", .tag = "N", .caption = "Note:"});
    MarcPlaceField place(form, {.name = "fraPlace", .caption = "Barcode:"},
                         {.field = {"F", "txtF"},
                          .indicator1 = {"I1", "txtI1"},
                          .indicator2 = {"I2", "txtI2"},
                          .subfield = {"S", "txtS"},
                          .blankIndicator = "_",
                          .order = {"F", "S", "I1", "I2"}});
    ScriptedChannel channel;
    const wire::Fields record{{"F", "245"}, {"S", "a"}, {"I1", "_"}, {"I2", "1"}};
    channel.Answer("Get", 0, record + wire::Fields{{"MnOTm", ""}, {"MnCTm", "Closed"}, {"N", "n"}});
    channel.SendRequest("Get");
    int pressed = 0;
    FormView view(
        form,
        Tabs("tabAll", {Page("One", {Block({"Open Time", "Close Time"}, {BlockRow("Monday:", {open, close})}),
                                     Beside({note, Button("cmdSet", "Set...", [&] { ++pressed; })})}),
                        Page("Two", {Again(note, "txtNote2"), place})}));
    view.show();
    form.Load(channel);
    const auto edit = [&](const QString& name) -> QLineEdit& { return *view.findChild<QLineEdit*>(name); };
    EXPECT_EQ(edit("txtMonOpen").text(), "") << "a missing time";
    EXPECT_EQ(edit("txtMonClose").text(), "Closed");
    EXPECT_EQ(edit("txtMonClose").accessibleName(), "Monday: Close Time");
    edit("txtMonOpen").setFocus();
    QTest::keyClicks(&edit("txtMonOpen"), "0930");
    QTest::keyClick(&edit("txtMonOpen"), Qt::Key_Return);
    EXPECT_EQ(open.Draft(), "09:30");
    EXPECT_EQ(edit("txtMonOpen").text(), open.DisplayText());
    EXPECT_EQ(edit("txtNote").text() + edit("txtNote2").text(), "nn");
    QTest::keyClicks(&edit("txtNote"), "!");
    EXPECT_EQ(edit("txtNote2").text(), "n!");
    view.findChild<QPushButton*>("cmdSet")->click();
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(edit("txtI1").text(), "");
    QTest::keyClicks(&edit("txtF"), "x");
    edit("txtS").clear();
    QTest::keyClicks(&edit("txtS"), "B");
    EXPECT_EQ(edit("txtF").text(), "245") << "digits only";
    place.Put(channel);
    channel.Answer("Save", 0);
    channel.SendRequest("Save");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"F", "245"}, {"S", "b"}, {"I1", "_"}, {"I2", "1"}}));
    place.SetDraft(MarcPlaceField::FieldTag, "24");
    EXPECT_EQ(place.Problem(), "\"Barcode\": a MARC field has three digits.");
    view.SetReadOnly(true);
    EXPECT_FALSE(view.findChild<QPushButton*>("cmdSet")->isEnabled());
    EXPECT_TRUE(edit("txtF").isReadOnly() && edit("txtMonOpen").isReadOnly() &&
                edit("txtNote2").isReadOnly());
}

TEST(FormViewTest, AMarcPlaceMayStandForSeveral) {
    Form form;
    MarcPlaceField place(form, {.name = "fraPlace", .caption = "Fields:"},
                         {.field = {"F", "txtF"}, .indicator1 = {"I1", "txtI1"}, .wildcards = true});
    FormView view(form, Below({place}));
    view.show();
    const struct {
        const char* typed;
        const char* field;
        const char* indicator;
        bool taken;
    } cases[] = {{"65x", "65X", "*", true}, {"6xx", "6XX", "", true},  {"*", "*", "7", true},
                 {"650", "650", "*", true}, {"x65", "65", "*", false}, {"6x", "6X", "*", false},
                 {"*50", "*", "*", true}};
    for (const auto& one : cases) {
        for (const auto& [name, text] : {std::pair("txtF", one.typed), std::pair("txtI1", one.indicator)}) {
            auto& edit = *view.findChild<QLineEdit*>(name);
            edit.selectAll();
            QTest::keyClick(&edit, Qt::Key_Delete);
            QTest::keyClicks(&edit, text);
        }
        EXPECT_EQ(place.Words(), QStringList{QString("%1 %2").arg(one.field, one.indicator).trimmed()});
        EXPECT_EQ(place.Problem().isEmpty(), one.taken) << one.typed;
    }
}

} // namespace

} // namespace sysadmin
