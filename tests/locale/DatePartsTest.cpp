#include "locale/DateParts.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(DateParts, FollowsTheCalendarDayByDay) {
    int year = 100, month = 1, day = 1;
    int weekday = WeekdayOf(FirstDayNumber);
    int yearDay = 1;
    for (int number = FirstDayNumber; number <= LastDayNumber; ++number) {
        const auto parts = PartsOfMoment(number);
        ASSERT_EQ(parts, (DateParts{year, month, day, 0, 0, 0, weekday, yearDay})) << number;
        ASSERT_EQ(DayNumber(year, month, day), number);
        weekday = weekday % 7 + 1;
        ++yearDay;
        if (++day <= DaysInMonth(year, month)) continue;
        day = 1;
        if (++month <= 12) continue;
        month = yearDay = 1;
        ++year;
    }
    EXPECT_EQ(year, 10000);
}

TEST(DateParts, KnowsFixedDays) {
    EXPECT_EQ(DayNumber(1899, 12, 30), 0);
    EXPECT_EQ(DayNumber(2006, 9, 5), 38965);
    EXPECT_EQ(WeekdayOf(38965), 3);
    EXPECT_EQ(DayNumber(2006, 14, 0), DayNumber(2007, 1, 31));
    EXPECT_EQ(DayNumber(2006, -1, 1), DayNumber(2005, 11, 1));
}

TEST(PartsOfMoment, ReadsBackEverySecondOfADayOnBothSidesOfDayZero) {
    for (const int dayNumber : {38965, 0, -1, FirstDayNumber, LastDayNumber}) {
        for (int second = 0; second < 86400; ++second) {
            const auto parts = PartsOfMoment(JoinMoment(dayNumber, second));
            ASSERT_TRUE(parts);
            ASSERT_EQ(parts->hour * 3600 + parts->minute * 60 + parts->second, second) << dayNumber;
            ASSERT_EQ(DayNumber(parts->year, parts->month, parts->day), dayNumber) << second;
        }
    }
}

TEST(PartsOfMoment, CarriesARoundedSecondIntoTheDate) {
    const auto before = PartsOfMoment(JoinMoment(-1, 86399.7));
    ASSERT_TRUE(before);
    EXPECT_EQ(*before, DateParts());
}

}  // namespace
}  // namespace tessaloom::testing
