#include "framework/FormView.h"
#include "framework/forms/ValueFields.h"

#include <QCalendarWidget>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace sysadmin {

namespace {

struct PeriodForm : Form {
    DateField fpStart{*this, {.name = "fpStart", .tag = "StDt", .caption = "Start:"}};
};

class DateEditTest : public ::testing::Test {
protected:
    DateEditTest() {
        form.Clear();
        view.show();
        edit->setFocus();
        QTest::qWait(0);
    }
    void Type(const QString& text) {
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
        emit edit->editingFinished();
    }
    QCalendarWidget* Calendar() {
        auto* calendar = edit->findChild<QCalendarWidget*>();
        return calendar && calendar->isVisible() ? calendar : nullptr;
    }

    PeriodForm form;
    FormView view{form, Below({form.fpStart})};
    QLineEdit* edit = view.findChild<QLineEdit*>("fpStart");
};

TEST_F(DateEditTest, DatesAreTypedAsPeopleWriteThem) {
    for (const char* typed : {"8/31/2027", "08/31/27", "2027-08-31", "08312027", "083127", " 8.31.2027 "}) {
        Type(typed);
        EXPECT_EQ(form.fpStart.Draft(), "2027-08-31") << typed;
        EXPECT_EQ(edit->text(), "8/31/2027") << typed;
    }
    for (const char* typed : {"2027-02-30", "31/8/2027", "soon", "8/31"}) {
        Type(typed);
        EXPECT_EQ(edit->text(), typed) << "nothing is lost";
        EXPECT_EQ(form.fpStart.Problem(), "\"Start\" must be a date, such as 11/21/2026.");
    }
    Type("");
    EXPECT_TRUE(form.fpStart.IsBlank());
    QTest::keyClick(edit, Qt::Key_Up);
    EXPECT_EQ(form.fpStart.Date(), QDate::currentDate());
    QTest::keyClick(edit, Qt::Key_Down);
    EXPECT_EQ(form.fpStart.Date(), QDate::currentDate().addDays(-1));
}

TEST_F(DateEditTest, TheCalendarOpensByKeyAndOnlyAChoiceCounts) {
    for (const auto& [key, modifier] :
         {std::pair(Qt::Key_F4, Qt::NoModifier), std::pair(Qt::Key_Down, Qt::AltModifier)}) {
        QTest::keyClick(edit, key, modifier);
        ASSERT_TRUE(Calendar());
        EXPECT_EQ(Calendar()->selectedDate(), QDate::currentDate());
        QTest::keyClick(Calendar()->parentWidget(), Qt::Key_Escape);
        EXPECT_FALSE(Calendar());
        EXPECT_TRUE(form.fpStart.IsBlank());
    }
    Type("2027-08-31");
    QTest::keyClick(edit, Qt::Key_F4);
    ASSERT_TRUE(Calendar());
    QWidget* days = Calendar()->findChild<QWidget*>("qt_calendar_calendarview");
    QTest::keyClick(days, Qt::Key_Left);
    QTest::keyClick(days, Qt::Key_Return);
    EXPECT_FALSE(Calendar());
    EXPECT_EQ(form.fpStart.Date(), QDate(2027, 8, 30));
    view.SetReadOnly(true);
    QTest::keyClick(edit, Qt::Key_F4);
    QTest::keyClick(edit, Qt::Key_Up);
    EXPECT_FALSE(Calendar());
    EXPECT_EQ(form.fpStart.Date(), QDate(2027, 8, 30));
}

} // namespace

} // namespace sysadmin
