#include "framework/ListGrid.h"
#include "framework/TwoListMover.h"
#include "framework/forms/ListFields.h"
#include "support/ControlTest.h"

#include <QLineEdit>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <algorithm>

namespace sysadmin {
namespace {

QList<GridRow> Rows(const QStringList& keys) {
    QList<GridRow> rows;
    for (const QString& key : keys)
        rows.append({key, {"name " + key}, {}});
    return rows;
}

QStringList Keys(const QList<GridRow>& rows) {
    QStringList keys;
    for (const GridRow& row : rows)
        keys.append(row.key);
    return keys;
}

class MoverTest : public ControlTest {
protected:
    MoverTest() {
        lists.Load(Rows({"a", "b", "c", "d"}), Rows({"x", "y"}));
        mover = std::make_unique<TwoListMover>(names, lists,
                                               [this](const TwoListMover::Move& move) { move(lists); });
        mover->show();
        front = mover.get();
    }

    PickedNames names{.availableGrid = "vsfAvailable",
                      .availableCaption = "Available Locations",
                      .selectedGrid = "vsfSelected",
                      .selectedCaption = "Selected Locations"};
    PickedLists lists;
    std::unique_ptr<TwoListMover> mover;
};

TEST_F(MoverTest, ButtonsMoveWhatTheySay) {
    QSignalSpy changed(mover.get(), &TwoListMover::Changed);
    mover->AvailableGrid().SelectKeys({"b", "d"});
    Click("cmdSelect");
    EXPECT_EQ(Keys(lists.Selected()), QStringList({"x", "y", "b", "d"}));
    EXPECT_EQ(mover->SelectedGrid().SelectedKeys(), QStringList({"b", "d"}))
        << "arrived rows are highlighted";
    EXPECT_EQ(mover->AvailableGrid().SelectedKey(), "c") << "the next row can be moved at once";
    Click("cmdDiscard");
    EXPECT_EQ(Keys(lists.Available()), QStringList({"a", "c", "b", "d"}));
    Click("cmdSelectAll");
    EXPECT_TRUE(lists.Available().isEmpty());
    EXPECT_FALSE(IsEnabled("cmdSelect"));
    EXPECT_FALSE(IsEnabled("cmdSelectAll"));
    Click("cmdDiscardAll");
    EXPECT_TRUE(lists.Selected().isEmpty());
    EXPECT_EQ(mover->AvailableGrid().Model().rowCount(), 6);
    EXPECT_FALSE(IsEnabled("cmdDiscardAll"));
    EXPECT_EQ(changed.count(), 4);
}

TEST_F(MoverTest, AllMeansAllThatAreShown) {
    mover->AvailableGrid().FilterBox()->setText("name c");
    Click("cmdSelectAll");
    EXPECT_EQ(Keys(lists.Added()), QStringList({"c"}));
    EXPECT_EQ(mover->AvailableGrid().FilterBox()->text(), "name c") << "a move leaves the filter alone";
    EXPECT_FALSE(IsEnabled("cmdSelectAll"));
}

TEST_F(MoverTest, ManyRowsMoveAtOnce) {
    QStringList keys;
    for (int i = 0; i < 20000; ++i)
        keys.append("k" + QString::number(i));
    lists.Load(Rows(keys), Rows({"x"}));
    mover->Refresh();
    mover->AvailableGrid().selectAll();
    Click("cmdSelect");
    EXPECT_EQ(Keys(lists.Added()), keys);
    // Every other row: as many separate ranges as a selection can have.
    QStringList half;
    for (int i = 0; i < keys.size(); i += 2)
        half.append(keys[i]);
    mover->SelectedGrid().SelectKeys(half);
    Click("cmdDiscard");
    EXPECT_EQ(Keys(lists.Available()), half);
    EXPECT_EQ(lists.Selected().size(), 10001);
    EXPECT_EQ(mover->AvailableGrid().SelectedKeys().size(), 10000);
}

// Lists, grids and what they know of their keys stay the same, whatever moves; a filter stays, too.
TEST_F(MoverTest, StaysRightThroughRandomMoves) {
    QRandomGenerator random(20261122);
    QStringList keys;
    for (int i = 0; i < 300; ++i)
        keys.append("k" + QString::number(i));
    QStringList all = keys;
    std::sort(all.begin(), all.end());
    lists.Load(Rows(keys), {});
    mover->Refresh();
    ListGrid* grids[] = {&mover->AvailableGrid(), &mover->SelectedGrid()};
    const QString filter = "name k1";
    grids[1]->FilterBox()->setText(filter);
    grids[0]->sortByColumn(0, Qt::DescendingOrder);
    for (int step = 0; step < 400; ++step) {
        const int from = random.bounded(2);
        const QStringList shown = grids[from]->Model().ShownKeys();
        if (random.bounded(40) == 0)
            grids[from]->sortByColumn(0, random.bounded(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
        if (shown.isEmpty())
            continue;
        QStringList moving;
        const int count = random.bounded(30) == 0 ? 60 : 1 + random.bounded(2);
        for (int i = 0; i < count; ++i)
            moving.append(shown[random.bounded(int(shown.size()))]);
        grids[from]->SelectKeys(moving);
        Click(from == 0 ? "cmdSelect" : "cmdDiscard");

        QStringList together = Keys(lists.Available()) + Keys(lists.Selected());
        std::sort(together.begin(), together.end());
        ASSERT_EQ(together, all) << "step " << step;
        for (const bool selected : {false, true}) {
            const QList<GridRow>& rows = selected ? lists.Selected() : lists.Available();
            const GridModel& model = grids[selected]->Model();
            ASSERT_EQ(model.Rows(), rows) << "step " << step;
            GridModel rebuilt({{.caption = "Name"}});
            rebuilt.SetRows(rows);
            rebuilt.sort(model.SortColumn(), model.SortDirection());
            rebuilt.SetFilter(model.Filter());
            ASSERT_EQ(model.ShownKeys(), rebuilt.ShownKeys()) << "step " << step;
            for (const QString& key : keys) {
                const GridRow* row = model.FindRow(key);
                ASSERT_EQ(row != nullptr, rebuilt.FindRow(key) != nullptr) << key.toStdString();
                ASSERT_EQ(row ? row->key : key, key);
            }
        }
    }
    EXPECT_EQ(grids[1]->FilterBox()->text(), filter);
    lists.Load(Rows({"a"}), Rows({"b"}));
    mover->Refresh();
    EXPECT_EQ(grids[1]->FilterBox()->text(), "") << "another record";
}

} // namespace
} // namespace sysadmin
