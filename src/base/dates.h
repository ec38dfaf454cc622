// Days as numbers, for reckoning with dates.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/local_time.h"

namespace quorvale {

// True for a day that the Gregorian calendar has. `month` counts from 1.
bool IsDate(int year, int month, int day);
// The number of such a day; 1970-01-01 is 0.
std::int64_t DayNumber(int year, int month, int day);
// The start of the day of this number, with its weekday.
LocalTime DateOfDay(std::int64_t day_number);
// Whole seconds, and whole minutes, since 1970 by the same clock; no other zone has a part in it.
std::int64_t SecondNumber(const LocalTime& time);
std::int64_t MinuteNumber(const LocalTime& time);
// The moment of a number of seconds.
LocalTime MomentOfSecond(std::int64_t second_number);
// The hour of the twelve-hour clock (12, 1, ... 11), and its half of the day.
int HourOfHalfDay(const LocalTime& time);
const char* HalfDay(const LocalTime& time);
// "2026-11-14 22:05:09" to a moment with its weekday. Nothing if it is not one.
std::optional<LocalTime> ParseLocalTime(const std::string& text);

}  // namespace quorvale
