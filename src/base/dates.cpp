#include "base/dates.h"

#include <chrono>

namespace quorvale {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year_month_day;

constexpr std::int64_t kSecondsOfDay = 24 * 60 * 60;
constexpr int kNoon = 12;

year_month_day DateOf(int year, int month, int day) {
  return {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
          std::chrono::day(static_cast<unsigned>(day))};
}

}  // namespace

bool IsDate(int year, int month, int day) {
  // The calendar's types would take a number that they cannot hold for another one.
  return month >= 1 && month <= 12 && day >= 1 && day <= 31 && DateOf(year, month, day).ok();
}

std::int64_t DayNumber(int year, int month, int day) {
  return sys_days(DateOf(year, month, day)).time_since_epoch().count();
}

LocalTime DateOfDay(std::int64_t day_number) {
  const sys_days day{days(day_number)};
  const year_month_day date(day);
  LocalTime time;
  time.year = static_cast<int>(date.year());
  time.month = static_cast<int>(static_cast<unsigned>(date.month()));
  time.day = static_cast<int>(static_cast<unsigned>(date.day()));
  time.weekday = static_cast<int>(weekday(day).c_encoding()) + 1;
  return time;
}

std::int64_t SecondNumber(const LocalTime& time) {
  return DayNumber(time.year, time.month, time.day) * kSecondsOfDay + time.hour * 60 * 60 +
         time.minute * 60 + time.second;
}

std::int64_t MinuteNumber(const LocalTime& time) {
  return DayNumber(time.year, time.month, time.day) * 24 * 60 + time.hour * 60 + time.minute;
}

LocalTime MomentOfSecond(std::int64_t second_number) {
  const std::chrono::seconds whole(second_number);
  const days day = std::chrono::floor<days>(whole);
  const std::chrono::hh_mm_ss<std::chrono::seconds> clock(whole - day);
  LocalTime time = DateOfDay(day.count());
  time.hour = static_cast<int>(clock.hours().count());
  time.minute = static_cast<int>(clock.minutes().count());
  time.second = static_cast<int>(clock.seconds().count());
  return time;
}

int HourOfHalfDay(const LocalTime& time) {
  return time.hour % kNoon == 0 ? kNoon : time.hour % kNoon;
}

const char* HalfDay(const LocalTime& time) { return time.hour < kNoon ? "AM" : "PM"; }

std::optional<LocalTime> ParseLocalTime(const std::string& text) {
  static const char kPattern[] = "dddd-dd-dd dd:dd:dd";
  if (text.size() != sizeof(kPattern) - 1) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_digit = text[i] >= '0' && text[i] <= '9';
    if (kPattern[i] == 'd' ? !is_digit : text[i] != kPattern[i]) return std::nullopt;
  }
  const auto number = [&text](std::size_t at, std::size_t count) {
    return std::stoi(text.substr(at, count));
  };
  LocalTime time;
  time.year = number(0, 4);
  time.month = number(5, 2);
  time.day = number(8, 2);
  time.hour = number(11, 2);
  time.minute = number(14, 2);
  time.second = number(17, 2);
  if (time.year < 1601 || !IsDate(time.year, time.month, time.day) || time.hour > 23 ||
      time.minute > 59 || time.second > 59) {
    return std::nullopt;
  }
  return MomentOfSecond(SecondNumber(time));
}

}  // namespace quorvale
