#include "framework/ListGrid.h"
#include "security/frmSecurity_SecurityOptions.h"
#include "support/ScreenTest.h"

#include <QDialog>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

namespace sysadmin {

namespace {

class SecurityOptionsTest : public ScreenTest {
protected:
    /// Answers with the usual options, some of them replaced, and opens the screen.
    frmSecurity_SecurityOptions& OpenWith(const QHash<QString, QString>& changed = {},
                                          const wire::Fields& log = {}) {
        wire::Fields fields = m_usual;
        for (wire::Field& field : fields)
            field.value = changed.value(field.tag, field.value);
        channel.Answer("GetSecOptions", 0, fields);
        channel.Answer("GetInvalidLogins", 0, log);
        return Open<frmSecurity_SecurityOptions>();
    }
    wire::Fields Saved() {
        channel.Answer("UpdSecOptions", 0);
        Click("cmdSave");
        return channel.sent.last().fields;
    }
    QString SavedValue(const QString& tag) { return wire::FirstValue(Saved(), tag); }

    const wire::Fields m_usual{{"PMC", "3"},          {"PAM", "H12"},    {"PAX", "90"},  {"ERD", "14"},
                               {"PLM", "8"},          {"PLX", "25"},     {"PCI", "N"},   {"PCN", "Y"},
                               {"PAL", "2"},          {"PAG", "Y"},      {"PUL", "0"},   {"PUG", "N"},
                               {"PLL", "0"},          {"PLG", "N"},      {"PNL", "1"},   {"PNG", "Y"},
                               {"PSL", "1"},          {"PSG", "N"},      {"PGR", "0"},   {"PSC", "!#"},
                               {"PDD", "7"},          {"LGA", "5"},      {"LKD", "H24"}, {"LKR", "M10"},
                               {"PDT", "One\r\nTwo"}, {"SWT", "Beware"}, {"LAT", "Y"}};
};

TEST_F(SecurityOptionsTest, EveryOptionIsSentBackInItsPlace) {
    OpenWith();
    EXPECT_EQ(channel.SentNames(), (QStringList{"GetSecOptions", "GetInvalidLogins"}));
    EXPECT_EQ(Get<QGroupBox>("fraEdit").title(), "Password Options");
    EXPECT_EQ(TextOf("fpMinPasswordAge"), "12");
    EXPECT_EQ(Get<QComboBox>("cboMinPasswordAge").currentText(), "Hours");
    EXPECT_EQ(Get<QComboBox>("cboMinPasswordAge").count(), 2);
    EXPECT_EQ(Get<QComboBox>("cboLockoutCounter").currentText(), "Minutes");
    EXPECT_EQ(Get<QPlainTextEdit>("txtPasswordDisplay").toPlainText(), "One\nTwo");
    EXPECT_EQ(Saved(), m_usual);
    Type("fpPreviousCnt", "5");
    EXPECT_EQ(SavedValue("PMC"), "5");
    Type("fpPreviousCnt", "");
    EXPECT_FALSE(IsEnabled("cmdSave"));
}

TEST_F(SecurityOptionsTest, LengthsFollowEachOther) {
    OpenWith();
    const auto lengths = [&] {
        return QString(TextOf("fpMinPasswordLen") + '-' + TextOf("fpMaxPasswordLen"));
    };
    Type("fpMinPasswordLen", "5");
    EXPECT_EQ(lengths(), "8-25");
    Type("fpMinPasswordLen", "30");
    EXPECT_EQ(lengths(), "30-30");
    Type("fpMaxPasswordLen", "12");
    EXPECT_EQ(lengths(), "12-12");
    Type("fpMaxPasswordLen", "0");
    EXPECT_EQ(lengths(), "8-8") << "neither end leaves the other behind";
    Type("fpMaxPasswordLen", "40");
    EXPECT_EQ(lengths(), "8-40");
}

TEST_F(SecurityOptionsTest, GroupIsOpenOnlyWhenSomeRequirementsAreEnough) {
    OpenWith();
    const QStringList grouped{"fpGroupReq",         "chkMinAlphaCharGrp",  "chkMinUpperCharGrp",
                              "chkMinLowerCharGrp", "chkMinNumberCharGrp", "chkMinSpecialCharGrp",
                              "lblIncludeInGroup"};
    for (const QString& name : grouped)
        EXPECT_FALSE(IsEnabled(name)) << name.toStdString();
    Click("optGroupReq1");
    for (const QString& name : grouped)
        EXPECT_TRUE(IsEnabled(name)) << name.toStdString();
    Type("fpGroupReq", "2");
    wire::Fields saved = Saved();
    EXPECT_EQ(wire::FirstValue(saved, "PGR"), "2");
    EXPECT_EQ(wire::FirstValue(saved, "PAG"), "Y");
    Type("fpGroupReq", "");
    EXPECT_FALSE(IsEnabled("cmdSave"));
    Click("optGroupReq0");
    EXPECT_EQ(SavedValue("PGR"), "0") << "0 is all of them";
}

TEST_F(SecurityOptionsTest, StoredGroupIsShown) {
    OpenWith({{"PGR", "3"}, {"PSG", "Y"}});
    EXPECT_TRUE(Get<QAbstractButton>("optGroupReq1").isChecked());
    EXPECT_EQ(TextOf("fpGroupReq"), "3");
    EXPECT_EQ(SavedValue("PGR"), "3");
}

TEST_F(SecurityOptionsTest, RulesThatNobodyCanFollowAreQuestioned) {
    OpenWith();
    Type("fpMinAlphaChar", "24");
    const QString question =
        "Your minimum password character requirements are not satisified.  Continue anyway?";
    prompter.ExpectBox(question, false, Box::Icon::Question);
    Click("cmdSave");
    EXPECT_EQ(channel.sent.last().name, "GetInvalidLogins") << "nothing is saved";
    prompter.ExpectBox(question, true);
    EXPECT_EQ(SavedValue("PAL"), "24");
    Type("fpMinAlphaChar", "23"); // 23 letters, a digit, a special character
    EXPECT_EQ(SavedValue("PAL"), "23");
    Type("txtSpecialChar", "");
    prompter.ExpectBox(question, false);
    Click("cmdSave");
    Type("txtSpecialChar", "#");
    Click("optGroupReq1");
    Type("fpGroupReq", "3"); // of two included ones
    prompter.ExpectBox(question, false);
    Click("cmdSave");
}

TEST_F(SecurityOptionsTest, LockoutTakesItsDefaultsAndLosesThem) {
    OpenWith({{"LGA", "0"}, {"LKD", "H0"}, {"LKR", "M0"}});
    for (const char* name :
         {"fpLockoutDuration", "cboLockoutDuration", "fpLockoutCounter", "cboLockoutCounter"})
        EXPECT_FALSE(IsEnabled(name)) << name;
    Type("fpLoginAttempts", "3");
    EXPECT_TRUE(IsEnabled("fpLockoutDuration"));
    EXPECT_TRUE(IsEnabled("cboLockoutCounter"));
    wire::Fields saved = Saved();
    EXPECT_EQ(wire::FirstValue(saved, "LGA"), "3");
    EXPECT_EQ(wire::FirstValue(saved, "LKD"), "H24");
    EXPECT_EQ(wire::FirstValue(saved, "LKR"), "M10");

    // Values of the operator's own stay while the number of attempts is typed over.
    Type("fpLockoutDuration", "36");
    Type("fpLoginAttempts", "4");
    EXPECT_EQ(TextOf("fpLockoutDuration"), "36");
    Type("fpLoginAttempts", "0");
    EXPECT_FALSE(IsEnabled("fpLockoutDuration"));
    saved = Saved();
    EXPECT_EQ(wire::FirstValue(saved, "LKD"), "H0");
    EXPECT_EQ(wire::FirstValue(saved, "LKR"), "M0");
}

TEST_F(SecurityOptionsTest, AnotherUnitIsTheSameTime) {
    OpenWith();
    const auto lockout = [&](const QString& unit) {
        Choose("cboLockoutDuration", unit);
        return SavedValue("LKD");
    };
    EXPECT_EQ(lockout("Minutes"), "M1440");
    EXPECT_EQ(lockout("Days"), "D1");
    EXPECT_EQ(lockout("Hours"), "H24");
    Type("fpLockoutDuration", "25");
    EXPECT_EQ(lockout("Days"), "D2") << "rounded up: no lock gets shorter";
    Choose("cboLockoutCounter", "Hours");
    EXPECT_EQ(SavedValue("LKR"), "H1") << "ten minutes do not become nothing";
    Type("fpLockoutDuration", "0");
    EXPECT_EQ(lockout("Minutes"), "M0");
}

TEST_F(SecurityOptionsTest, AgesDoNotContradictEachOther) {
    OpenWith({{"PAX", "20"}});
    Type("fpReminderDays", "30");
    EXPECT_EQ(TextOf("fpMaxPasswordAge"), "30");
    Type("fpMaxPasswordAge", "10");
    EXPECT_EQ(TextOf("fpReminderDays"), "10");
    Type("fpMinPasswordAge", "300"); // hours
    EXPECT_EQ(TextOf("fpMaxPasswordAge"), "13");
    Type("fpMaxPasswordAge", "5");
    EXPECT_EQ(SavedValue("PAM"), "H120");
    Type("fpMaxPasswordAge", "0"); // never
    EXPECT_EQ(TextOf("fpReminderDays"), "5");
    EXPECT_EQ(TextOf("fpMinPasswordAge"), "120");
}

TEST_F(SecurityOptionsTest, FailuresLeaveTheScreenAsItIs) {
    OpenWith();
    Type("fpPreviousCnt", "9");
    channel.Answer("UpdSecOptions", 1);
    ExpectErrorDialog(prompter, "Communications Failure", 1, "Save Security", "Security Options");
    Click("cmdSave");
    EXPECT_EQ(TextOf("fpPreviousCnt"), "9");
}

TEST_F(SecurityOptionsTest, UnreadOptionsCannotBeSaved) {
    channel.Answer("GetSecOptions", 5);
    channel.Answer("GetInvalidLogins", 2);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Load Security Options",
                      "Security Options");
    ExpectErrorDialog(prompter, "Database table error.", 2, "Getting Invalid Logins", "Security Options");
    Open<frmSecurity_SecurityOptions>();
    EXPECT_FALSE(IsEnabled("cmdSave"));
}

TEST_F(SecurityOptionsTest, LogIsReadInBatchesExportedAndCleared) {
    const auto attempt = [](const QString& id, const QString& name) {
        return wire::Fields{{"LI", id},  {"ON", name}, {"AT", "2026-01-02 03:04:05"},
                            {"LC", "2"}, {"LT", ""},   {"WI", "192.0.2.4"}};
    };
    Screen& screen = OpenWith({}, attempt("OLD", "Old"));
    channel.Answer("GetInvalidLogins", 55, attempt("KIM", "Kim \"K\", Lee") + attempt("ANN", "Ann"));
    channel.Answer("GetInvalidLogins", 0, attempt("root", ""));
    Click("cmdRefresh");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetInvalidLogins", {{"55", "Y"}}}));
    EXPECT_EQ(
        GridRows("vsfInvalidLogins"),
        (QStringList{"KIM|Kim \"K\", Lee|2026-01-02 03:04:05|2||192.0.2.4",
                     "ANN|Ann|2026-01-02 03:04:05|2||192.0.2.4", "root||2026-01-02 03:04:05|2||192.0.2.4"}));
    EXPECT_TRUE(screen.MayClose()) << "reading the log changes nothing";

    QTemporaryDir directory;
    const QString fileName = directory.filePath("log.csv");
    prompter.ExpectSaveFile(fileName);
    Click("cmdExport");
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(file.readAll()).remove(QChar(0xFEFF)),
              "\"UserID\",\"Operator Name\",\"Date / Time\",\"Lockout Counter\",\"Lockout Time\","
              "\"Workstation IP\"\r\n"
              "\"KIM\",\"Kim \"\"K\"\", Lee\",\"2026-01-02 03:04:05\",\"2\",\"\",\"192.0.2.4\"\r\n"
              "\"ANN\",\"Ann\",\"2026-01-02 03:04:05\",\"2\",\"\",\"192.0.2.4\"\r\n"
              "\"root\",\"\",\"2026-01-02 03:04:05\",\"2\",\"\",\"192.0.2.4\"\r\n");
    prompter.ExpectSaveFile("");
    Click("cmdExport");

    channel.Answer("ClearInvalidLogins", 12);
    ExpectErrorDialog(prompter, "User is not authorized for System Administration.", 12,
                      "Clear Invalid Logins", "Security Options");
    Click("cmdClear");
    EXPECT_EQ(GridRows("vsfInvalidLogins").size(), 3);
    channel.Answer("ClearInvalidLogins", 0);
    Click("cmdClear");
    EXPECT_TRUE(GridRows("vsfInvalidLogins").isEmpty());
}

TEST_F(SecurityOptionsTest, ExpirationIsSetInADialogAndKeptHere) {
    OpenWith();
    channel.Answer("GetMscExpire", 0, {{"ED", "90"}});
    prompter.ExpectDialogResult("dlgPasswordExpiration", [this](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Password Expiration");
        auto* days = dialog.findChild<QLineEdit*>("txtExpireInterval");
        EXPECT_EQ(days->text(), "90");
        EXPECT_FALSE(days->hasAcceptableInput() && (days->setText("1000"), days->hasAcceptableInput()));
        const auto type = [&](const QString& text) {
            days->setText(text);
            emit days->textEdited(text);
        };
        type("10");
        prompter.ExpectBox(
            "There is data currently being edited!\r\nPlease save or cancel the open work area.");
        dialog.reject();
        EXPECT_TRUE(dialog.isVisible()) << "an edit is not lost unasked";
        channel.Answer("UpdMscExpire", 3);
        ExpectErrorDialog(prompter, "Database column error.", 3, "Save Password Expiration",
                          "Password Expiration");
        dialog.findChild<QPushButton*>("cmdSave")->click();
        EXPECT_TRUE(dialog.isVisible());
        channel.Answer("UpdMscExpire", 0);
        dialog.findChild<QPushButton*>("cmdSave")->click();
        EXPECT_FALSE(dialog.isVisible());
    });
    Click("cmdPasswordExpiration");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"UpdMscExpire", {{"ED", "10"}}}));
    const wire::Fields saved = Saved();
    EXPECT_EQ(wire::FirstValue(saved, "PAX"), "10") << "a later save does not undo it";
    EXPECT_EQ(wire::FirstValue(saved, "ERD"), "10");

    channel.Answer("GetMscExpire", 0, {{"ED", "10"}});
    prompter.ExpectDialogResult("dlgPasswordExpiration", [](QDialog& dialog) {
        auto* days = dialog.findChild<QLineEdit*>("txtExpireInterval");
        days->setText("77");
        emit days->textEdited("77");
        dialog.findChild<QPushButton*>("cmdCancel")->click();
        EXPECT_FALSE(dialog.isVisible());
    });
    Click("cmdPasswordExpiration");
    EXPECT_EQ(TextOf("fpMaxPasswordAge"), "10");
}

TEST_F(SecurityOptionsTest, ViewerReadsAndExportsOnly) {
    SetRights(false);
    OpenWith();
    EXPECT_TRUE(Get<QWidget>("cmdSave").isHidden());
    EXPECT_FALSE(IsEnabled("cmdClear"));
    EXPECT_TRUE(IsEnabled("cmdRefresh"));
    EXPECT_TRUE(IsEnabled("cmdExport"));
    EXPECT_TRUE(Get<QLineEdit>("fpPreviousCnt").isReadOnly());
    EXPECT_FALSE(IsEnabled("optGroupReq1"));
}

} // namespace

} // namespace sysadmin
