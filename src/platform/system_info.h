// Facts of the computer and the running program, its clock, its randomness, and its code page.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/local_time.h"
#include "platform/files.h"

namespace quorvale {

// The numbers of the system's version call. Platform id 1: Windows 95, 98, ME. 2: the NT family.
struct SystemVersion {
  int platform_id = 0;
  int major = 0;
  int minor = 0;
  bool known = true;  // false: the call failed
};

class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  virtual SystemVersion Version() = 0;
  virtual std::string UserName() = 0;
  virtual std::string ComputerName() = 0;
  // The value of an environment variable; names without regard to case; "" if there is none.
  virtual std::string Environment(const std::string& name) = 0;

  // The program's folder, without a trailing "\", and its whole argument text, as it was given.
  virtual std::string ProgramFolder() = 0;
  virtual std::string CommandLine() = 0;
  // True if another copy of this program runs.
  virtual bool PreviousInstanceRuns() = 0;
  // Takes the process-wide name that marks a running copy. False if another copy holds it.
  virtual bool HoldInstanceMutex(const std::string& name) = 0;

  virtual LocalTime Now() = 0;
  // The time zone's view of a file's time.
  virtual LocalTime ToLocal(FileTime time) = 0;
  // Milliseconds since some fixed moment; never goes back.
  virtual std::uint64_t Ticks() = 0;
  virtual void Sleep(int milliseconds) = 0;
  // So many bytes that nobody foresees, fit for salts and keys. Empty if the system fails.
  virtual std::string RandomBytes(std::size_t count) = 0;

  // Text by the user's regional settings: the long time ("10:05:09 PM"), the full weekday name.
  virtual std::string TimeText(const LocalTime& time) = 0;
  virtual std::string WeekdayName(int weekday) = 0;
  // One item of the user's regional settings, by the number that the system's locale call knows it
  // by (winnls.h, LOCALE_...). "" for an item that the system does not know.
  virtual std::string LocaleText(int /*type*/) { return ""; }
  // The folder of the system's own libraries, without a trailing "\"; "" if there is none.
  virtual std::string SystemFolder() { return ""; }
  // The system's sentence for the error number of one of its calls; "" if it has none.
  virtual std::string ErrorText(int /*number*/) { return ""; }

  // The system's ANSI code page. A character outside it becomes "?".
  virtual std::string ToAnsi(const std::string& utf8) = 0;
  virtual std::string FromAnsi(const std::string& bytes) = 0;
};

}  // namespace quorvale
