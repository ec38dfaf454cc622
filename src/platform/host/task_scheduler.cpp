#include "platform/host/task_scheduler.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "base/text.h"
#include "platform/host/host_file.h"
#include "platform/host/ini_text.h"

namespace quorvale::host {
namespace {

constexpr const char* kDayWords[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

std::string MomentText(const LocalTime& time) {
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month,
                time.day, time.hour, time.minute, time.second);
  return text;
}

const char* TypeWord(TaskTriggerType type) {
  if (type == TaskTriggerType::kDaily) return "daily";
  return type == TaskTriggerType::kWeekly ? "weekly" : "once";
}

std::optional<TaskTriggerType> TypeOf(const std::string& word) {
  for (const TaskTriggerType type :
       {TaskTriggerType::kOnce, TaskTriggerType::kDaily, TaskTriggerType::kWeekly}) {
    if (word == TypeWord(type)) return type;
  }
  return std::nullopt;
}

std::string DaysText(std::uint16_t days) {
  std::string text;
  for (int i = 0; i < 7; ++i) {
    if ((days >> i & 1) != 0) text += (text.empty() ? "" : " ") + std::string(kDayWords[i]);
  }
  return text;
}

bool ParseDays(const std::string& text, std::uint16_t* days) {
  for (const std::string& word : Split(text, " ")) {
    if (word.empty()) continue;
    const auto* found = std::find(std::begin(kDayWords), std::end(kDayWords), word);
    if (found == std::end(kDayWords)) return false;
    *days = static_cast<std::uint16_t>(*days | 1 << (found - std::begin(kDayWords)));
  }
  return *days != 0;
}

std::string TriggerLine(const TaskTrigger& trigger) {
  std::string line = std::string(TypeWord(trigger.type)) + ", " + MomentText(trigger.begin) + ", " +
                     std::to_string(trigger.interval);
  if (trigger.type == TaskTriggerType::kWeekly) line += ", " + DaysText(trigger.days);
  return line;
}

std::optional<TaskTrigger> ParseTrigger(const std::string& text) {
  std::vector<std::string> parts = Split(text, ",");
  for (std::string& part : parts) part = Stripped(part);
  const std::optional<TaskTriggerType> type = TypeOf(parts[0]);
  if (!type) return std::nullopt;
  const bool weekly = *type == TaskTriggerType::kWeekly;
  if (parts.size() != (weekly ? 4u : 3u)) return std::nullopt;
  const std::optional<LocalTime> begin = ParseLocalTime(parts[1]);
  TaskTrigger trigger;
  if (!begin || !ParseNumber(parts[2], &trigger.interval) || trigger.interval < 1 ||
      trigger.interval > 9999 || (weekly && !ParseDays(parts[3], &trigger.days))) {
    return std::nullopt;
  }
  trigger.type = *type;
  trigger.begin = *begin;
  return trigger;
}

// Takes one entry of a job. The answer is "" or what is wrong with it.
std::string TakeEntry(const std::string& name, const std::string& value, ScheduledTask* task) {
  const std::pair<const char*, std::string*> texts[] = {{"application", &task->application},
                                                        {"parameters", &task->parameters},
                                                        {"comment", &task->comment},
                                                        {"account", &task->account},
                                                        {"creator", &task->creator}};
  for (const auto& [known, text] : texts) {
    if (name != known) continue;
    *text = value;
    return "";
  }
  if (name == "flags") {
    return ParseNumber(value, &task->flags) ? "" : "\"" + value + "\" is no number of flags";
  }
  if (name == "last_run") {
    task->last_run = ParseLocalTime(value);
    return task->last_run ? ""
                          : "\"" + value + "\" is no moment; one looks like 2026-11-14 22:05:09";
  }
  if (name != "trigger") return "a job has no \"" + name + "\"";
  const std::optional<TaskTrigger> trigger = ParseTrigger(value);
  if (!trigger) {
    return "\"" + value +
           "\" is no trigger; one looks like daily, 2026-11-14 22:05:00, 1 or weekly, 2026-11-14 "
           "22:05:00, 1, MO FR";
  }
  task->triggers.push_back(*trigger);
  return "";
}

std::string TaskLines(const ScheduledTask& task) {
  std::string text = "[" + task.name + "]\n";
  const auto line = [&text](const char* name, const std::string& value) {
    text += std::string(name) + " = " + value + "\n";
  };
  line("application", task.application);
  line("parameters", task.parameters);
  line("comment", task.comment);
  line("flags", std::to_string(task.flags));
  line("account", task.account);
  line("creator", task.creator);
  for (const TaskTrigger& trigger : task.triggers) line("trigger", TriggerLine(trigger));
  if (task.last_run) line("last_run", MomentText(*task.last_run));
  return text;
}

bool IsOneLine(const std::string& text) {
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

// Empties the texts that tasks.ini cannot hold. The words of those fields.
std::vector<std::string> LeaveOutWhatNoLineHolds(ScheduledTask* task) {
  const std::pair<const char*, std::string*> texts[] = {
      {task_field::kApplication, &task->application},
      {task_field::kParameters, &task->parameters},
      {task_field::kComment, &task->comment},
      {task_field::kAccount, &task->account}};
  std::vector<std::string> refused;
  for (const auto& [field, text] : texts) {
    if (IsOneLine(*text)) continue;
    text->clear();
    refused.emplace_back(field);
  }
  return refused;
}

// A job's name is that of a file, as in the scheduler that this one stands for.
bool IsTaskName(const std::string& name) {
  return !name.empty() && name == Stripped(name) && IsOneLine(name) && IsUtf8(name) &&
         name.find_first_of("\\/:*?\"<>|") == std::string::npos;
}

auto FindTask(std::vector<ScheduledTask>& tasks, const std::string& name) {
  return std::find_if(tasks.begin(), tasks.end(),
                      [&name](const ScheduledTask& task) { return EqualsNoCase(task.name, name); });
}

// Takes one line of tasks.ini. The answer is "" or what is wrong with it.
std::string TakeLine(const IniLine& line, std::vector<ScheduledTask>* tasks) {
  if (line.kind == IniLine::Kind::kBroken) return line.name;
  if (line.kind == IniLine::Kind::kEntry) {
    if (tasks->empty()) return "the line stands before the first job";
    return TakeEntry(FoldCase(line.name), line.value, &tasks->back());
  }
  if (!IsTaskName(line.name)) return "\"" + line.text + "\" names no job";
  if (FindTask(*tasks, line.name) != tasks->end()) {
    return "job \"" + line.name + "\" stands twice";
  }
  tasks->emplace_back().name = line.name;
  return "";
}

std::uint32_t StatusOf(const ScheduledTask& task) {
  if ((task.flags & kTaskDisabled) != 0) return kTaskIsDisabled;
  if (task.triggers.empty()) return kTaskNotScheduled;
  return task.last_run ? kTaskReady : kTaskHasNotRun;
}

}  // namespace

HostTaskScheduler::HostTaskScheduler(std::string machine_folder, SystemInfo& system)
    : file_(std::move(machine_folder) + "/tasks.ini"), system_(system) {}

bool HostTaskScheduler::Check(MachineError* error) const { return ReadAll(error).has_value(); }

std::optional<std::vector<ScheduledTask>> HostTaskScheduler::ReadAll(MachineError* error) const {
  std::vector<ScheduledTask> tasks;
  struct stat info {};
  if (stat(file_.c_str(), &info) != 0) return tasks;
  const std::optional<std::string> text = ReadHostFile(file_);
  if (!text) {
    *error = {file_, 0, "the file cannot be read"};
    return std::nullopt;
  }
  IniReader lines(*text);
  for (IniLine line; lines.Next(&line);) {
    const std::string problem = TakeLine(line, &tasks);
    if (problem.empty()) continue;
    *error = {file_, line.number, problem};
    return std::nullopt;
  }
  return tasks;
}

bool HostTaskScheduler::WriteAll(const std::vector<ScheduledTask>& tasks) const {
  std::string text;
  for (const ScheduledTask& task : tasks) text += (text.empty() ? "" : "\n") + TaskLines(task);
  std::string reason;
  return ReplaceHostFile(file_, text, &reason);
}

std::vector<std::string> HostTaskScheduler::Names() {
  MachineError error;
  std::vector<std::string> names;
  for (const ScheduledTask& task : ReadAll(&error).value_or(std::vector<ScheduledTask>())) {
    names.push_back(task.name);
  }
  return names;
}

std::optional<ScheduledTask> HostTaskScheduler::Read(const std::string& name) {
  MachineError error;
  std::optional<std::vector<ScheduledTask>> tasks = ReadAll(&error);
  if (!tasks) return std::nullopt;
  const auto found = FindTask(*tasks, name);
  if (found == tasks->end()) return std::nullopt;
  ScheduledTask task = *found;
  for (TaskTrigger& trigger : task.triggers) trigger.text = TriggerText(trigger);
  const bool disabled = (task.flags & kTaskDisabled) != 0;
  if (!disabled) task.next_run = NextRunOf(task.triggers, system_.Now());
  task.status_text = TaskStatusText(StatusOf(task));
  return task;
}

TaskCreation HostTaskScheduler::Create(const ScheduledTask& task) {
  MachineError error;
  std::optional<std::vector<ScheduledTask>> tasks = ReadAll(&error);
  if (!tasks || !IsTaskName(task.name) || !HasOwnTriggers(task)) return {};
  if (FindTask(*tasks, task.name) != tasks->end()) return {};
  TaskCreation creation;
  tasks->push_back(task);
  ScheduledTask& made = tasks->back();
  made.creator = system_.UserName();
  made.last_run.reset();
  creation.refused = LeaveOutWhatNoLineHolds(&made);
  creation.saved = WriteAll(*tasks);
  return creation;
}

bool HostTaskScheduler::Delete(const std::string& name) {
  MachineError error;
  std::optional<std::vector<ScheduledTask>> tasks = ReadAll(&error);
  if (!tasks) return false;
  const auto found = FindTask(*tasks, name);
  if (found == tasks->end()) return false;
  tasks->erase(found);
  return WriteAll(*tasks);
}

}  // namespace quorvale::host
