#pragma once

#include "core/Application.h"
#include "core/MainWindow.h"
#include "core/Screen.h"
#include "core/data/UserSettings.h"
#include "support/FakeCommunication.h"
#include "support/ScriptedChannel.h"
#include "support/ScriptedPrompter.h"

#include <gtest/gtest.h>

namespace sysadmin {

/// A screen that records what the main window does with it.
class TestScreen : public Screen {
public:
    TestScreen(Application& application, QWidget* parent)
        : Screen(application, "frmTest", "Test Screen", parent) {}

    int loads = 0;
    int closeChecks = 0;
    int clusterChanges = 0;
    bool wasShownAtLoad = false;
    bool mayClose = true;
    bool unsaved = false;
    QString wentTo;

    void LoadScreen() override {
        ++loads;
        wasShownAtLoad = isVisible();
    }
    bool MayClose() override {
        ++closeChecks;
        return mayClose;
    }
    void OnClusterChanged() override { ++clusterChanges; }
    bool HasUnsaved() const override { return unsaved; }
    QList<ScreenWord> Words() const override {
        return {{"Retain a trace of", "fpRetain"}, {"Clear the Log", "cmdClear"}};
    }
    QList<ScreenSubject> Subjects() const override { return {{"Tst", {{"Nm", {"Name", "txtName"}}}}}; }
    bool ShowRecord(const QString& word, const QString& key, const QString& control) override {
        wentTo = word + ' ' + key + ' ' + control;
        return true;
    }
    void GoTo(const QString& control) override { wentTo = control; }
};

/// The core with a scripted server and operator and an empty settings store.
class CoreTest : public ::testing::Test {
protected:
    CoreTest() { UserSettings().clear(); }
    ~CoreTest() override { UserSettings().clear(); }

    /// Scripts the two replies from which the rights are read; `flags` are the tags that are "Y".
    void AnswerRights(const QStringList& flags) {
        wire::Fields init;
        for (const char* tag : {"ASPG", "ASPGV", "CatPG", "CatPGV", "CrcPG", "CrcPGV", "CrCnv", "CrCnvV",
                                "Sec", "SecV", "ChgPwd", "SysDf", "SysDfV", "PRB"})
            init += {{tag, flags.contains(tag) ? "Y" : "N"}, {"Dec", "2"}};
        channel.Answer("SAInit", 0, init);
        channel.Answer("CheckMasterProfile", 0,
                       {{"EditPatGrp", flags.contains("EditPatGrp") ? "Y" : "N"},
                        {"PatGrpV", flags.contains("PatGrpV") ? "Y" : "N"}});
    }
    /// The rights as the profile has them after it was loaded with these flags.
    SecurityProfile ProfileWith(const QStringList& flags) {
        AnswerRights(flags);
        SecurityProfile profile;
        profile.Load(channel, "TESTER");
        return profile;
    }

    ScriptedChannel channel;
    FakeCommunication comm{channel};
    ScriptedPrompter prompter;
    Application application{comm, prompter};
};

/// The flags of the sample library's operators.
inline const QStringList AllRights{"ASPG",   "CatPG", "CrcPG", "CrCnv",     "Sec",
                                   "ChgPwd", "SysDf", "PRB",   "EditPatGrp"};
inline const QStringList ViewRights{"ASPGV", "CatPGV", "CrcPGV", "CrCnvV",
                                    "SecV",  "SysDfV", "PRB",    "PatGrpV"};

} // namespace sysadmin
