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

TEST_F(PrefsTest, AreKeptPerOperatorOnceSaved) {
    for (const QString operatorId : {"ANNA", "A/B"}) {
        Prefs prefs = LoadAs(operatorId);
        prefs.SetWarnOnClose(true);
        EXPECT_FALSE(LoadAs(operatorId).WarnOnClose()) << "kept before it was saved";
        prefs.SavePreferences();
        EXPECT_TRUE(LoadAs(operatorId).WarnOnClose());
        for (const char* other : {"BERT", "A", "A\\B"})
            EXPECT_FALSE(LoadAs(other).WarnOnClose());
    }
    EXPECT_EQ(UserSettings().value("ANNA/WarnOnClose").toString(), "True");
    UserSettings().clear();
    const Prefs nobodys;
    nobodys.Remember("NavigationWidth", 300);
    EXPECT_TRUE(UserSettings().allKeys().isEmpty());
    EXPECT_EQ(nobodys.Remembered("NavigationWidth", 270).toInt(), 270);
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
