#include "CoreTest.h"

#include "core/PreferencesDialog.h"

#include <QCheckBox>
#include <QPushButton>

namespace sysadmin {

namespace {

class PrefsTest : public CoreTest {
protected:
    Prefs LoadAs(const QString& operatorId) {
        comm.session.operatorId = operatorId;
        Prefs prefs;
        prefs.LoadPreferences(comm.session);
        return prefs;
    }
};

TEST_F(PrefsTest, KeepsTheWarningPerOperator) {
    Prefs first = LoadAs("ANNA");
    EXPECT_FALSE(first.WarnOnClose());
    first.SetWarnOnClose(true);
    EXPECT_FALSE(LoadAs("ANNA").WarnOnClose()) << "kept before it was saved";
    first.SavePreferences();

    EXPECT_TRUE(LoadAs("ANNA").WarnOnClose());
    EXPECT_FALSE(LoadAs("BERT").WarnOnClose());
    EXPECT_EQ(UserSettings().value("ANNA/WarnOnClose").toString(), "True");

    first.SetWarnOnClose(false);
    first.SavePreferences();
    EXPECT_FALSE(LoadAs("ANNA").WarnOnClose());
}

TEST_F(PrefsTest, OperatorIdsWithSeparatorsStaySeparate) {
    Prefs odd = LoadAs("A/B");
    odd.SetWarnOnClose(true);
    odd.SavePreferences();
    EXPECT_TRUE(LoadAs("A/B").WarnOnClose());
    EXPECT_FALSE(LoadAs("A").WarnOnClose());
    EXPECT_FALSE(LoadAs("A\\B").WarnOnClose());
}

TEST_F(PrefsTest, KeepsNothingBeforeItKnowsWhose) {
    const Prefs prefs;
    prefs.Remember("NavigationWidth", 300);
    EXPECT_TRUE(UserSettings().allKeys().isEmpty());
    EXPECT_EQ(prefs.Remembered("NavigationWidth", 270).toInt(), 270);
}

TEST_F(PrefsTest, TheDialogSavesOnlyWhenConfirmed) {
    Prefs prefs = LoadAs("ANNA");
    const auto work = [&](const char* button) {
        PreferencesDialog dialog(prefs);
        auto* warn = dialog.findChild<QCheckBox*>("chkWarnOnClose");
        const bool shown = warn->isChecked();
        warn->toggle();
        dialog.findChild<QPushButton*>(button)->click();
        return shown;
    };
    EXPECT_FALSE(work("cmdCancel"));
    EXPECT_FALSE(prefs.WarnOnClose() || LoadAs("ANNA").WarnOnClose());
    EXPECT_FALSE(work("cmdOK"));
    EXPECT_TRUE(prefs.WarnOnClose() && LoadAs("ANNA").WarnOnClose());
    EXPECT_TRUE(work("cmdCancel")) << "the dialog does not show what is set";
}

} // namespace

} // namespace sysadmin
