#include "platform/host/system_info.h"

#include <time.h>

#include <cstdio>
#include <thread>

#include "platform/host/files.h"
#include "platform/text.h"

namespace quorvale::host {
namespace {

LocalTime FromTm(const struct tm& time) {
  LocalTime local;
  local.year = time.tm_year + 1900;
  local.month = time.tm_mon + 1;
  local.day = time.tm_mday;
  local.hour = time.tm_hour;
  local.minute = time.tm_min;
  local.second = time.tm_sec;
  local.weekday = time.tm_wday + 1;
  return local;
}

LocalTime LocalTimeOf(time_t seconds) {
  struct tm broken {};
  localtime_r(&seconds, &broken);
  return FromTm(broken);
}

std::int64_t MillisecondsOf(const LocalTime& time) {
  struct tm broken {};
  broken.tm_year = time.year - 1900;
  broken.tm_mon = time.month - 1;
  broken.tm_mday = time.day;
  broken.tm_hour = time.hour;
  broken.tm_min = time.minute;
  broken.tm_sec = time.second;
  return static_cast<std::int64_t>(timegm(&broken)) * 1000;
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

bool HostSystemInfo::HoldInstanceMutex(const std::string&) { return !other_copy_runs_; }

void HostSystemInfo::SetNow(std::optional<LocalTime> now) {
  now_.reset();
  if (now) now_ = MillisecondsOf(*now);
}

LocalTime HostSystemInfo::Now() {
  if (!now_) return LocalTimeOf(time(nullptr));
  const auto seconds = static_cast<time_t>(*now_ / 1000);
  struct tm broken {};
  gmtime_r(&seconds, &broken);
  return FromTm(broken);
}

LocalTime HostSystemInfo::ToLocal(FileTime time) { return LocalTimeOf(FromFileTime(time).tv_sec); }

std::uint64_t HostSystemInfo::Ticks() {
  const auto elapsed = std::chrono::steady_clock::now() - start_;
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
  return static_cast<std::uint64_t>(milliseconds) + slept_;
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
  const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
  char text[64];
  std::snprintf(text, sizeof(text), "%d:%02d:%02d %s", hour, time.minute, time.second,
                time.hour < 12 ? "AM" : "PM");
  return text;
}

std::string HostSystemInfo::WeekdayName(int weekday) {
  static const char* const kNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                       "Thursday", "Friday", "Saturday"};
  return weekday >= 1 && weekday <= 7 ? kNames[weekday - 1] : "";
}

}  // namespace quorvale::host
