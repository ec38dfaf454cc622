#include "base/dates.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvale {
namespace {

TEST(Dates, TheFirstOfJanuary1970IsDayZeroAndAThursday) {
  EXPECT_EQ(DayNumber(1970, 1, 1), 0);
  EXPECT_EQ(DayNumber(1969, 12, 31), -1);
  const LocalTime day = DateOfDay(0);
  EXPECT_EQ(day.year, 1970);
  EXPECT_EQ(day.month, 1);
  EXPECT_EQ(day.day, 1);
  EXPECT_EQ(day.weekday, 5);
}

TEST(Dates, EveryDayOf800YearsComesBackAndWeekdaysFollowEachOther) {
  const std::int64_t first = DayNumber(1601, 1, 1);
  EXPECT_EQ(DateOfDay(first).weekday, 2);  // a Monday
  int weekday = DateOfDay(first - 1).weekday;
  for (std::int64_t number = first; number < first + 2 * 146097; ++number) {
    const LocalTime day = DateOfDay(number);
    ASSERT_EQ(DayNumber(day.year, day.month, day.day), number);
    ASSERT_EQ(day.weekday, weekday % 7 + 1);
    weekday = day.weekday;
  }
}

TEST(Dates, LeapDaysAreWhereTheCalendarHasThem) {
  EXPECT_EQ(DayNumber(2000, 3, 1) - DayNumber(2000, 2, 28), 2);
  EXPECT_EQ(DayNumber(1900, 3, 1) - DayNumber(1900, 2, 28), 1);
  EXPECT_EQ(DayNumber(2024, 3, 1) - DayNumber(2024, 2, 28), 2);
  EXPECT_EQ(DayNumber(2026, 3, 1) - DayNumber(2026, 2, 28), 1);
}

TEST(Dates, OnlyDaysOfTheCalendarAreDates) {
  EXPECT_TRUE(IsDate(2024, 2, 29));
  EXPECT_TRUE(IsDate(2000, 2, 29));
  EXPECT_FALSE(IsDate(1900, 2, 29));
  EXPECT_FALSE(IsDate(2026, 4, 31));
  EXPECT_FALSE(IsDate(2026, 13, 1));
  EXPECT_FALSE(IsDate(2026, 0, 1));
  EXPECT_FALSE(IsDate(2026, 1, 0));
  EXPECT_FALSE(IsDate(2026, 257, 257));
}

TEST(Dates, AMomentComesBackFromItsSeconds) {
  const std::int64_t second = SecondNumber({2026, 11, 14, 22, 5, 59, 1});
  EXPECT_EQ(second, 1794693959);
  const LocalTime moment = MomentOfSecond(second);
  EXPECT_EQ(moment.hour, 22);
  EXPECT_EQ(moment.minute, 5);
  EXPECT_EQ(moment.second, 59);
  EXPECT_EQ(moment.weekday, 7);
  const LocalTime before = MomentOfSecond(-1);
  EXPECT_EQ(before.year, 1969);
  EXPECT_EQ(before.day, 31);
  EXPECT_EQ(before.hour, 23);
  EXPECT_EQ(before.second, 59);
}

TEST(Dates, TheTwelveHourClockStrikesTwelveTwice) {
  const auto text = [](int hour) {
    LocalTime time;
    time.hour = hour;
    return std::to_string(HourOfHalfDay(time)) + HalfDay(time);
  };
  EXPECT_EQ(text(0), "12AM");
  EXPECT_EQ(text(11), "11AM");
  EXPECT_EQ(text(12), "12PM");
  EXPECT_EQ(text(13), "1PM");
  EXPECT_EQ(text(23), "11PM");
}

TEST(Dates, MinutesCountWholeOnesOnly) {
  const LocalTime early{2026, 11, 14, 22, 5, 0, 7};
  const LocalTime late{2026, 11, 14, 22, 5, 59, 7};
  const LocalTime next{2026, 11, 15, 0, 0, 0, 1};
  EXPECT_EQ(MinuteNumber(early), MinuteNumber(late));
  EXPECT_EQ(MinuteNumber(next) - MinuteNumber(late), 115);
}

TEST(Dates, MomentsAreReadWithTheirWeekdays) {
  EXPECT_EQ(7, ParseLocalTime("2026-11-14 22:05:09")->weekday);
  EXPECT_EQ(1, ParseLocalTime("2000-01-02 00:00:00")->weekday);
  EXPECT_EQ(3, ParseLocalTime("2000-02-29 23:59:59")->weekday);
  EXPECT_EQ(5, ParseLocalTime("2009-12-31 00:00:00")->weekday);
  for (const char* text : {"", "2026-11-14", "2026-11-14T22:05:09", "2026-13-01 00:00:00",
                           "2026-00-01 00:00:00", "2026-04-31 00:00:00", "1900-02-29 00:00:00",
                           "2026-11-14 22:60:09", "2026-11-14 22:05:0x", "1600-01-01 00:00:00"}) {
    EXPECT_FALSE(ParseLocalTime(text)) << text;
  }
}

}  // namespace
}  // namespace quorvale
