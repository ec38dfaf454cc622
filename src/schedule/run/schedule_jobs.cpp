#include "schedule/run/schedule_jobs.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "base/dates.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"

namespace quorvale {
namespace {

constexpr std::uint32_t kInteractive = 1;
constexpr std::uint32_t kRunOnlyIfLoggedOn = 8192;
constexpr char kBetweenFlags[] = " - ";

struct FlagWord {
  std::uint32_t bit;
  const char* word;
};
// "Hidden" goes by the bit of the first word.
constexpr FlagWord kFlagWords[] = {
    {2, "Delete when done"},
    {4, "Disabled"},
    {64, "Don'FlagsText start if on batteries"},
    {2, "Hidden"},
    {1, "Interactive"},
    {128, "Kill if going on batteries"},
    {32, "Kill on idle end"},
    {2048, "Restart on idle resume"},
    {256, "Run only if docked"},
    {8192, "Run only if logged on"},
    {16, "Start only if idle"},
    {4096, "System required"},
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The numbers of a date text such as "11/21/2026" or "21.11.26"; nothing unless there are three
// and nothing else but what stands between them.
std::optional<std::array<int, 3>> DateNumbers(const std::string& text) {
  std::array<int, 3> numbers{};
  size_t count = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (!IsDigit(text[i])) {
      if (std::string("/.-").find(text[i]) == std::string::npos) return std::nullopt;
      continue;
    }
    if (i == 0 || !IsDigit(text[i - 1])) ++count;
    if (count == 0 || count > 3) return std::nullopt;
    int& number = numbers[count - 1];
    number = number * 10 + (text[i] - '0');
    if (number > 9999) return std::nullopt;
  }
  if (count != 3) return std::nullopt;
  return numbers;
}

// True if the text is this date, in whatever order the user's region has its parts.
bool IsDate(const std::string& text, const LocalTime& date) {
  std::optional<std::array<int, 3>> numbers = DateNumbers(text);
  if (!numbers) return false;
  for (const int year : {date.year, date.year % 100}) {
    std::array<int, 3> parts = {year, date.month, date.day};
    std::array<int, 3> sorted = *numbers;
    std::sort(parts.begin(), parts.end());
    std::sort(sorted.begin(), sorted.end());
    if (parts == sorted) return true;
  }
  return false;
}

// A trigger's words, the date behind the last blank in the form that all moments have here.
std::string TriggerLine(Program& program, const TaskTrigger& trigger) {
  const size_t blank = trigger.text.rfind(' ');
  if (blank == std::string::npos) return trigger.text;
  if (!IsDate(trigger.text.substr(blank + 1), trigger.begin)) return trigger.text;
  LocalTime day = trigger.begin;
  day.hour = day.minute = day.second = 0;  // a date alone
  return trigger.text.substr(0, blank + 1) + HistoryStamp(program, day);
}

// Takes one or two digits at a place of the text.
bool TakeNumber(const std::string& text, size_t* at, int* number) {
  const size_t start = *at;
  *number = 0;
  while (*at < text.size() && *at < start + 2 && IsDigit(text[*at])) {
    *number = *number * 10 + (text[*at] - '0');
    ++*at;
  }
  return *at > start;
}

}  // namespace

ScheduledTask NewScheduleJob(Program& program, const std::string& name, const std::string& comment,
                             const LocalTime& start) {
  ScheduledTask job;
  job.name = name;
  job.application = ProgramPath(program);
  job.comment = comment;
  job.flags = kInteractive | kRunOnlyIfLoggedOn;
  TaskTrigger trigger;
  trigger.begin = program.platform().system.Now();
  trigger.begin.hour = start.hour;
  trigger.begin.minute = start.minute;
  trigger.begin.second = 0;
  trigger.type = TaskTriggerType::kDaily;
  trigger.interval = 1;
  job.triggers.push_back(trigger);
  job.account = program.platform().system.Environment("USERNAME");
  return job;
}

bool IsScheduleNameTaken(Program& program, const std::string& name) {
  const std::vector<std::string> names = program.platform().scheduler.Names();
  return std::any_of(names.begin(), names.end(),
                     [&name](const std::string& known) { return EqualsNoCase(known, name); });
}

bool MakeScheduleJob(Program& program, const ScheduledTask& job) {
  Account& account = program.account();
  account.Begin(AccountRun::kSchedule, job.name, AccountMoment(program));
  const TaskCreation creation = program.platform().scheduler.Create(job);
  if (creation.saved) {
    for (const std::string& field : creation.refused) {
      account.Note(AccountReason::kSchedulerRefused,
                   "The schedule \"" + job.name + "\" was made without its " + field + ".");
    }
    account.End(AccountEnd::kDone, AccountMoment(program));
  } else {
    account.End(AccountEnd::kFailed, AccountMoment(program), AccountReason::kSchedulerRefused,
                job.name);
  }
  KeepAccount(program);
  return creation.saved;
}

std::vector<ScheduledTask> OwnScheduleJobs(Program& program) {
  TaskScheduler& scheduler = program.platform().scheduler;
  std::vector<ScheduledTask> jobs;
  for (const std::string& name : scheduler.Names()) {
    std::optional<ScheduledTask> job = scheduler.Read(name);
    if (job && job->comment == kScheduleComment) jobs.push_back(std::move(*job));
  }
  return jobs;
}

std::optional<LocalTime> NextScheduledRun(Program& program) {
  const std::int64_t now = MinuteNumber(program.platform().system.Now());
  std::optional<LocalTime> next;
  std::int64_t fewest = 0;
  for (const ScheduledTask& job : OwnScheduleJobs(program)) {
    if (!job.next_run) continue;
    const std::int64_t minutes = MinuteNumber(*job.next_run) - now;
    if (minutes <= 0 || (next && minutes >= fewest)) continue;
    next = job.next_run;
    fewest = minutes;
  }
  return next;
}

std::string FlagWords(std::uint32_t flags) {
  std::string words;
  for (const FlagWord& flag : kFlagWords) {
    if ((flags & flag.bit) != 0) words += std::string(flag.word) + kBetweenFlags;
  }
  if (!words.empty()) words.resize(words.size() - sizeof(kBetweenFlags) + 1);
  return words;
}

std::string RunTimeText(Program& program, const std::optional<LocalTime>& time) {
  return time ? HistoryStamp(program, *time) : "Never";
}

std::string ScheduleDetails(Program& program, const ScheduledTask& job) {
  std::string triggers;
  for (const TaskTrigger& trigger : job.triggers) {
    triggers += (triggers.empty() ? "" : "\r\n") + TriggerLine(program, trigger);
  }
  const std::pair<const char*, std::string> lines[] = {
      {"ApplicationName: ", job.application},
      {"CommandLine: ", job.parameters},
      {"Comment: ", job.comment},
      {"Flags: ", FlagWords(job.flags)},
      {"LastRunTime: ", RunTimeText(program, job.last_run)},
      {"NextRunTime: ", RunTimeText(program, job.next_run)},
      {"Creator: ", job.creator},
      {"StatusText: ", job.status_text},
      {"Triggers: ", triggers},
  };
  std::string text;
  for (const auto& [label, value] : lines) text += label + value + "\r\n";
  return text;
}

std::string TimeBoxText(const LocalTime& time) {
  char text[32];
  std::snprintf(text, sizeof(text), "%02d:%02d %s", HourOfHalfDay(time), time.minute,
                HalfDay(time));
  return text;
}

std::optional<LocalTime> ReadTimeBox(const std::string& text, const LocalTime& day) {
  const std::string trimmed = Trim(text);
  LocalTime time = day;
  time.second = 0;
  size_t at = 0;
  if (!TakeNumber(trimmed, &at, &time.hour) || at >= trimmed.size() || trimmed[at] != ':') {
    return std::nullopt;
  }
  if (!TakeNumber(trimmed, &++at, &time.minute)) return std::nullopt;
  if (at < trimmed.size() && trimmed[at] == ':' && !TakeNumber(trimmed, &++at, &time.second)) {
    return std::nullopt;
  }
  const std::string half = Trim(trimmed.substr(at));
  const bool morning = EqualsNoCase(half, "am");
  const bool afternoon = EqualsNoCase(half, "pm");
  if (!half.empty() && !morning && !afternoon) return std::nullopt;
  const bool half_days = morning || afternoon;
  if (time.minute > 59 || time.second > 59 || time.hour > (half_days ? 12 : 23) ||
      (half_days && time.hour == 0)) {
    return std::nullopt;
  }
  if (half_days) time.hour = time.hour % 12 + (afternoon ? 12 : 0);
  return time;
}

}  // namespace quorvale
