#include "framework/ListGrid.h"
#include "framework/TwoListMover.h"
#include "framework/forms/ListFields.h"
#include "support/ControlTest.h"

#include <QSignalSpy>

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

} // namespace
} // namespace sysadmin
