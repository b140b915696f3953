#include "framework/ListGrid.h"
#include "framework/frmSortOrder.h"
#include "support/ControlTest.h"
#include "support/ScreenTest.h"

#include <QLabel>
#include <QPushButton>

namespace sysadmin {

namespace {

class SortOrderTest : public ScreenTest {
protected:
    SortOrderTest() {
        grid.Caption = "Call Slip Rules";
        grid.clsColumns.Add("Group", 90);
        grid.clsColumns.Add("Location");
        for (const char* id : {"10", "20", "30"})
            grid.clsRows.Add(id, {QString("Stacks ") + id, "Main"});
        grid.SendRequestName = "OrdCSR";
        grid.RuleRankTag = "RR";
        grid.PreviousRankTag = "PRR";
        grid.HelpId = 20210;
    }
    /// The dialog comes up; `drive` is what the operator does in it.
    bool Run(const std::function<void(QDialog&)>& drive) {
        prompter.ExpectDialogResult("frmSortOrder", drive);
        frmSortOrder dialog(application, grid, nullptr);
        return application.prompter.RunDialog(dialog);
    }
    static void Press(QDialog& dialog, const char* name) { dialog.findChild<QPushButton*>(name)->click(); }
    QStringList Order() const {
        QStringList order;
        for (const clsRow& row : grid.clsRows)
            order.append(row.RowData + '/' + QString::number(row.RowID));
        return order;
    }

    clsGrid grid;
};

TEST_F(SortOrderTest, MovesRowsAndSendsEveryRankOnce) {
    channel.Answer("OrdCSR", 0);
    EXPECT_TRUE(Run([](QDialog& dialog) {
        auto& rows = *dialog.findChild<ListGrid*>("vsf");
        auto& up = *dialog.findChild<QPushButton*>("cmdUp");
        auto& down = *dialog.findChild<QPushButton*>("cmdDown");
        auto& priority = *dialog.findChild<QLabel*>("lblPriority");
        EXPECT_EQ(dialog.windowTitle(), "Sort Call Slip Rules");
        EXPECT_EQ(dialog.property(HelpContextProperty).toInt(), 20210);
        EXPECT_FALSE(up.isEnabled());
        EXPECT_EQ(priority.text(), "Priority: 1 of 3");
        down.click();
        EXPECT_TRUE(up.isEnabled());
        down.click();
        EXPECT_FALSE(down.isEnabled());
        EXPECT_EQ(priority.text(), "Priority: 3 of 3");
        QTest::keyClick(&rows, Qt::Key_Home, Qt::AltModifier);
        QTest::keyClick(&rows, Qt::Key_Down, Qt::AltModifier);
        EXPECT_EQ(rows.SelectedKey(), "10");
        Press(dialog, "cmdSaveRule");
    }));
    EXPECT_EQ(channel.SentNames(), QStringList{"OrdCSR"});
    EXPECT_EQ(
        channel.LastSent("OrdCSR").fields,
        (wire::Fields{{"RR", "1"}, {"PRR", "2"}, {"RR", "2"}, {"PRR", "1"}, {"RR", "3"}, {"PRR", "3"}}));
    EXPECT_TRUE(grid.Changed);
    EXPECT_EQ(Order(), (QStringList{"20/2", "10/1", "30/3"}));
}

TEST_F(SortOrderTest, IdsTravelInFrontOfRanksAndAFailureKeepsTheOrder) {
    grid.SendRequestName = "SeqSort";
    grid.RuleRankTag = "SGSEQ";
    grid.PreviousRankTag.clear();
    grid.IdTag = "SGID";
    grid.Selected = "30";
    channel.Answer("SeqSort", 1);
    channel.Answer("SeqSort", 0);
    EXPECT_TRUE(Run([this](QDialog& dialog) {
        Press(dialog, "cmdUp");
        ExpectErrorDialog(prompter, "Communications Failure", 1, "Move Rule Order Up", "Sorting");
        Press(dialog, "cmdSaveRule");
        EXPECT_FALSE(grid.Changed);
        EXPECT_EQ(dialog.findChild<ListGrid*>("vsf")->Model().ShownKeys(), (QStringList{"10", "30", "20"}));
        Press(dialog, "cmdSaveRule");
    }));
    EXPECT_EQ(
        channel.LastSent("SeqSort").fields,
        (wire::Fields{
            {"SGID", "10"}, {"SGSEQ", "1"}, {"SGID", "30"}, {"SGSEQ", "2"}, {"SGID", "20"}, {"SGSEQ", "3"}}));
}

TEST_F(SortOrderTest, AnOrderIsCarriedOverToRulesThatOthersChanged) {
    // 10 is gone, 40 is new behind 30, 50 in front of all, and 20 stands last.
    clsRows now;
    for (const char* id : {"50", "30", "40", "20"})
        now.Add(id, {QString("Now ") + id, "Main"});
    bool mayRead = false;
    grid.Reread = [&] { return mayRead ? now : clsRows(); };
    channel.Answer("OrdCSR", 131);
    channel.Answer("OrdCSR", 0);
    EXPECT_TRUE(Run([&](QDialog& dialog) {
        auto& rows = *dialog.findChild<ListGrid*>("vsf");
        const auto& priority = *dialog.findChild<QLabel*>("lblPriority");
        Press(dialog, "cmdDown");
        prompter.ExpectBox("Somebody else has changed this record in the meantime.  Nothing was saved.");
        Press(dialog, "cmdSaveRule");
        EXPECT_TRUE(priority.text().endsWith("Save again to read them anew."));
        EXPECT_EQ(rows.Model().ShownKeys(), (QStringList{"20", "10", "30"}));
        mayRead = true;
        Press(dialog, "cmdSaveRule"); // only reads
        EXPECT_EQ(rows.Model().ShownKeys(), (QStringList{"50", "20", "30", "40"}));
        EXPECT_TRUE(priority.text().endsWith("look at it, and save again."));
        Press(dialog, "cmdSaveRule");
    }));
    EXPECT_EQ(channel.SentNames(), (QStringList{"OrdCSR", "OrdCSR"}));
    EXPECT_EQ(channel.LastSent("OrdCSR").Values("PRR"), (QStringList{"1", "4", "2", "3"}));
    EXPECT_EQ(Order(), (QStringList{"50/1", "20/4", "30/2", "40/3"}));
}

} // namespace

} // namespace sysadmin
