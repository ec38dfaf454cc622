// Facts of the running system.
#pragma once

#include "platform/system_info.h"
#include "platform/windows/windows_headers.h"

namespace quorvale::windows {

// A moment as the system tells it.
LocalTime FromSystemTime(const SYSTEMTIME& time);

// The full path of the running program's file.
std::string ProgramFile();

class WindowsSystemInfo : public SystemInfo {
 public:
  ~WindowsSystemInfo() override;

  SystemVersion Version() override;
  std::string UserName() override;
  std::string ComputerName() override;
  std::string Environment(const std::string& name) override;
  std::string ProgramFolder() override;
  std::string CommandLine() override;
  bool PreviousInstanceRuns() override;
  bool HoldInstanceMutex(const std::string& name) override;
  LocalTime Now() override;
  LocalTime ToLocal(FileTime time) override;
  std::uint64_t Ticks() override;
  void Sleep(int milliseconds) override;
  // The system's own, or where it has none JitterBytes (platform/windows/random_bytes.h).
  std::string RandomBytes(std::size_t count) override;
  std::string TimeText(const LocalTime& time) override;
  std::string WeekdayName(int weekday) override;
  std::string LocaleText(int type) override;
  std::string SystemFolder() override;
  std::string ErrorText(int number) override;
  std::string ToAnsi(const std::string& utf8) override;
  std::string FromAnsi(const std::string& bytes) override;

 private:
  void* mutex_ = nullptr;
  std::uint32_t last_ticks_ = 0;
  std::uint64_t ticks_before_ = 0;  // of all earlier rounds of the system's 32-bit count
};

}  // namespace quorvale::windows
