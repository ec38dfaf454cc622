#include "platform/task_scheduler.h"

#include <algorithm>
#include <cstdio>

#include "base/dates.h"

namespace quorvale {
namespace {

constexpr int kDaysOfWeek = 7;

std::string TimeOfDay(const LocalTime& time) {
  char text[32];
  std::snprintf(text, sizeof(text), "%d:%02d %s", HourOfHalfDay(time), time.minute, HalfDay(time));
  return text;
}

std::string Date(const LocalTime& time) {
  return std::to_string(time.month) + "/" + std::to_string(time.day) + "/" +
         std::to_string(time.year);
}

// "every week", "every 2 weeks"
std::string Every(int interval, const std::string& unit) {
  return interval <= 1 ? "every " + unit : "every " + std::to_string(interval) + " " + unit + "s";
}

bool HasDay(const TaskTrigger& trigger, int weekday) {
  return (trigger.days >> (weekday - 1) & 1) != 0;
}

std::string DayNames(const TaskTrigger& trigger) {
  static const char* const kNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  std::string names;
  // As a calendar of the week has them: Monday first.
  for (int i = 1; i <= kDaysOfWeek; ++i) {
    const int weekday = i % kDaysOfWeek + 1;
    if (!HasDay(trigger, weekday)) continue;
    names += (names.empty() ? "" : ", ") + std::string(kNames[weekday - 1]);
  }
  return names;
}

bool FiresOn(const TaskTrigger& trigger, std::int64_t day) {
  const LocalTime& begin = trigger.begin;
  const std::int64_t first = DayNumber(begin.year, begin.month, begin.day);
  const std::int64_t interval = std::max(trigger.interval, 1);
  switch (trigger.type) {
    case TaskTriggerType::kOnce:
      return day == first;
    case TaskTriggerType::kDaily:
      return (day - first) % interval == 0;
    case TaskTriggerType::kWeekly: {
      // Weeks begin on Sunday.
      const std::int64_t first_sunday = first - (DateOfDay(first).weekday - 1);
      const std::int64_t week = (day - first_sunday) / kDaysOfWeek;
      return HasDay(trigger, DateOfDay(day).weekday) && week % interval == 0;
    }
    case TaskTriggerType::kOther:
      break;
  }
  return false;
}

// Days after which a trigger has fired, if it ever does.
std::int64_t Round(const TaskTrigger& trigger) {
  const std::int64_t interval = std::max(trigger.interval, 1);
  if (trigger.type == TaskTriggerType::kWeekly) return interval * kDaysOfWeek + kDaysOfWeek;
  return interval + 1;
}

}  // namespace

bool HasOwnTriggers(const ScheduledTask& task) {
  return std::none_of(task.triggers.begin(), task.triggers.end(), [](const TaskTrigger& trigger) {
    return trigger.type == TaskTriggerType::kOther;
  });
}

std::string TaskStatusText(std::uint32_t status) {
  switch (status) {
    case kTaskReady:
      return "Ready";
    case 0x41301:
      return "Running";
    case kTaskIsDisabled:
      return "Disabled";
    case kTaskHasNotRun:
      return "Not yet run";
    case 0x41304:
      return "No more runs";
    case kTaskNotScheduled:
      return "Not scheduled";
    case 0x41306:
      return "Terminated";
    case 0x41307:
      return "No valid triggers";
    case 0x41308:
      return "Started by an event";
    default:
      return "";
  }
}

std::string TriggerText(const TaskTrigger& trigger) {
  const std::string at = "At " + TimeOfDay(trigger.begin) + " ";
  const std::string starting = ", starting " + Date(trigger.begin);
  switch (trigger.type) {
    case TaskTriggerType::kOnce:
      return at + "on " + Date(trigger.begin);
    case TaskTriggerType::kDaily:
      return at + Every(trigger.interval, "day") + starting;
    case TaskTriggerType::kWeekly:
      return at + "every " + DayNames(trigger) + " of " + Every(trigger.interval, "week") +
             starting;
    case TaskTriggerType::kOther:
      break;
  }
  return at + "at times of its own" + starting;
}

std::optional<LocalTime> NextRunOf(const TaskTrigger& trigger, const LocalTime& now) {
  const LocalTime& begin = trigger.begin;
  const std::int64_t begin_day = DayNumber(begin.year, begin.month, begin.day);
  const std::int64_t first = std::max(begin_day, DayNumber(now.year, now.month, now.day));
  for (std::int64_t day = first; day <= first + Round(trigger); ++day) {
    if (!FiresOn(trigger, day)) continue;
    LocalTime run = DateOfDay(day);
    run.hour = begin.hour;
    run.minute = begin.minute;
    // It fires at the start of its minute, which is over if this minute is the present one.
    if (MinuteNumber(run) > MinuteNumber(now)) return run;
  }
  return std::nullopt;
}

std::optional<LocalTime> NextRunOf(const std::vector<TaskTrigger>& triggers, const LocalTime& now) {
  std::optional<LocalTime> next;
  for (const TaskTrigger& trigger : triggers) {
    const std::optional<LocalTime> run = NextRunOf(trigger, now);
    if (run && (!next || MinuteNumber(*run) < MinuteNumber(*next))) next = run;
  }
  return next;
}

}  // namespace quorvale
