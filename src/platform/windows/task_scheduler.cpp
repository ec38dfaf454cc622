#include "platform/windows/task_scheduler.h"

#include <algorithm>

#include "base/text.h"
#include "platform/windows/system_info.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

// The numbers of the scheduler's classes and interfaces, as mstask.h publishes them.
constexpr GUID NumberOf(unsigned long first) {
  return {first, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
}
constexpr GUID kSchedulerClass = NumberOf(0x148BD52A);
constexpr GUID kSchedulerInterface = NumberOf(0x148BD527);
constexpr GUID kTaskClass = NumberOf(0x148BD520);
constexpr GUID kTaskInterface = NumberOf(0x148BD524);
constexpr GUID kPersistFileInterface = {
    0x0000010B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

constexpr char kJobFileEnd[] = ".job";

// An object of the system, released at the end.
template <class T>
class Held {
 public:
  Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    if (object_ != nullptr) object_->Release();
  }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  // For calls that give an object.
  T** Place() { return &object_; }
  IUnknown** PlaceOfAny() { return reinterpret_cast<IUnknown**>(&object_); }
  void** PlaceOfNothing() { return reinterpret_cast<void**>(&object_); }

 private:
  T* object_ = nullptr;
};

using Task = Held<ITask>;

std::string WithoutJobFileEnd(std::string name) {
  if (EndsWithNoCase(name, kJobFileEnd)) name.resize(name.size() - sizeof(kJobFileEnd) + 1);
  return name;
}

// Text that the system allocated.
std::string TakeText(LPWSTR text) {
  if (text == nullptr) return "";
  std::string taken = FromWide(text);
  CoTaskMemFree(text);
  return taken;
}

// What one of the Get... calls of an object gives; "" if it has nothing to tell.
template <class Object, class Interface>
std::string TextOf(const Object& object, HRESULT (STDMETHODCALLTYPE Interface::*get)(LPWSTR*)) {
  LPWSTR text = nullptr;
  return SUCCEEDED((object.operator->()->*get)(&text)) ? TakeText(text) : "";
}

std::optional<LocalTime> MomentOf(HRESULT result, const SYSTEMTIME& time) {
  // "Has not run" and the like are successes without a moment.
  if (FAILED(result) || time.wYear == 0) return std::nullopt;
  return FromSystemTime(time);
}

TaskTriggerType TypeOf(TASK_TRIGGER_TYPE type) {
  if (type == TASK_TIME_TRIGGER_ONCE) return TaskTriggerType::kOnce;
  if (type == TASK_TIME_TRIGGER_DAILY) return TaskTriggerType::kDaily;
  return type == TASK_TIME_TRIGGER_WEEKLY ? TaskTriggerType::kWeekly : TaskTriggerType::kOther;
}

std::optional<TaskTrigger> ReadTrigger(const Task& task, WORD number) {
  Held<ITaskTrigger> object;
  if (FAILED(task->GetTrigger(number, object.Place())) || !object) return std::nullopt;
  TASK_TRIGGER data = {};
  data.cbTriggerSize = sizeof(data);
  if (FAILED(object->GetTrigger(&data))) return std::nullopt;
  TaskTrigger trigger;
  trigger.type = TypeOf(data.TriggerType);
  trigger.begin.year = data.wBeginYear;
  trigger.begin.month = data.wBeginMonth;
  trigger.begin.day = data.wBeginDay;
  trigger.begin.hour = data.wStartHour;
  trigger.begin.minute = data.wStartMinute;
  if (trigger.type == TaskTriggerType::kDaily) trigger.interval = data.Type.Daily.DaysInterval;
  if (trigger.type == TaskTriggerType::kWeekly) {
    trigger.interval = data.Type.Weekly.WeeksInterval;
    trigger.days = data.Type.Weekly.rgfDaysOfTheWeek;
  }
  LPWSTR text = nullptr;
  if (SUCCEEDED(task->GetTriggerString(number, &text))) trigger.text = TakeText(text);
  if (trigger.text.empty()) trigger.text = TriggerText(trigger);
  return trigger;
}

TASK_TRIGGER DataOf(const TaskTrigger& trigger) {
  TASK_TRIGGER data = {};
  data.cbTriggerSize = sizeof(data);
  data.wBeginYear = static_cast<WORD>(trigger.begin.year);
  data.wBeginMonth = static_cast<WORD>(trigger.begin.month);
  data.wBeginDay = static_cast<WORD>(trigger.begin.day);
  data.wStartHour = static_cast<WORD>(trigger.begin.hour);
  data.wStartMinute = static_cast<WORD>(trigger.begin.minute);
  data.TriggerType = static_cast<TASK_TRIGGER_TYPE>(trigger.type);
  if (trigger.type == TaskTriggerType::kDaily) {
    data.Type.Daily.DaysInterval = static_cast<WORD>(trigger.interval);
  } else if (trigger.type == TaskTriggerType::kWeekly) {
    data.Type.Weekly.WeeksInterval = static_cast<WORD>(trigger.interval);
    data.Type.Weekly.rgfDaysOfTheWeek = trigger.days;
  }
  return data;
}

bool AddTrigger(const Task& task, const TaskTrigger& trigger) {
  Held<ITaskTrigger> object;
  WORD number = 0;
  const TASK_TRIGGER data = DataOf(trigger);
  if (FAILED(task->CreateTrigger(&number, object.Place())) || !object) return false;
  if (SUCCEEDED(object->SetTrigger(const_cast<TASK_TRIGGER*>(&data)))) return true;
  task->DeleteTrigger(number);
  return false;
}

// Windows 95, 98 and ME run every job for whoever is there and refuse an account.
bool SetAccount(const Task& task, const std::string& account) {
  if (!HasUnicode() || account.empty()) return true;
  return SUCCEEDED(task->SetAccountInformation(Wide(account).c_str(), nullptr));
}

// The words of the fields that were not taken; the others are set.
std::vector<std::string> SetFields(const Task& task, const ScheduledTask& wanted) {
  std::vector<std::string> refused;
  const auto note = [&refused](const char* field, bool taken) {
    if (!taken) refused.emplace_back(field);
  };
  note(task_field::kApplication,
       SUCCEEDED(task->SetApplicationName(Wide(wanted.application).c_str())));
  note(task_field::kParameters, SUCCEEDED(task->SetParameters(Wide(wanted.parameters).c_str())));
  note(task_field::kComment, SUCCEEDED(task->SetComment(Wide(wanted.comment).c_str())));
  note(task_field::kFlags, SUCCEEDED(task->SetFlags(wanted.flags)));
  for (const TaskTrigger& trigger : wanted.triggers) {
    note(task_field::kTrigger, AddTrigger(task, trigger));
  }
  note(task_field::kAccount, SetAccount(task, wanted.account));
  return refused;
}

// The system's scheduler reads a job that was just saved, and its file is in use while it does.
constexpr int kDeleteAttempts = 40;
constexpr DWORD kDeletePause = 50;  // milliseconds

bool DeleteJob(ITaskScheduler* scheduler, const std::string& name) {
  const std::wstring wide = Wide(name);
  HRESULT result = scheduler->Delete(wide.c_str());
  for (int attempt = 1; attempt < kDeleteAttempts; ++attempt) {
    if (result != HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION)) break;
    Sleep(kDeletePause);
    result = scheduler->Delete(wide.c_str());
  }
  return SUCCEEDED(result);
}

bool Save(const Task& task) {
  Held<IPersistFile> file;
  return SUCCEEDED(task->QueryInterface(kPersistFileInterface, file.PlaceOfNothing())) && file &&
         SUCCEEDED(file->Save(nullptr, TRUE));
}

TaskCreation MakeJob(ITaskScheduler* scheduler, const ScheduledTask& wanted) {
  TaskCreation creation;
  Task made;
  if (FAILED(scheduler->NewWorkItem(Wide(wanted.name).c_str(), kTaskClass, kTaskInterface,
                                    made.PlaceOfAny())) ||
      !made) {
    return creation;
  }
  creation.refused = SetFields(made, wanted);
  creation.saved = Save(made);
  if (!creation.saved) DeleteJob(scheduler, wanted.name);
  return creation;
}

}  // namespace

class WindowsTaskScheduler::Opened {
 public:
  // Null where there is no scheduler.
  ITaskScheduler* Scheduler() {
    // The inner server of the calling thread; there is no other.
    if (!scheduler_ && FAILED(CoCreateInstance(kSchedulerClass, nullptr, CLSCTX_INPROC_SERVER,
                                               kSchedulerInterface, scheduler_.PlaceOfNothing()))) {
      *scheduler_.Place() = nullptr;
    }
    return scheduler_.operator->();
  }

 private:
  Held<ITaskScheduler> scheduler_;
};

WindowsTaskScheduler::WindowsTaskScheduler() : opened_(std::make_unique<Opened>()) {}

WindowsTaskScheduler::~WindowsTaskScheduler() = default;

std::vector<std::string> WindowsTaskScheduler::Names() {
  std::vector<std::string> names;
  ITaskScheduler* const scheduler = opened_->Scheduler();
  Held<IEnumWorkItems> items;
  if (scheduler == nullptr || FAILED(scheduler->Enum(items.Place())) || !items) return names;
  LPWSTR* batch = nullptr;
  ULONG count = 0;
  while (items->Next(1, &batch, &count) == S_OK && count == 1) {
    names.push_back(WithoutJobFileEnd(TakeText(batch[0])));
    CoTaskMemFree(batch);
    batch = nullptr;
  }
  return names;
}

std::optional<ScheduledTask> WindowsTaskScheduler::Read(const std::string& name) {
  ITaskScheduler* const scheduler = opened_->Scheduler();
  Task task;
  if (scheduler == nullptr ||
      FAILED(scheduler->Activate(Wide(name).c_str(), kTaskInterface, task.PlaceOfAny())) || !task) {
    return std::nullopt;
  }
  ScheduledTask read;
  read.name = name;
  read.application = TextOf(task, &ITask::GetApplicationName);
  read.parameters = TextOf(task, &ITask::GetParameters);
  read.comment = TextOf(task, &ITask::GetComment);
  read.account = TextOf(task, &ITask::GetAccountInformation);
  read.creator = TextOf(task, &ITask::GetCreator);
  DWORD flags = 0;
  if (SUCCEEDED(task->GetFlags(&flags))) read.flags = flags;
  WORD count = 0;
  if (FAILED(task->GetTriggerCount(&count))) count = 0;
  for (WORD number = 0; number < count; ++number) {
    const std::optional<TaskTrigger> trigger = ReadTrigger(task, number);
    if (trigger) read.triggers.push_back(*trigger);
  }
  SYSTEMTIME time = {};
  read.last_run = MomentOf(task->GetMostRecentRunTime(&time), time);
  time = {};
  read.next_run = MomentOf(task->GetNextRunTime(&time), time);
  HRESULT status = 0;
  if (SUCCEEDED(task->GetStatus(&status))) {
    read.status_text = TaskStatusText(static_cast<std::uint32_t>(status));
  }
  return read;
}

TaskCreation WindowsTaskScheduler::Create(const ScheduledTask& task) {
  // Not every system's scheduler asks itself whether the name is free.
  const std::vector<std::string> names = Names();
  const auto is_this = [&task](const std::string& name) { return EqualsNoCase(name, task.name); };
  if (std::any_of(names.begin(), names.end(), is_this)) return {};
  ITaskScheduler* const scheduler = opened_->Scheduler();
  if (scheduler == nullptr || !HasOwnTriggers(task)) return {};
  TaskCreation creation = MakeJob(scheduler, task);
  if (creation.saved || task.account.empty()) return creation;
  // Some systems look at the account only when the job is saved.
  ScheduledTask without = task;
  without.account.clear();
  creation = MakeJob(scheduler, without);
  if (creation.saved) creation.refused.emplace_back(task_field::kAccount);
  return creation;
}

bool WindowsTaskScheduler::Delete(const std::string& name) {
  ITaskScheduler* const scheduler = opened_->Scheduler();
  return scheduler != nullptr && DeleteJob(scheduler, name);
}

}  // namespace quorvale::windows
