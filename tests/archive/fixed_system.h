// A computer whose facts a test sets: the clock stands two hours east of UTC, the code page is
// Latin 1.
#pragma once

#include <chrono>
#include <string>

#include "archive/test_data.h"
#include "base/dates.h"
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
    return MomentOfSecond(SecondNumber(LocalTime()) + time / 10'000'000 + hours_east * 3600);
  }

  std::uint64_t Ticks() override {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                          std::chrono::steady_clock::now().time_since_epoch())
                                          .count());
  }
  void Sleep(int) override {}
  // Other bytes with each call.
  std::string RandomBytes(std::size_t count) override {
    std::string bytes(count, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random_.Next());
    return bytes;
  }
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

 private:
  Random random_{2006};
};

}  // namespace quorvale::zip_test
