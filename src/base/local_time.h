// A moment as a clock on the wall tells it.
#pragma once

namespace quorvale {

// A moment by the computer's own clock and time zone.
struct LocalTime {
  int year = 1601;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int weekday = 1;  // 1 is Sunday
};

}  // namespace quorvale
