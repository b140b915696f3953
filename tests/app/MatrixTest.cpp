#include "circulation/MatrixRemoval.h"
#include "circulation/frmCirculation_Matrix.h"
#include "circulation/frmCirculation_MatrixMap.h"
#include "server/store/Database.h"
#include "support/ClientTest.h"

#include <QComboBox>
#include <QLabel>
#include <QTest>

namespace sysadmin {

namespace {

/// The matrix of the first policy group of the sample library.
class MatrixTest : public ClientTest {
protected:
    MatrixTest() {
        SignOn("SYSADMIN");
        App().channel.SendRequest("LstCrcGp");
        App().channel.NextRecord("ID");
        group = {App().channel.GetField("ID"), App().channel.GetField("Nm"), {}, true};
        group.clusterId = One("SELECT cluster_id FROM circulation_policy_groups WHERE id=" + group.id);
    }
    QString One(const QString& sql) { return GetLibrary().Connect()->FirstValue(sql).toString(); }
    int CountRules() {
        return One("SELECT COUNT(*) FROM circulation_matrix WHERE group_id=" + group.id).toInt();
    }
    QPoint Middle(const MatrixMap& map, QPoint cell) { return map.RectOf(cell).center(); }

    MatrixGroup group;
};

TEST_F(MatrixTest, TheRemovalOfManyCanBeStopped) {
    MatrixPages pages(App(), nullptr);
    pages.SetGroup(group);
    ASSERT_TRUE(pages.Load());
    const QList<MatrixEntry> entries = pages.Entries(MatrixKind::Regular);
    ASSERT_GT(entries.size(), 60);
    const int before = CountRules();
    MatrixRemoval removal(App(), group, entries);
    frmCirculation_MatrixRemoval dialog(removal, nullptr);
    dialog.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return removal.Done() >= 30; }));
    Click(dialog, "cmdStop");
    const qsizetype done = removal.Done();
    QTest::qWait(20);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_LT(done, entries.size());
    EXPECT_EQ(removal.Done(), done);
    EXPECT_EQ(CountRules(), before - int(done));
}

TEST_F(MatrixTest, TheMapIsExplainedSelectedAndOpened) {
    frmCirculation_MatrixMap dialog(App(), group, nullptr);
    ASSERT_TRUE(dialog.Load());
    dialog.resize(1300, 760);
    dialog.show();
    auto& map = Get<MatrixMap>(dialog, "picMatrix");
    MatrixPicture picture;
    ASSERT_TRUE(picture.Read(App(), group));
    // By keyboard, and heard.
    map.SetCurrentCell({0, 0});
    map.setFocus();
    QTest::keyClick(&map, Qt::Key_Right);
    QTest::keyClick(&map, Qt::Key_Down);
    EXPECT_EQ(map.CurrentCell(), QPoint(1, 1));
    EXPECT_EQ(map.accessibleDescription(), picture.InWords({1, 1}));
    EXPECT_EQ(Get<QLabel>(dialog, "lblCell").text(), picture.InWords({1, 1}));
    // The cell under the cursor.
    QTest::mouseMove(map.viewport(), Middle(map, {3, 2}));
    EXPECT_EQ(Get<QLabel>(dialog, "lblCell").text(), picture.InWords({3, 2}));
    // Several by dragging.
    QTest::mousePress(map.viewport(), Qt::LeftButton, {}, Middle(map, {1, 1}));
    QTest::mouseMove(map.viewport(), Middle(map, {3, 2}));
    QTest::mouseRelease(map.viewport(), Qt::LeftButton, {}, Middle(map, {3, 2}));
    EXPECT_EQ(map.SelectedCells().size(), 6);
    // A click opens the rule; one where there is none begins it.
    QPoint rule(-1, -1);
    QPoint missing(-1, -1);
    for (int row = 0; row < picture.Rows(); ++row)
        for (int column = 0; column < picture.Columns(); ++column)
            (picture.At({column, row}).id.isEmpty() ? missing : rule) = {column, row};
    ASSERT_TRUE(picture.Contains(rule));
    prompter.ExpectDialog("frmCirculation_PolicyMatrixRecordSettings", [](QDialog&) { return false; });
    QTest::mouseClick(map.viewport(), Qt::LeftButton, {}, Middle(map, rule));
    if (picture.Contains(missing)) {
        prompter.ExpectDialog("frmCirculation_PolicyMatrixRecordSettingsCopy",
                              [](QDialog&) { return false; });
        QTest::mouseClick(map.viewport(), Qt::LeftButton, {}, Middle(map, missing));
    }
}

TEST_F(MatrixTest, GroupsAreComparedCellByCell) {
    MatrixPicture picture;
    ASSERT_TRUE(picture.Read(App(), group));
    frmCirculation_MatrixMap dialog(App(), group, nullptr);
    ASSERT_TRUE(dialog.Load());
    dialog.show();
    auto& groups = Get<QComboBox>(dialog, "cboCompare");
    ASSERT_GT(groups.count(), 1);
    groups.setCurrentIndex(1);
    emit groups.activated(1);
    MatrixPicture other;
    ASSERT_TRUE(other.Read(App(), {groups.currentData().toString(), {}, group.clusterId, true}));
    const auto& map = Get<MatrixMap>(dialog, "picMatrix");
    int differing = 0;
    for (int row = 0; row < picture.Rows(); ++row)
        for (int column = 0; column < picture.Columns(); ++column)
            differing += map.Differs({column, row});
    EXPECT_GT(differing, 0);
    for (const QPoint cell : {QPoint(0, 0), QPoint(5, 3), QPoint(9, 9)})
        EXPECT_EQ(map.Differs(cell), picture.At(cell).values != other.At(cell).values);
    // A rule that is changed there shows here, field by field.
    QPoint both(-1, -1);
    for (int row = 0; row < picture.Rows(); ++row)
        for (int column = 0; column < picture.Columns(); ++column)
            if (!picture.At({column, row}).id.isEmpty() &&
                picture.At({column, row}).values == other.At({column, row}).values)
                both = {column, row};
    if (picture.Contains(both)) {
        GetLibrary().Connect()->Run("UPDATE circulation_matrix SET loan_period='99' WHERE id=" +
                                    other.At(both).id);
        ASSERT_TRUE(other.Read(App(), other.Group()));
        EXPECT_EQ(picture.Differences(both, other), QStringList{"Loan Period"});
    }
}

/// The classes of a measure are told apart without colour sight, in both appearances.
TEST(MatrixColours, GrowInStrength) {
    for (const QColor& base : {QColor(Qt::white), QColor(0x17, 0x1a, 0x20)}) {
        QPalette palette;
        palette.setColor(QPalette::Base, base);
        int last = qGray(base.rgb());
        for (int of = 0; of < 7; ++of) {
            const int grey = qGray(MatrixMap::ColourOf(palette, of, 7).rgb());
            EXPECT_GE(qAbs(grey - last), 8) << of;
            last = grey;
        }
    }
}

} // namespace

} // namespace sysadmin
