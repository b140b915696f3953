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

} // namespace

} // namespace sysadmin
