#include "framework/ListGrid.h"
#include "framework/ListPrint.h"
#include "framework/PlainScreens.h"
#include "framework/forms/DeclaredForm.h"
#include "support/ScreenTest.h"

#include <QBuffer>
#include <QContextMenuEvent>
#include <QGroupBox>
#include <QMenu>
#include <QPdfWriter>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace sysadmin {

namespace {

/// What a maintenance screen tells of its list and offers to do with it.
class ListToolsTest : public ScreenTest {
protected:
    ListToolsTest() {
        channel.Answer(
            "LstPer", 0,
            {{"ID", "1"}, {"Nm", "Fall"}, {"Cl", "N"}, {"ID", "2"}, {"Nm", "Spring"}, {"Cl", "Y"}});
        QObject::connect(&application.notices, &Notices::Done, [this](const QString& text) { done = text; });
    }
    static void Contribute(ScreenCatalogue& catalogue) {
        catalogue.Contribute(PlainTable{
            {"Acquisitions_FiscalTypes", 1, "Periods", Area::System},
            {.subject = "Period", .word = "Per", .plural = "Periods"},
            {Declare<TextField>(
                 {.name = "txtName", .tag = "Nm", .caption = "Name:", .required = true, .column = {"Names"}}),
             Declare<DateField>(
                 {.name = "dtpStart", .tag = "StDt", .caption = "Start:", .format = "MM/dd/yyyy"}),
             Declare<TextField>({.name = "txtNote", .tag = "Nt", .caption = "Note:"}),
             Declare<FlagField>({.name = "chkClosed",
                                 .tag = "Cl",
                                 .caption = "Closed",
                                 .column = {"Closed", 0, true, true}})}});
    }
    QMenu& MenuOf(ListGrid& grid) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(grid.viewport(), &event);
        return Get<QMenu>(grid, "mnuGrid");
    }
    QString LabelText(const QString& name) { return Get<QLabel>(name).text(); }
    QStringList Summary() {
        QStringList texts;
        for (const QLabel* label : Get<QWidget>("fraSummary").findChildren<QLabel*>())
            texts.append(label->text());
        return texts;
    }

    QString done;
};

TEST_F(ListToolsTest, TheSelectedRowIsSummedUpAndNothingIsSentForIt) {
    Open(Contribute, "Acquisitions_FiscalTypes");
    const qsizetype sent = channel.sent.size();
    Select(*front, "Spring");
    EXPECT_TRUE(Summary().contains("Spring") && Summary().contains("Closed") && Summary().contains("Yes"));
    EXPECT_FALSE(Get<QLineEdit>("txtName").isVisible());
    EXPECT_EQ(channel.sent.size(), sent);
    EXPECT_EQ(LabelText("lblRows_vsf"), "2 rows");
    Grid().FilterBox()->setText("fa");
    EXPECT_EQ(LabelText("lblRows_vsf"), "1 of 2 rows");
    EXPECT_TRUE(Summary().contains("Fall") && Summary().contains("No"));
}

TEST_F(ListToolsTest, WhatIsMissingIsSaidAndWhatIsDoneToo) {
    Screen& screen = Open(Contribute, "Acquisitions_FiscalTypes");
    Click("cmdNew");
    EXPECT_EQ(LabelText("lblMissing"), "Still needed: Name");
    EXPECT_EQ(Get<QWidget>("cmdSave").accessibleDescription(), "Still needed: Name");
    EXPECT_FALSE(screen.HasUnsaved());
    Type("txtName", "Winter");
    EXPECT_EQ(LabelText("lblMissing"), "");
    EXPECT_TRUE(screen.HasUnsaved());
    channel.Answer("AddPer", 0, {{"ID", "3"}});
    Click("cmdSave");
    EXPECT_EQ(done, "Saved Winter");
    EXPECT_FALSE(screen.HasUnsaved());
    channel.Answer("DelPer", 0);
    prompter.ExpectBox("You will delete Period:\r\n\"Winter\"\r\n\r\nAre you sure?");
    Click("cmdDelete");
    EXPECT_EQ(done, "Deleted Winter");
}

TEST_F(ListToolsTest, TheMenuDoesWhatTheButtonsDo) {
    Open(Contribute, "Acquisitions_FiscalTypes");
    QStringList offered;
    for (const QAction* action : MenuOf(Grid()).actions())
        if (action->isEnabled() && !action->objectName().isEmpty())
            offered.append(action->objectName());
    EXPECT_EQ(offered, QStringList({"mnuNew", "mnuEdit", "mnuDelete", "mnuCopy", "mnuPrint", "mnuPdf",
                                    "mnuExportCsv", "mnuChangeSelected", "mnuHistory", "mnuWhereUsed",
                                    "mnuImport", "mnuExportAll", "mnuReload"}));
    channel.Answer("LstPer", 0, {{"ID", "2"}, {"Nm", "Spring"}, {"Cl", "Y"}});
    Get<QAction>(Grid(), "mnuReload").trigger();
    EXPECT_EQ(GridRows(), QStringList{"Spring"});
    MenuOf(Grid()).findChild<QAction*>("mnuNew")->trigger();
    EXPECT_EQ(Get<QGroupBox>("fraEdit").title(), "New Period:");
}

TEST_F(ListToolsTest, WhatRefersToARecordIsShownFromTheMenuAndWhereItKeepsIt) {
    Open(Contribute, "Acquisitions_FiscalTypes");
    channel.Answer("LstUse", 0);
    prompter.ExpectDialog("frmWhereUsed", [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Where \"Fall\" Is Used");
        EXPECT_EQ(dialog.findChild<QLabel*>("lblNote")->text(), "Nothing refers to it.");
        EXPECT_FALSE(dialog.findChild<QPushButton*>("cmdGoTo")->isEnabled());
        return false;
    });
    Get<QAction>(Grid(), "mnuWhereUsed").trigger();
    EXPECT_EQ(channel.LastSent("LstUse").Value("Sbj") + channel.LastSent("LstUse").Value("ID"), "Per1");

    channel.Answer("DelPer", 13);
    channel.Answer("LstUse", 0,
                   {{"Sbj", "Ledger"},
                    {"UK", "4"},
                    {"UN", "Main"},
                    {"UT", ""},
                    {"UC", "2"},
                    {"UR", "Y"},
                    {"UH", "3"},
                    {"UX", "orders"},
                    {"UQ", "1200"}});
    prompter.ExpectBox("You will delete Period:\r\n\"Fall\"\r\n\r\nAre you sure?");
    prompter.ExpectBox("Record is in use.", true, {}, {}, true);
    prompter.ExpectDialog("frmWhereUsed", [this](QDialog& dialog) {
        EXPECT_EQ(GridRows(dialog, "vsfUses"), QStringList{"Ledger|Main||2|✓"});
        EXPECT_EQ(dialog.findChild<QLabel*>("lblNote")->text(),
                  "Other programs use it: 1,200 orders.\n3 more that you may not see.");
        return false;
    });
    Click("cmdDelete");
}

TEST_F(ListToolsTest, AllFieldsOfTheShownRecordsGoIntoAFile) {
    Open(Contribute, "Acquisitions_FiscalTypes");
    channel.Answer("GetPer", 0,
                   {{"ID", "2"}, {"Nm", "Spring"}, {"StDt", "03/01/2026"}, {"Nt", "a,b"}, {"Cl", "Y"}});
    Grid().FilterBox()->setText("spr");
    QTemporaryDir directory;
    prompter.ExpectSaveFile(directory.filePath("all.csv"));
    Get<QAction>(Grid(), "mnuExportAll").trigger();
    EXPECT_EQ(channel.LastSent("GetPer").Value("ID"), "2");
    QFile file(directory.filePath("all.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "\xEF\xBB\xBF"
                              "Name,Start,Note,Closed\r\nSpring,2026-03-01,\"a,b\",Yes\r\n");
    EXPECT_EQ(done, "Exported 1 record");

    prompter.ExpectSaveFile(directory.filePath("none.csv"));
    channel.Answer("GetPer", 5);
    ExpectErrorDialog(prompter, "Record not found to be updated.", 5, "Edit Periods", "Period");
    Get<QAction>(Grid(), "mnuExportAll").trigger();
    EXPECT_FALSE(QFile::exists(directory.filePath("none.csv"))) << "half a file is worse than none";
}

TEST(ListPrintTest, RowsGoOverAsManyPagesAsTheyTake) {
    int before = 0;
    for (const int rows : {0, 1, 60, 500}) {
        PrintedList list{"Vendor Types", {"Codes", "Names"}, {}};
        for (int row = 0; row < rows; ++row)
            list.rows.append({QString::number(row), QString("A name that is long ").repeated(20)});
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        const int pages = PaintList(list, writer);
        EXPECT_GE(pages, rows < 2 ? 1 : before + 1);
        EXPECT_LE(pages, 1 + rows / 20);
        before = pages;
    }
}

} // namespace

} // namespace sysadmin
