// Days as numbers, for reckoning with dates.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/system_info.h"

namespace quorvale {

// The number of a day of the Gregorian calendar; 1970-01-01 is 0. `month` counts from 1.
std::int64_t DayNumber(int year, int month, int day);
// The start of the day of this number, with its weekday.
LocalTime DateOfDay(std::int64_t day_number);
// Whole minutes since 1970 by the same clock; seconds do not count.
std::int64_t MinuteNumber(const LocalTime& time);
// "2026-11-14 22:05:09" to a moment with its weekday. Nothing if it is not one.
std::optional<LocalTime> ParseLocalTime(const std::string& text);

}  // namespace quorvale
