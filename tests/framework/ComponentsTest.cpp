#include "core/data/FileVersions.h"
#include "framework/ListGrid.h"
#include "framework/frmVersionInfo.h"
#include "support/MadeComponent.h"
#include "support/ScriptedPrompter.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

std::optional<FileVersions> VersionsIn(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return ReadFileVersions(buffer);
}

TEST(FileVersions, AreReadFromBothKindsOfFiles) {
    for (const bool wide : {false, true}) {
        const auto versions =
            VersionsIn(MadeComponent({2010, 30, 0, 2003}, {65535, 1, 0, 65535}, wide).bytes);
        ASSERT_TRUE(versions);
        EXPECT_EQ(versions->file.toString(), "2010.30.0.2003");
        EXPECT_EQ(versions->product.toString(), "65535.1.0.65535");
    }
}

TEST(FileVersions, WhatIsNoneOrNotInOrderHasNone) {
    const MadeComponent whole({1, 2, 3, 4}, {5, 6, 7, 8});
    for (int size = 0; size < MadeComponent::Version + 64; size += 3)
        EXPECT_FALSE(VersionsIn(whole.bytes.left(size))) << size;
    const auto spoilt = [&](int offset, quint32 value) {
        MadeComponent made = whole;
        made.Put32(offset, value);
        return VersionsIn(made.bytes).has_value();
    };
    using M = MadeComponent;
    EXPECT_FALSE(spoilt(0, 0x4d5a));
    EXPECT_FALSE(spoilt(0x3c, 0xfffffff0));
    EXPECT_FALSE(spoilt(M::Headers, 0x454e));
    EXPECT_FALSE(spoilt(M::Headers + 24, 0x107));
    EXPECT_FALSE(spoilt(M::Headers + 24 + 92, 2)) << "a directory too few";
    EXPECT_FALSE(spoilt(M::Headers + 24 + 112, 0)) << "no resources";
    EXPECT_FALSE(spoilt(M::Headers + 24 + 112, 0x9000)) << "resources in no section";
    EXPECT_FALSE(spoilt(M::Resources + 32, 17)) << "resources of other kinds";
    EXPECT_FALSE(spoilt(M::Resources + 36, 0x30)) << "no directory of names";
    EXPECT_FALSE(spoilt(M::Resources + 0x30 + 20, 0x50)) << "no directory of languages";
    EXPECT_FALSE(spoilt(M::Resources + 0x50 + 20, 0x80000050)) << "directories without an end";
    EXPECT_FALSE(spoilt(M::Resources + 0x70, 0x100)) << "data in no section";
    EXPECT_FALSE(spoilt(M::Version + 40, 0xfeef04bc)) << "another mark";
    EXPECT_FALSE(spoilt(M::Version, 92)) << "the length of its numbers is 0";
}

// Each byte counts for something or for nothing; none leads astray.
TEST(FileVersions, NoBytesLeadAstray) {
    const MadeComponent whole({1, 2, 3, 4}, {5, 6, 7, 8});
    QRandomGenerator random(20261122);
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes = whole.bytes;
        for (int change = random.bounded(1, 5); change > 0; --change)
            bytes[random.bounded(bytes.size())] = char(random.bounded(256));
        bytes.truncate(random.bounded(4) == 0 ? random.bounded(bytes.size()) : bytes.size());
        if (const auto versions = VersionsIn(bytes)) {
            EXPECT_EQ(versions->file.segmentCount(), 4);
        }
    }
}

TEST(Components, TheTableIsWhole) {
    const ComponentList list = ReadComponentTable(ComponentTable());
    EXPECT_TRUE(list.isWhole);
    ASSERT_EQ(list.components.size(), 24);
    EXPECT_EQ(list.components.first().file, "Tessary2010-30.dll");
    EXPECT_TRUE(list.components.first().exact);
    EXPECT_EQ(list.components.last().file, "VsFlex7N.OCX");
    EXPECT_EQ(list.components.last().minimum.toString(), "7.0.1.165");
    EXPECT_FALSE(list.components.last().exact);
    for (const char* table : {"A~1.0.0.0~1.0.0.0", "A~1.0.0~1.0.0.0~+", "A~1.0.0.0~1.0.0.0~>", "",
                              "A~1.0.0.0~1.0.0.0~+~", "A~1.0.0.0 ~1.0.0.0~="})
        EXPECT_FALSE(ReadComponentTable(table).isWhole) << table;
}

class InstalledComponents : public ::testing::Test {
protected:
    InstalledComponents() {
        setup.folder = folder.path();
        setup.run = [this](const QString& program, const QStringList& arguments) {
            runs.append(QStringList{QDir(folder.path()).relativeFilePath(program), arguments.value(0),
                                    QDir(folder.path()).relativeFilePath(arguments.value(1))}
                            .join(' '));
        };
        for (const RequiredComponent& component : ReadComponentTable(ComponentTable()).components)
            Install(component.file, component.minimum);
    }

    void Write(const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    void Install(const QString& name, const QVersionNumber& version) {
        Write(name, MadeComponent(version, version).bytes);
    }

    QTemporaryDir folder;
    ScriptedPrompter prompter;
    ComponentSetup setup;
    QStringList runs;
};

TEST_F(InstalledComponents, WithNothingWrongNobodyIsAsked) {
    Install("SSLstBar.OCX", {1, 0, 1, 0});   // below the required version, above the minimum
    Install("gttree32.OCX", {1, 0, 0, 100}); // numbers, not letters
    QFile::rename(folder.filePath("Ctyear.OCX"), folder.filePath("CTYEAR.ocx"));
    EXPECT_TRUE(PrepareComponents(setup, prompter));
    EXPECT_EQ(runs, (QStringList{"ComUtil.exe /c KLV_UnicodeTree.ocx", "ComUtil.exe /c KLVUCTBX.OCX",
                                 "ComUtil.exe /c Tessary2010-30.dll",
                                 "ComUtil.exe /c HeadingForge2009.11-151.dll"}));
}

TEST_F(InstalledComponents, WhatIsWrongIsListedAndGoneOnWithOrNot) {
    Write("TessaryX.DLL", "no library");
    Write("Tessary.txt", "no library");
    Write("Vardle1.dll", "no library");
    QFile::remove(folder.filePath("Ctmonth.OCX"));
    Write("VsFlex7L.OCX", "MZ and no more");
    Install("KLVUCTBX.OCX", {2, 0, 0, 8});
    Write("Mscomctl.OCX", MadeComponent({6, 0, 88, 62}, {6, 0, 88, 61}).bytes);
    Install("ActBar.OCX", {1, 0, 6, 4});
    const QStringList wrong{"ActBar.OCX|Wrong File Version:  (1.0.6.4)",
                            "ActBar.OCX|Wrong Product Version:  (1.0.6.4)",
                            "Ctmonth.OCX|File is missing.",
                            "KLVUCTBX.OCX|Wrong File Version:  (2.0.0.8)",
                            "KLVUCTBX.OCX|Wrong Product Version:  (2.0.0.8)",
                            "Mscomctl.OCX|Wrong Product Version:  (6.0.88.61)",
                            "VsFlex7L.OCX|No version Info."};
    const auto look = [&](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Resource Validation Errors");
        EXPECT_EQ(dialog.findChild<QLabel*>("lblNote")->text(),
                  "These errors must be corrected for this application to run.");
        const GridModel& model = dialog.findChild<ListGrid*>()->Model();
        EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), "Required Resource");
        EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Error Condition");
        QStringList shown;
        for (const GridRow& row : model.Rows())
            shown.append(row.cells.Texts().join('|'));
        EXPECT_EQ(shown, wrong);
    };
    prompter.ExpectDialogResult("frmVersionInfo", [&](QDialog& dialog) {
        look(dialog);
        prompter.ExpectDialog("frmPrintPreview", [](QDialog&) { return true; });
        dialog.findChild<QPushButton*>("cmdV_I_PrintList")->click();
        dialog.findChild<QPushButton*>("cmdV_I_Copy")->click();
        EXPECT_EQ(QGuiApplication::clipboard()->text(), wrong.join('\n').replace('|', '\t') + '\n');
        dialog.findChild<QPushButton*>("cmdV_I_Exit")->click();
    });
    EXPECT_FALSE(PrepareComponents(setup, prompter));
    EXPECT_EQ(runs.size(), 6);
    EXPECT_EQ(runs.filter("dll", Qt::CaseInsensitive).size(), 4);
    prompter.ExpectDialogResult("frmVersionInfo", [&](QDialog& dialog) { dialog.reject(); });
    EXPECT_TRUE(PrepareComponents(setup, prompter));
    // Without the check they are registered all the same.
    runs.clear();
    setup.check = false;
    EXPECT_TRUE(PrepareComponents(setup, prompter));
    EXPECT_EQ(runs.size(), 6);
}

TEST_F(InstalledComponents, ATableThatIsNotWholeIsToldAndTheRestChecked) {
    setup.table = "ActBar.OCX~1.0.6.5~1.0.6.5~+~Other.OCX~1.0.6~1.0.6.5~+~Missing.OCX~1.0.6.5~1.0.6.5~=";
    prompter.ExpectBox("Resource List/Count and/or Version Table mismatch!", true, {}, "Resource Error");
    prompter.ExpectDialogResult("frmVersionInfo", [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<ListGrid*>()->Model().rowCount(), 1);
        dialog.reject();
    });
    EXPECT_TRUE(PrepareComponents(setup, prompter));
}

TEST_F(InstalledComponents, WithoutTheFolderThereAreNone) {
    setup.folder = folder.filePath("System");
    EXPECT_TRUE(PrepareComponents(setup, prompter));
    EXPECT_TRUE(runs.isEmpty());
}

TEST(Components, AProgramIsWaitedFor) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("done");
    RunAndWait("/bin/sh", {"-c", "sleep 0.2; echo done > '" + file + "'"});
    EXPECT_TRUE(QFile::exists(file));
    RunAndWait(folder.filePath("ComUtil.exe"), {"/c", file}); // is not there: nothing comes of it
}

} // namespace
} // namespace sysadmin
