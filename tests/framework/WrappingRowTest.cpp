#include "framework/WrappingRow.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

class WrappingRowTest : public testing::Test {
protected:
    WrappingRowTest() {
        area.setWidgetResizable(true);
        row = new WrappingRow(3, nullptr);
        for (const int width : {200, 100, 300, 150}) {
            auto* widget = new QWidget(row);
            widget->setMinimumSize(width, 80);
            widgets.append(widget);
            row->Add(widget);
        }
        area.setWidget(row);
        area.show();
    }
    void Resize(int width) {
        area.resize(width, 600);
        QCoreApplication::processEvents();
    }

    QScrollArea area;
    WrappingRow* row = nullptr;
    QList<QWidget*> widgets;
};

TEST_F(WrappingRowTest, AsManyStandSideBySideAsFit) {
    Resize(1000);
    EXPECT_EQ(row->Columns(), 3);
    EXPECT_EQ(widgets[2]->y(), widgets[0]->y());
    EXPECT_GT(widgets[3]->y(), widgets[0]->y());
    EXPECT_EQ(widgets[3]->x(), widgets[0]->x());
    EXPECT_EQ(widgets[3]->width(), widgets[0]->width());
    Resize(500); // 300 and 150 stand below each other
    EXPECT_EQ(row->Columns(), 2);
    EXPECT_EQ(widgets[2]->x(), widgets[0]->x());
    EXPECT_EQ(widgets[3]->x(), widgets[1]->x());
    Resize(400);
    EXPECT_EQ(row->Columns(), 1);
    EXPECT_GT(widgets[3]->y(), widgets[2]->y());
    Resize(1000);
    EXPECT_EQ(row->Columns(), 3);
}

TEST_F(WrappingRowTest, OnlyTheWidestIsTooWide) {
    Resize(330);
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0);
    Resize(250);
    EXPECT_GT(area.horizontalScrollBar()->maximum(), 0);
    EXPECT_GE(row->height(), 4 * 80) << "what does not fit is scrolled to";
    widgets[2]->setMinimumWidth(120);
    Resize(251);
    EXPECT_EQ(area.horizontalScrollBar()->maximum(), 0) << "follows what its widgets want";
}

} // namespace

} // namespace sysadmin
