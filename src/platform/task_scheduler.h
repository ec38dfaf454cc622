// The jobs that the system starts at their time: the user's part of the system's task scheduler.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/system_info.h"

namespace quorvale {

// Numbers of the flags and trigger types are those of the system's interface (TASK_FLAG_...,
// TASK_TIME_TRIGGER_...). kOther: any type that this program does not make (on reading).
enum class TaskTriggerType { kOther = -1, kOnce = 0, kDaily = 1, kWeekly = 2 };

// Flags that the scheduler itself goes by.
inline constexpr std::uint32_t kTaskDisabled = 4;

struct TaskTrigger {
  TaskTriggerType type = TaskTriggerType::kOnce;
  LocalTime begin;         // the first day, and the time of day at which the job starts
  int interval = 1;        // days or weeks from one run to the next
  std::uint16_t days = 0;  // of a weekly one: Sunday 1, Monday 2, ... Saturday 64
  std::string text;        // on reading: words for it, the system's own where it has them
};

struct ScheduledTask {
  std::string name;
  std::string application;  // a path
  std::string parameters;
  std::string comment;
  std::uint32_t flags = 0;
  std::string account;
  std::string creator;      // on reading
  std::string status_text;  // on reading: TaskStatusText
  std::vector<TaskTrigger> triggers;
  std::optional<LocalTime> last_run;  // on reading; empty: never
  std::optional<LocalTime> next_run;  // on reading; empty: none to come
};

// The fields of a job by the words that TaskCreation has for them.
namespace task_field {
inline constexpr char kApplication[] = "application";
inline constexpr char kParameters[] = "parameters";
inline constexpr char kComment[] = "comment";
inline constexpr char kFlags[] = "flags";
inline constexpr char kTrigger[] = "trigger";
inline constexpr char kAccount[] = "account";
}  // namespace task_field

// What became of a job that was to be made.
struct TaskCreation {
  bool saved = false;
  std::vector<std::string> refused;  // task_field words of what a saved job had to do without
};

// False if a trigger has a type that can only be read.
bool HasOwnTriggers(const ScheduledTask& task);

class TaskScheduler {
 public:
  virtual ~TaskScheduler() = default;
  // The names of all jobs, of every program; empty where there is no scheduler.
  virtual std::vector<std::string> Names() = 0;
  // Nothing if there is no job of this name or it cannot be read. Names are matched without regard
  // to case.
  virtual std::optional<ScheduledTask> Read(const std::string& name) = 0;
  // Saves a new job under its name with its fields, triggers and account (no password). A field
  // that the scheduler does not take is left out and named. Not saved on any other failure, also
  // if there is a job of this name, or if a trigger has a type that can't be made; what was there
  // is as it was then.
  virtual TaskCreation Create(const ScheduledTask& task) = 0;
  // False if there is no such job or it stays.
  virtual bool Delete(const std::string& name) = 0;
};

// The states of a job as the scheduler's interface numbers them (SCHED_S_TASK_...).
inline constexpr std::uint32_t kTaskReady = 0x41300;
inline constexpr std::uint32_t kTaskIsDisabled = 0x41302;
inline constexpr std::uint32_t kTaskHasNotRun = 0x41303;
inline constexpr std::uint32_t kTaskNotScheduled = 0x41305;
// Words for a state; "" for a number that is none.
std::string TaskStatusText(std::uint32_t status);

// Words for a trigger, the day on which it begins at the end behind a blank: "At 9:07 AM every Mon,
// Fri of every week, starting 11/21/2026". For systems that have none of their own.
std::string TriggerText(const TaskTrigger& trigger);

// The first moment after `now` at which the trigger fires; nothing if it never does again.
std::optional<LocalTime> NextRunOf(const TaskTrigger& trigger, const LocalTime& now);
// The first of all triggers.
std::optional<LocalTime> NextRunOf(const std::vector<TaskTrigger>& triggers, const LocalTime& now);

}  // namespace quorvale
