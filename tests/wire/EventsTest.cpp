#include "wire/Events.h"

#include <gtest/gtest.h>

namespace sysadmin::wire::events {

namespace {

TEST(EventsTest, EasterSundaysOfHalfACenturyAreThosePublished) {
    // Month and day from 2000 on.
    const int published[]{423, 415, 331, 420, 411, 327, 416, 408, 323, 412, 404, 424, 408, 331, 420, 405, 327,
                          416, 401, 421, 412, 404, 417, 409, 331, 420, 405, 328, 416, 401, 421, 413, 328, 417,
                          409, 325, 413, 405, 425, 410, 401, 421, 406, 329, 417, 409, 325, 414, 405, 418};
    int year = 2000;
    for (const int date : published) {
        EXPECT_EQ(EasterSunday(year), QDate(year, date / 100, date % 100)) << year;
        ++year;
    }
    EXPECT_EQ(year, 2050);
}

TEST(EventsTest, WeekdaysOfAMonthAreThosePublished) {
    const Rule thanksgiving{.kind = kind::Weekday, .month = 11, .week = 4, .weekday = 4};
    const int thursdays[]{23, 22, 28, 27, 25, 24, 23, 22, 27, 26, 25, 24, 22, 28, 27, 26, 24,
                          23, 22, 28, 26, 25, 24, 23, 28, 27, 26, 25, 23, 22, 28, 27, 25, 24,
                          23, 22, 27, 26, 25, 24, 22, 28, 27, 26, 24, 23, 22, 28, 26, 25};
    const Rule memorialDay{.kind = kind::Weekday, .month = 5, .week = LastWeek, .weekday = 1};
    const int mondays[]{29, 28, 27, 26, 31, 30, 29, 28, 26, 25, 31, 30, 28, 27, 26, 25, 30,
                        29, 28, 27, 25, 31, 30, 29, 27, 26, 25, 31, 29, 28, 27, 26, 31, 30,
                        29, 28, 26, 25, 31, 30, 28, 27, 26, 25, 30, 29, 28, 27, 25, 31};
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(DateIn(thanksgiving, 2000 + i), QDate(2000 + i, 11, thursdays[i])) << 2000 + i;
        EXPECT_EQ(DateIn(memorialDay, 2000 + i), QDate(2000 + i, 5, mondays[i])) << 2000 + i;
    }
}

TEST(EventsTest, DatesOfARangeCrossYearsAndLeapDays) {
    const Rule leapDay{.kind = kind::EachYear, .month = 2, .day = 29};
    EXPECT_EQ(DatesBetween(leapDay, {2026, 1, 1}, {2033, 1, 1}),
              (QList<QDate>{{2028, 2, 29}, {2032, 2, 29}}));
    // A hundred days before Easter is in the year before.
    const Rule early{.kind = kind::FromEaster, .fromEaster = -100};
    EXPECT_EQ(DatesBetween(early, {2034, 12, 1}, {2034, 12, 31}), (QList<QDate>{{2034, 12, 15}}));
    const Rule once{.kind = kind::Once, .date = {2027, 4, 15}};
    EXPECT_EQ(DatesBetween(once, {2027, 4, 15}, {2027, 4, 15}), (QList<QDate>{{2027, 4, 15}}));
    EXPECT_TRUE(DatesBetween(once, {2027, 4, 16}, {2030, 1, 1}).isEmpty());
}

TEST(EventsTest, ARuleWithoutAnyDateIsNone) {
    EXPECT_TRUE(IsPossible({.kind = kind::EachYear, .month = 2, .day = 29}));
    EXPECT_FALSE(IsPossible({.kind = kind::EachYear, .month = 2, .day = 30}));
    EXPECT_FALSE(IsPossible({.kind = kind::Weekday, .month = 13, .week = 1}));
    EXPECT_FALSE(IsPossible({.kind = kind::Weekday, .month = 1, .week = 0}));
    EXPECT_FALSE(IsPossible({.kind = kind::Once}));
    EXPECT_FALSE(IsPossible({.kind = "X", .month = 1, .day = 1}));
}

} // namespace

} // namespace sysadmin::wire::events
