#include "base/dates.h"

namespace quorvale {
namespace {

constexpr int kDaysOf400Years = 146097;
// From the first of March of the year 0, where leap days stand at the ends of years, to 1970.
constexpr int kDaysTo1970 = 719468;

}  // namespace

std::int64_t DayNumber(int year, int month, int day) {
  const std::int64_t from_march = month > 2 ? month - 3 : month + 9;
  const std::int64_t years = month > 2 ? year : year - 1;
  const std::int64_t era = (years >= 0 ? years : years - 399) / 400;
  const std::int64_t year_of_era = years - era * 400;
  const std::int64_t day_of_year = (153 * from_march + 2) / 5 + day - 1;
  const std::int64_t day_of_era =
      year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * kDaysOf400Years + day_of_era - kDaysTo1970;
}

LocalTime DateOfDay(std::int64_t day_number) {
  const std::int64_t days = day_number + kDaysTo1970;
  const std::int64_t era = (days >= 0 ? days : days - kDaysOf400Years + 1) / kDaysOf400Years;
  const std::int64_t day_of_era = days - era * kDaysOf400Years;
  const std::int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const std::int64_t day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const std::int64_t from_march = (5 * day_of_year + 2) / 153;
  LocalTime date;
  date.day = static_cast<int>(day_of_year - (153 * from_march + 2) / 5 + 1);
  date.month = static_cast<int>(from_march < 10 ? from_march + 3 : from_march - 9);
  date.year = static_cast<int>(year_of_era + era * 400 + (date.month <= 2 ? 1 : 0));
  // 1970-01-01 was a Thursday, the fifth day.
  const std::int64_t since_sunday = ((day_number + 4) % 7 + 7) % 7;
  date.weekday = static_cast<int>(since_sunday) + 1;
  return date;
}

std::int64_t MinuteNumber(const LocalTime& time) {
  return DayNumber(time.year, time.month, time.day) * 24 * 60 + time.hour * 60 + time.minute;
}

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
  if (time.year < 1601 || time.month < 1 || time.month > 12 || time.hour > 23 ||
      time.minute > 59 || time.second > 59) {
    return std::nullopt;
  }
  // A day that its month has not comes out as another one.
  const LocalTime date = DateOfDay(DayNumber(time.year, time.month, time.day));
  if (date.month != time.month || date.day != time.day) return std::nullopt;
  time.weekday = date.weekday;
  return time;
}

}  // namespace quorvale
