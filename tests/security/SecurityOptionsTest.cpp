#include "framework/ListGrid.h"
#include "security/frmSecurity_SecurityOptions.h"
#include "support/ScreenTest.h"

#include <QDialog>
#include <QFile>
#include <QGroupBox>
#include <QPlainTextEdit>
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

TEST_F(SecurityOptionsTest, ValuesFollowEachOther) {
    const QStringList boxes{"fpMinPasswordLen", "fpMaxPasswordLen",  "fpMinPasswordAge", "fpMaxPasswordAge",
                            "fpReminderDays",   "fpLockoutDuration", "fpLockoutCounter"};
    struct Case {
        const char* box;
        const char* typed;
        const char* after; // of the boxes above
    };
    OpenWith({{"PAX", "20"}, {"LGA", "0"}, {"LKD", "H0"}, {"LKR", "M0"}});
    EXPECT_FALSE(IsEnabled("fpLockoutDuration") || IsEnabled("cboLockoutCounter"));
    for (const Case& one :
         {Case{"fpMinPasswordLen", "5", "8 25 12 20 14 0 0"},
          {"fpMinPasswordLen", "30", "30 30 12 20 14 0 0"},
          {"fpMaxPasswordLen", "12", "12 12 12 20 14 0 0"},
          {"fpMaxPasswordLen", "0", "8 8 12 20 14 0 0"}, // neither end leaves the other behind
          {"fpReminderDays", "30", "8 8 12 30 30 0 0"},
          {"fpMaxPasswordAge", "10", "8 8 12 10 10 0 0"},
          {"fpMinPasswordAge", "300", "8 8 300 13 10 0 0"}, // hours
          {"fpMaxPasswordAge", "5", "8 8 120 5 5 0 0"},
          {"fpMaxPasswordAge", "0", "8 8 120 0 5 0 0"}, // never
          {"fpLoginAttempts", "3", "8 8 120 0 5 24 10"},
          {"fpLockoutDuration", "36", "8 8 120 0 5 36 10"},
          {"fpLoginAttempts", "4", "8 8 120 0 5 36 10"}}) {
        Type(one.box, one.typed);
        QStringList values;
        for (const QString& box : boxes)
            values.append(TextOf(box));
        EXPECT_EQ(values.join(' '), one.after) << one.box << " " << one.typed;
    }
    EXPECT_TRUE(IsEnabled("fpLockoutDuration") && IsEnabled("cboLockoutCounter"));
    Type("fpLoginAttempts", "0");
    EXPECT_FALSE(IsEnabled("fpLockoutDuration"));
    const wire::Fields saved = Saved();
    EXPECT_EQ(wire::FirstValue(saved, "LKD"), "H0");
    EXPECT_EQ(wire::FirstValue(saved, "LKR"), "M0");
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
    channel.Answer("GetInvalidLogins", 55, attempt("KIM", "Kim \"K\", Lee"));
    channel.Answer("GetInvalidLogins", 0, attempt("root", ""));
    Click("cmdRefresh");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"GetInvalidLogins", {{"55", "Y"}}}));
    EXPECT_EQ(GridRows("vsfInvalidLogins"),
              (QStringList{"KIM|Kim \"K\", Lee|2026-01-02 03:04:05|2||192.0.2.4",
                           "root||2026-01-02 03:04:05|2||192.0.2.4"}));
    EXPECT_TRUE(screen.MayClose()) << "reading the log changes nothing";

    QTemporaryDir directory;
    prompter.ExpectSaveFile(directory.filePath("log.csv"));
    Click("cmdExport");
    QFile file(directory.filePath("log.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(file.readAll()).remove(QChar(0xFEFF)),
              "\"UserID\",\"Operator Name\",\"Date / Time\",\"Lockout Counter\",\"Lockout Time\","
              "\"Workstation IP\"\r\n"
              "\"KIM\",\"Kim \"\"K\"\", Lee\",\"2026-01-02 03:04:05\",\"2\",\"\",\"192.0.2.4\"\r\n"
              "\"root\",\"\",\"2026-01-02 03:04:05\",\"2\",\"\",\"192.0.2.4\"\r\n");

    channel.Answer("ClearInvalidLogins", 12);
    ExpectErrorDialog(prompter, "User is not authorized for System Administration.", 12,
                      "Clear Invalid Logins", "Security Options");
    Click("cmdClear");
    EXPECT_EQ(GridRows("vsfInvalidLogins").size(), 2);
    channel.Answer("ClearInvalidLogins", 0);
    Click("cmdClear");
    EXPECT_TRUE(GridRows("vsfInvalidLogins").isEmpty());
}

TEST_F(SecurityOptionsTest, ExpirationIsSetInADialogAndKeptHere) {
    OpenWith();
    channel.Answer("GetMscExpire", 0, {{"ED", "90"}});
    prompter.ExpectDialogResult("dlgPasswordExpiration", [this](QDialog& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtExpireInterval"), "90");
        Type(dialog, "txtExpireInterval", "10");
        prompter.ExpectBox(
            "There is data currently being edited!\r\nPlease save or cancel the open work area.");
        dialog.reject();
        EXPECT_TRUE(dialog.isVisible()) << "an edit is not lost unasked";
        channel.Answer("UpdMscExpire", 3);
        ExpectErrorDialog(prompter, "Database column error.", 3, "Save Password Expiration",
                          "Password Expiration");
        Click(dialog, "cmdSave");
        EXPECT_TRUE(dialog.isVisible());
        channel.Answer("UpdMscExpire", 0);
        Click(dialog, "cmdSave");
    });
    Click("cmdPasswordExpiration");
    EXPECT_EQ(channel.sent.last(), (ScriptedChannel::Sent{"UpdMscExpire", {{"ED", "10"}}}));
    const wire::Fields saved = Saved();
    EXPECT_EQ(wire::FirstValue(saved, "PAX"), "10") << "a later save does not undo it";
    EXPECT_EQ(wire::FirstValue(saved, "ERD"), "10");
}

} // namespace

} // namespace sysadmin
