#include "framework/CsvExport.h"
#include "framework/ListGrid.h"
#include "support/ScriptedPrompter.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace sysadmin {
namespace {

class GridTest : public ::testing::Test {
protected:
    GridTest() {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(grid->FilterBox());
        layout->addWidget(grid);
        grid->SetRows({{"1", {"AB", "Jobber", "x"}, {}},
                       {"2", {"CD", "Publisher", "y"}, {}},
                       {"3", {"A B", "Agent, \"small\"", "z"}, {}}});
        window.show();
        window.activateWindow();
        grid->setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void ClickHeader(int column) {
        QHeaderView* header = grid->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
    }

    QWidget window;
    ListGrid* grid = new ListGrid(
        "vsf", {{.caption = "Codes", .width = 80}, {.caption = "Names"}, {.caption = "Id", .hidden = true}});
};

TEST_F(GridTest, LoadingSelectsTheFirstRowAndClearsTheFilter) {
    EXPECT_EQ(grid->SelectedKey(), "1");
    grid->FilterBox()->setText("publ");
    EXPECT_EQ(grid->SelectedKey(), "2") << "a row is selected as long as one is shown";
    grid->SetRows({{"7", {"x", "Store"}, {}}, {"8", {"y", "Press"}, {}}});
    EXPECT_EQ(grid->FilterBox()->text(), "");
    EXPECT_EQ(grid->SelectedKey(), "7");
    grid->SetRows({});
    EXPECT_EQ(grid->SelectedKey(), "");
    EXPECT_EQ(grid->SelectedRow(), nullptr);
}

TEST_F(GridTest, FirstClickSortsAscendingAndTheOrderLasts) {
    for (int column : {0, 1}) {
        ClickHeader(column);
        EXPECT_EQ(grid->horizontalHeader()->sortIndicatorSection(), column);
        EXPECT_EQ(grid->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
    }
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"3", "1", "2"}));
    EXPECT_EQ(grid->SelectedKey(), "1") << "the selection is a record, not a place";
    ClickHeader(1);
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"2", "1", "3"}));
    grid->PutRow({"4", {"XY", "Kiosk"}, {}});
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"2", "4", "1", "3"}));
    EXPECT_EQ(grid->SelectedKey(), "4");
    grid->SetRows({{"1", {"AB", "Jobber"}, {}}, {"5", {"ZZ", "Zoo"}, {}}});
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"5", "1"}));
}

TEST_F(GridTest, SavingAndRemovingSelect) {
    QSignalSpy moved(grid, &ListGrid::SelectionMoved);
    grid->FilterBox()->setText("jobber");
    grid->PutRow({"9", {"NEW", "Something else"}, {}});
    EXPECT_EQ(grid->FilterBox()->text(), "") << "what was just saved is seen";
    EXPECT_EQ(grid->SelectedKey(), "9");
    grid->PutRow({"10", {"NEW2", "Renamed"}, {}}, "9");
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"1", "2", "3", "10"}));
    EXPECT_EQ(grid->SelectedKey(), "10");
    grid->RemoveRow("10");
    EXPECT_EQ(grid->SelectedKey(), "3") << "the last row's neighbour is above it";
    grid->SelectKey("1");
    moved.clear();
    grid->RemoveRow("1");
    EXPECT_EQ(grid->SelectedKey(), "2");
    EXPECT_EQ(moved.count(), 1);
    grid->RemoveRow("3");
    EXPECT_EQ(grid->SelectedKey(), "2") << "removing another row leaves the selection";
}

TEST_F(GridTest, ReplacingRowsKeepsWhatTheOperatorSees) {
    grid->FilterBox()->setText("e");
    grid->SelectKey("2");
    grid->ReplaceRows({{"0", {"AA", "New one"}, {}}, {"2", {"CD", "Publishers"}, {}}, {"5", {"b", "b"}, {}}});
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"0", "2"}));
    EXPECT_EQ(grid->SelectedKey(), "2");
}

TEST_F(GridTest, KeysAskForWhatTheyStandFor) {
    QSignalSpy activated(grid, &ListGrid::RowActivated);
    QSignalSpy inserted(grid, &ListGrid::InsertPressed);
    QSignalSpy deleted(grid, &ListGrid::DeletePressed);
    QTest::keyClick(grid, Qt::Key_End);
    QTest::keyClick(grid, Qt::Key_Return);
    QTest::keyClick(grid, Qt::Key_Enter, Qt::KeypadModifier);
    QTest::keyClick(grid, Qt::Key_F2);
    ASSERT_EQ(activated.count(), 3);
    EXPECT_EQ(activated.at(0).at(0), "3");
    QTest::keyClick(grid, Qt::Key_Insert);
    EXPECT_EQ(inserted.count(), 1);
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(deleted.count(), 1);
    const QPoint second = grid->visualRect(grid->Model().index(1, 0)).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(activated.last().at(0), "2");

    grid->SetRows({});
    QTest::keyClick(grid, Qt::Key_Return);
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(activated.count(), 4) << "nothing to edit in an empty list";
    EXPECT_EQ(deleted.count(), 1);
    QTest::keyClick(grid, Qt::Key_Insert);
    EXPECT_EQ(inserted.count(), 2);
}

TEST_F(GridTest, TypingFindsInTheSortedColumn) {
    QTest::keyClicks(grid, "a b");
    EXPECT_EQ(grid->SelectedKey(), "3") << "a blank belongs to the text that is typed";
    ClickHeader(1);
    QTest::keyClicks(grid, "pu");
    EXPECT_EQ(grid->SelectedKey(), "2");
    grid->sortByColumn(0, Qt::AscendingOrder);
    grid->SelectKey("2");
    QTest::keyClicks(grid, "a");
    const QString first = grid->SelectedKey();
    QTest::keyClicks(grid, "a");
    EXPECT_EQ(QSet<QString>({first, grid->SelectedKey()}), QSet<QString>({"1", "3"}))
        << "again: the next one";
}

TEST_F(GridTest, FilterBoxAndKeys) {
    QTest::keyClick(grid, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(grid->FilterBox()->hasFocus());
    QTest::keyClicks(grid->FilterBox(), "publ");
    EXPECT_EQ(grid->Model().ShownKeys(), QStringList({"2"}));
    QTest::keyClick(grid->FilterBox(), Qt::Key_Escape);
    EXPECT_EQ(grid->FilterBox()->text(), "");
    EXPECT_EQ(grid->Model().rowCount(), 3);
    EXPECT_EQ(grid->SelectedKey(), "2");
    QTest::keyClick(grid->FilterBox(), Qt::Key_Down);
    EXPECT_TRUE(grid->hasFocus());
    EXPECT_EQ(grid->SelectedKey(), "2");
}

TEST_F(GridTest, CopiesVisibleCellsInDisplayOrder) {
    grid->SetMultiSelect(true);
    grid->PutRow({"4", {"T\tB", "Two\r\nlines"}, {}});
    grid->sortByColumn(0, Qt::DescendingOrder);
    grid->selectAll();
    QTest::keyClick(grid, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              "T B\tTwo  lines\nCD\tPublisher\nAB\tJobber\nA B\tAgent, \"small\"");
    EXPECT_EQ(grid->SelectedKeys(), QStringList({"4", "2", "1", "3"}));
}

TEST_F(GridTest, ExportsShownRows) {
    ScriptedPrompter prompter;
    grid->SetPrompter(prompter);
    QTemporaryDir directory;
    const QString fileName = directory.filePath("out.csv");
    prompter.ExpectSaveFile(fileName);
    grid->FilterBox()->setText("e");
    grid->ExportCsv();
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "\xEF\xBB\xBF"
                              "Codes,Names\r\nAB,Jobber\r\nCD,Publisher\r\nA B,\"Agent, \"\"small\"\"\"\r\n");

    prompter.ExpectSaveFile({});
    grid->ExportCsv();
    prompter.ExpectSaveFile(directory.filePath("missing/out.csv"));
    prompter.ExpectBox("The file could not be written:\r\n" +
                       WriteCsv(directory.filePath("missing/out.csv"), {}));
    grid->ExportCsv();
}

TEST(GridWidths, GivenOnesGrowTogether) {
    ListGrid list("vsf", {{"Codes", Twips(1200)}, {"Names", Twips(3090)}, {"Library", Twips(3240)}});
    list.resize(200, 200);
    list.show();
    const auto widths = [&] {
        QCoreApplication::processEvents();
        return QList<int>{list.columnWidth(0), list.columnWidth(1), list.columnWidth(2)};
    };
    EXPECT_EQ(widths(), (QList<int>{80, 206, 216}));
    list.resize(2 * 502 + 2, 200); // its frame takes the rest
    EXPECT_EQ(widths(), (QList<int>{160, 412, 432}));
    list.resize(200, 200);
    EXPECT_EQ(widths(), (QList<int>{80, 206, 216}));
}

} // namespace
} // namespace sysadmin
