#include "framework/DateEdit.h"

#include <QCalendarWidget>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

class DateEditTest : public testing::Test {
protected:
    DateEditTest() {
        edit.show();
        edit.setFocus();
        QTest::qWait(0);
    }

    DateEdit edit;
};

TEST_F(DateEditTest, BlankDateIsTypedLikeAnyOther) {
    EXPECT_TRUE(edit.IsBlank());
    EXPECT_TRUE(edit.text().trimmed().isEmpty());
    QTest::keyClicks(&edit, "08312027");
    EXPECT_EQ(edit.date(), QDate(2027, 8, 31));
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    EXPECT_TRUE(edit.IsBlank());
    QTest::keyClick(&edit, Qt::Key_Up);
    EXPECT_EQ(edit.date(), QDate::currentDate());
}

TEST_F(DateEditTest, CalendarOfABlankDateOpensAtToday) {
    QTest::mouseClick(&edit, Qt::LeftButton, {}, {edit.width() - 6, edit.height() / 2});
    ASSERT_TRUE(edit.calendarWidget()->isVisible());
    EXPECT_EQ(edit.calendarWidget()->monthShown(), QDate::currentDate().month());
    EXPECT_EQ(edit.calendarWidget()->yearShown(), QDate::currentDate().year());
    QTest::keyClick(edit.calendarWidget()->parentWidget(), Qt::Key_Escape);
    QTest::qWait(0);
    EXPECT_FALSE(edit.calendarWidget()->isVisible());
    EXPECT_TRUE(edit.IsBlank()) << "nothing was chosen";
}

} // namespace

} // namespace sysadmin
