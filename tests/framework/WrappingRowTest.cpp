#include "framework/WrappingRow.h"

#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

TEST(WrappingRowTest, AsManyStandSideBySideAsFitAndOnlyTheWidestIsTooWide) {
    QScrollArea area;
    area.setWidgetResizable(true);
    auto* row = new WrappingRow(3, nullptr);
    QList<QWidget*> widgets;
    for (const int width : {200, 100, 300, 150}) {
        widgets.append(new QWidget(row));
        widgets.last()->setMinimumSize(width, 80);
        row->Add(widgets.last());
    }
    area.setWidget(row);
    area.show();
    struct Case {
        int width;
        int columns;
        bool scrolls;
    };
    for (const Case& one : {Case{1000, 3, false}, Case{500, 2, false}, Case{400, 1, false},
                            Case{330, 1, false}, Case{250, 1, true}, Case{1000, 3, false}}) {
        area.resize(one.width, 600);
        QCoreApplication::processEvents();
        EXPECT_EQ(row->Columns(), one.columns) << one.width;
        EXPECT_EQ(area.horizontalScrollBar()->maximum() > 0, one.scrolls) << one.width;
        EXPECT_EQ(widgets[one.columns]->x(), widgets[0]->x());
        EXPECT_GT(widgets[one.columns]->y(), widgets[0]->y());
    }
}

} // namespace

} // namespace sysadmin
