#include "platform/host/system_info.h"

#include <sys/random.h>
#include <time.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <thread>

#include "base/dates.h"
#include "base/text.h"
#include "platform/host/files.h"

namespace quorvale::host {
namespace {

constexpr const char* kDayNames[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                     "Friday", "Saturday", "Sunday"};
constexpr const char* kMonthNames[] = {"January",   "February", "March",    "April",
                                       "May",       "June",     "July",     "August",
                                       "September", "October",  "November", "December"};

struct LocaleItem {
  int type;
  const char* text;
};
constexpr LocaleItem kLocaleItems[] = {
    {0x02, "English (United States)"},
    {0x06, "United States"},
    {0x0E, "."},
    {0x0F, ","},
    {0x10, "3;0"},
    {0x11, "2"},
    {0x12, "1"},
    {0x14, "$"},
    {0x1D, "/"},
    {0x1E, ":"},
    {0x1F, "M/d/yyyy"},
    {0x20, "dddd, MMMM dd, yyyy"},
    {0x50, ""},
    {0x51, "-"},
    {0x52, "3"},
    {0x53, "0"},
    {0x1003, "h:mm:ss tt"},
};

// By the host's time zone.
LocalTime LocalTimeOf(time_t seconds) {
  struct tm local {};
  localtime_r(&seconds, &local);
  return MomentOfSecond(seconds + local.tm_gmtoff);
}

}  // namespace

HostSystemInfo::HostSystemInfo(const MachineFolder& machine, const CodePage& code_page)
    : code_page_(code_page),
      version_(machine.version),
      user_(machine.user),
      computer_(machine.computer) {
  for (const auto& [name, value] : machine.environment) SetEnvironment(name, value);
  SetNow(machine.now);
}

std::string HostSystemInfo::Environment(const std::string& name) {
  const auto found = environment_.find(FoldCase(name));
  return found == environment_.end() ? "" : found->second;
}

void HostSystemInfo::SetEnvironment(const std::string& name, const std::string& value) {
  environment_[FoldCase(name)] = value;
}

void HostSystemInfo::SetNow(std::optional<LocalTime> now) {
  now_.reset();
  if (now) now_ = SecondNumber(*now) * 1000;
}

LocalTime HostSystemInfo::Now() {
  if (!now_) return LocalTimeOf(time(nullptr));
  return MomentOfSecond(*now_ / 1000);
}

LocalTime HostSystemInfo::ToLocal(FileTime time) { return LocalTimeOf(FromFileTime(time).tv_sec); }

std::uint64_t HostSystemInfo::Ticks() {
  const auto elapsed = std::chrono::steady_clock::now() - start_;
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
  return static_cast<std::uint64_t>(milliseconds) + slept_;
}

std::string HostSystemInfo::RandomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t at = 0; at < count;) {
    const ssize_t got = getrandom(bytes.data() + at, count - at, 0);
    if (got < 0 && errno != EINTR) return "";
    if (got > 0) at += static_cast<std::size_t>(got);
  }
  return bytes;
}

void HostSystemInfo::Sleep(int milliseconds) {
  if (milliseconds <= 0) return;
  if (now_) *now_ += milliseconds;
  if (now_ || sleepless_) {
    slept_ += static_cast<std::uint64_t>(milliseconds);
    return;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::string HostSystemInfo::TimeText(const LocalTime& time) {
  char text[64];
  std::snprintf(text, sizeof(text), "%d:%02d:%02d %s", HourOfHalfDay(time), time.minute,
                time.second, HalfDay(time));
  return text;
}

std::string HostSystemInfo::WeekdayName(int weekday) {
  return weekday >= 1 && weekday <= 7 ? kDayNames[(weekday + 5) % 7] : "";
}

// The numbers are those of Windows' locale call (winnls.h).
std::string HostSystemInfo::LocaleText(int type) {
  constexpr int kFirstDay = 0x2A, kFirstShortDay = 0x31;
  constexpr int kFirstMonth = 0x38, kFirstShortMonth = 0x44;
  constexpr size_t kShort = 3;
  const auto in_list = [type](int first, int count) {
    return type >= first && type < first + count;
  };
  if (in_list(kFirstDay, 7)) return kDayNames[type - kFirstDay];
  if (in_list(kFirstShortDay, 7)) {
    return std::string(kDayNames[type - kFirstShortDay]).substr(0, kShort);
  }
  if (in_list(kFirstMonth, 12)) return kMonthNames[type - kFirstMonth];
  if (in_list(kFirstShortMonth, 12)) {
    return std::string(kMonthNames[type - kFirstShortMonth]).substr(0, kShort);
  }
  for (const LocaleItem& item : kLocaleItems) {
    if (item.type == type) return item.text;
  }
  return "";
}

std::string HostSystemInfo::SystemFolder() {
  const std::string windows = Environment("windir");
  if (windows.empty()) return "";
  constexpr int kNtFamily = 2;
  return windows + (version_.platform_id == kNtFamily ? "\\system32" : "\\system");
}

std::string HostSystemInfo::ErrorText(int number) {
  return std::generic_category().message(number);
}

}  // namespace quorvale::host
