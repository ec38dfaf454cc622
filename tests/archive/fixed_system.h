// A computer whose facts a test sets: the clock stands two hours east of UTC, the code page is
// Latin 1.
#pragma once

#include <chrono>
#include <string>

#include "base/text.h"
#include "platform/system_info.h"

namespace quorvale::zip_test {

class FixedSystem : public SystemInfo {
 public:
  int hours_east = 2;

  SystemVersion Version() override { return {2, 5, 1, true}; }
  std::string UserName() override { return "Anna"; }
  std::string ComputerName() override { return "OFFICE"; }
  std::string Environment(const std::string&) override { return ""; }
  std::string ProgramFolder() override { return "C:\\Program"; }
  std::string CommandLine() override { return ""; }
  bool PreviousInstanceRuns() override { return false; }
  bool HoldInstanceMutex(const std::string&) override { return true; }
  LocalTime Now() override { return ToLocal(128'000'000'000'000'000); }

  LocalTime ToLocal(FileTime time) override {
    const std::int64_t seconds = time / 10'000'000 + hours_east * 3600;
    std::int64_t days = seconds / 86400;
    const std::int64_t rest = seconds % 86400;
    LocalTime local;
    local.hour = static_cast<int>(rest / 3600);
    local.minute = static_cast<int>(rest / 60 % 60);
    local.second = static_cast<int>(rest % 60);
    local.weekday = static_cast<int>((days + 1) % 7) + 1;
    local.year = 1601;
    const auto leap = [](int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; };
    while (days >= (leap(local.year) ? 366 : 365)) days -= leap(local.year++) ? 366 : 365;
    const int lengths[] = {31, leap(local.year) ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    local.month = 1;
    for (const int length : lengths) {
      if (days < length) break;
      days -= length;
      ++local.month;
    }
    local.day = static_cast<int>(days) + 1;
    return local;
  }

  std::uint64_t Ticks() override {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                          std::chrono::steady_clock::now().time_since_epoch())
                                          .count());
  }
  void Sleep(int) override {}
  std::string TimeText(const LocalTime&) override { return ""; }
  std::string WeekdayName(int) override { return ""; }

  std::string ToAnsi(const std::string& utf8) override {
    const std::string wide = Utf8ToUtf16Bytes(utf8);
    std::string bytes;
    for (std::size_t i = 0; i + 1 < wide.size(); i += 2) {
      bytes += wide[i + 1] == 0 ? wide[i] : '?';
    }
    return bytes;
  }
  std::string FromAnsi(const std::string& bytes) override {
    std::string utf8;
    for (const char c : bytes) AppendUtf8(&utf8, static_cast<unsigned char>(c));
    return utf8;
  }
};

}  // namespace quorvale::zip_test
