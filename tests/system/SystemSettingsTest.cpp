#include "support/ScreenTest.h"
#include "system/SystemScreens.h"
#include "system/frmSystem_BaseCurrency.h"

#include <QGroupBox>
#include <QSignalSpy>

namespace sysadmin {

namespace {

const wire::Fields Dollars{
    {"CtNm", "United States"}, {"CrNm", "US Dollar"}, {"CrCd", "USD"}, {"Dec", "2"}, {"Dlm", "."}};

class SystemSettingsTest : public ScreenTest {};

TEST_F(SystemSettingsTest, NewDecimalsOfTheBaseCurrencyAreInForceAtOnce) {
    channel.Answer("GetBsCur", 0, Dollars);
    Open<frmSystem_BaseCurrency>();
    EXPECT_EQ(FrameCaption(), "Edit Base Currency:");
    const QSignalSpy notices(&application.notices, &Notices::SubjectChanged);
    Type("txtBaseDecimals", "3");
    Type("txtDecimalDelimiter", ",");
    channel.Answer("UpdBsCur", 0);
    Click("cmdSave");
    EXPECT_EQ(
        channel.sent.last().fields,
        (wire::Fields{
            {"CtNm", "United States"}, {"CrNm", "US Dollar"}, {"CrCd", "USD"}, {"Dec", "3"}, {"Dlm", ","}}));
    EXPECT_EQ(application.profile.MoneyDecimals(), 3);
    ASSERT_EQ(notices.size(), 1);
    EXPECT_EQ(notices[0][0].toString(), "BsCur");
}

TEST_F(SystemSettingsTest, FirstBaseCurrencyIsAddedThenUpdated) {
    channel.Answer("GetBsCur", 0);
    Open<frmSystem_BaseCurrency>();
    EXPECT_EQ(TextOf("txtBaseDecimals"), "2");
    EXPECT_EQ(TextOf("txtDecimalDelimiter"), ".");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Type("txtCurrencyName", "Yen");
    Type("txtCurrencyCode", "JPY");
    Type("txtBaseDecimals", "0");
    channel.Answer("AddBsCur", 2);
    ExpectErrorDialog(prompter, "Database table error.", 2, "Data Change", "Base Currency");
    Click("cmdSave");
    EXPECT_EQ(application.profile.MoneyDecimals(), 2) << "nothing was saved";
    for (const char* request : {"AddBsCur", "UpdBsCur"}) {
        channel.Answer(request, 0);
        Click("cmdSave");
        EXPECT_EQ(channel.sent.last().name, request);
    }
    EXPECT_EQ(application.profile.MoneyDecimals(), 0);
}

TEST_F(SystemSettingsTest, BaseCurrencyIsChecked) {
    channel.Answer("GetBsCur", 0, Dollars);
    Open<frmSystem_BaseCurrency>();
    Type("txtDecimalDelimiter", ";");
    prompter.ExpectBox("\"Decimal Delimiter\" must be a period or a comma.", true, Box::Icon::Exclamation);
    Click("cmdSave");
    EXPECT_TRUE(Get<QWidget>("txtDecimalDelimiter").hasFocus());
    Type("txtDecimalDelimiter", ".");
    Type("txtBaseDecimals", "5");
    if (TextOf("txtBaseDecimals") == "5")
        prompter.ExpectBox("\"Base Decimals\" must be a whole number from 0 to 4.");
    if (IsEnabled("cmdSave"))
        Click("cmdSave");
    EXPECT_EQ(channel.SentNames(), QStringList{"GetBsCur"});
}

TEST_F(SystemSettingsTest, MiscellaneousSwitchesTravelInOrder) {
    channel.Answer("GetMsc", 0, {{"RP", "Y"}, {"MP", "N"}, {"D", "N"}, {"DSS", "Y"}});
    Screen& screen = Open(AddSystemScreens, "System_Misc");
    EXPECT_EQ(FrameCaption(), "Edit System Miscellaneous");
    EXPECT_TRUE(screen.MayClose());
    Check("chkDistHistory", true);
    prompter.ExpectBox("There is data currently being edited!\r\nPlease save or cancel the open work area.");
    EXPECT_FALSE(screen.MayClose());
    channel.Answer("UpdMsc", 3);
    ExpectErrorDialog(prompter, "Database column error.", 3, "Save System Miscellaneous",
                      "System Miscellaneous");
    Click("cmdSave");
    channel.Answer("UpdMsc", 0);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().fields, (wire::Fields{{"RP", "Y"}, {"MP", "N"}, {"D", "Y"}, {"DSS", "Y"}}));
    EXPECT_TRUE(screen.MayClose());
}

TEST_F(SystemSettingsTest, ReadOnlyMiscellaneousIsCaptionedSo) {
    SetRights(false);
    channel.Answer("GetMsc", 0, {{"RP", "Y"}});
    Open(AddSystemScreens, "System_Misc");
    EXPECT_EQ(FrameCaption(), "View System Miscellaneous");
    EXPECT_TRUE(Get<QWidget>("cmdSave").isHidden());
    Get<QCheckBox>("chkCircHistory").click();
    EXPECT_TRUE(Get<QCheckBox>("chkCircHistory").isChecked()) << "display only";
}

} // namespace

} // namespace sysadmin
