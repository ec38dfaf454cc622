// The facts of a machine folder's computer, and its clock.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/host/code_page.h"
#include "platform/host/machine_folder.h"
#include "platform/system_info.h"

namespace quorvale::host {

class HostSystemInfo : public SystemInfo {
 public:
  // `code_page` must live as long as this object.
  HostSystemInfo(const MachineFolder& machine, const CodePage& code_page);

  SystemVersion Version() override { return version_; }
  std::string UserName() override { return user_; }
  std::string ComputerName() override { return computer_; }
  std::string Environment(const std::string& name) override;
  std::string ProgramFolder() override { return "C:\\Program Files\\Quorvale"; }
  std::string CommandLine() override { return command_line_; }
  // Each machine folder has one program at a time.
  bool PreviousInstanceRuns() override { return false; }
  bool HoldInstanceMutex(const std::string& /*name*/) override { return true; }
  LocalTime Now() override;
  LocalTime ToLocal(FileTime time) override;
  std::uint64_t Ticks() override;
  void Sleep(int milliseconds) override;
  std::string RandomBytes(std::size_t count) override;
  std::string TimeText(const LocalTime& time) override;
  std::string WeekdayName(int weekday) override;
  // English as in the United States.
  std::string LocaleText(int type) override;
  std::string SystemFolder() override;
  // The host's sentence for the number.
  std::string ErrorText(int number) override;
  std::string ToAnsi(const std::string& utf8) override { return code_page_.FromUtf8(utf8); }
  std::string FromAnsi(const std::string& bytes) override { return code_page_.ToUtf8(bytes); }

  void SetVersion(const SystemVersion& version) { version_ = version; }
  void SetUser(const std::string& user) { user_ = user; }
  void SetEnvironment(const std::string& name, const std::string& value);
  void SetCommandLine(const std::string& command_line) { command_line_ = command_line; }
  // Sets the clock, which from now on moves only by Sleep; nothing: the host's clock.
  void SetNow(std::optional<LocalTime> now);
  // Sleep returns at once; Ticks go on as if it had slept.
  void SetSleepless(bool sleepless) { sleepless_ = sleepless; }

 private:
  const CodePage& code_page_;
  SystemVersion version_;
  std::string user_;
  std::string computer_;
  std::map<std::string, std::string> environment_;  // by folded name
  std::string command_line_;
  bool sleepless_ = false;
  std::optional<std::int64_t> now_;  // of a set clock: milliseconds since 1970, local time
  std::uint64_t slept_ = 0;          // milliseconds that were not really slept
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace quorvale::host
