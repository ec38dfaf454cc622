// Another program's look at the system's task scheduler. It shares no code with Quorvale, so that
// what it sees is what any program sees.
//
//   task_probe list                 the names of all jobs, a line each
//   task_probe show NAME            the fields of a job, "field = value" a line
//   task_probe add NAME COMMENT     makes a job of another program, daily at 06:15
//   task_probe delete NAME
#include <windows.h>
// windows.h first
#include <mstask.h>
#include <objbase.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

// The numbers of the scheduler's classes and interfaces.
constexpr GUID Number(unsigned long first) {
  return {first, 0xA2AB, 0x11CE, {0xB1, 0x1F, 0x00, 0xAA, 0x00, 0x53, 0x05, 0x03}};
}
constexpr GUID kSchedulerClass = Number(0x148BD52A);
constexpr GUID kSchedulerInterface = Number(0x148BD527);
constexpr GUID kTaskClass = Number(0x148BD520);
constexpr GUID kTaskInterface = Number(0x148BD524);
constexpr GUID kPersistFile = {0x10B, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constexpr WORD kOtherHour = 6;
constexpr WORD kOtherMinute = 15;

std::wstring Wide(const char* text) {
  std::wstring wide(1024, L'\0');
  const int length =
      MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), static_cast<int>(wide.size()));
  wide.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
  return wide;
}

std::string Narrow(const wchar_t* wide) {
  std::string text(2048, '\0');
  const int length = WideCharToMultiByte(CP_ACP, 0, wide, -1, text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(length > 0 ? static_cast<size_t>(length) - 1 : 0);
  return text;
}

// What a call of the job gives that has a place for a text.
template <class Call>
void PrintText(const char* field, const Call& call) {
  LPWSTR text = nullptr;
  const HRESULT result = call(&text);
  if (FAILED(result)) {
    std::printf("%s: failed %08lx\n", field, static_cast<unsigned long>(result));
    return;
  }
  std::printf("%s = %s\n", field, text == nullptr ? "" : Narrow(text).c_str());
  CoTaskMemFree(text);
}

void PrintMoment(const char* field, HRESULT result, const SYSTEMTIME& time) {
  std::printf("%s = ", field);
  if (FAILED(result) || time.wYear == 0) {
    std::printf("none\n");
    return;
  }
  std::printf("%04d-%02d-%02d %02d:%02d\n", time.wYear, time.wMonth, time.wDay, time.wHour,
              time.wMinute);
}

int List(ITaskScheduler* scheduler) {
  IEnumWorkItems* items = nullptr;
  if (FAILED(scheduler->Enum(&items))) return 1;
  LPWSTR* names = nullptr;
  ULONG count = 0;
  while (items->Next(1, &names, &count) == S_OK) {
    std::printf("%s\n", Narrow(names[0]).c_str());
    CoTaskMemFree(names[0]);
    CoTaskMemFree(names);
  }
  items->Release();
  return 0;
}

void ShowTrigger(ITask* task) {
  WORD count = 0;
  task->GetTriggerCount(&count);
  std::printf("triggers = %d\n", count);
  ITaskTrigger* object = nullptr;
  if (count == 0 || FAILED(task->GetTrigger(0, &object))) return;
  TASK_TRIGGER trigger = {};
  trigger.cbTriggerSize = sizeof(trigger);
  if (SUCCEEDED(object->GetTrigger(&trigger))) {
    std::printf("begin = %04d-%02d-%02d\n", trigger.wBeginYear, trigger.wBeginMonth,
                trigger.wBeginDay);
    std::printf("start = %02d:%02d\n", trigger.wStartHour, trigger.wStartMinute);
    std::printf("type = %d\n", static_cast<int>(trigger.TriggerType));
    if (trigger.TriggerType == TASK_TIME_TRIGGER_DAILY) {
      std::printf("interval = %d\n", trigger.Type.Daily.DaysInterval);
    } else if (trigger.TriggerType == TASK_TIME_TRIGGER_WEEKLY) {
      std::printf("interval = %d\n", trigger.Type.Weekly.WeeksInterval);
      std::printf("days = %d\n", trigger.Type.Weekly.rgfDaysOfTheWeek);
    }
  }
  object->Release();
}

int Show(ITaskScheduler* scheduler, const char* name) {
  ITask* task = nullptr;
  if (FAILED(scheduler->Activate(Wide(name).c_str(), kTaskInterface,
                                 reinterpret_cast<IUnknown**>(&task)))) {
    std::printf("there is no job %s\n", name);
    return 1;
  }
  PrintText("application", [task](LPWSTR* text) { return task->GetApplicationName(text); });
  PrintText("parameters", [task](LPWSTR* text) { return task->GetParameters(text); });
  PrintText("comment", [task](LPWSTR* text) { return task->GetComment(text); });
  PrintText("account", [task](LPWSTR* text) { return task->GetAccountInformation(text); });
  DWORD flags = 0;
  task->GetFlags(&flags);
  std::printf("flags = %lu\n", flags);
  ShowTrigger(task);
  SYSTEMTIME time = {};
  PrintMoment("next", task->GetNextRunTime(&time), time);
  time = {};
  PrintMoment("last", task->GetMostRecentRunTime(&time), time);
  task->Release();
  return 0;
}

bool Fill(ITask* task, const char* comment) {
  WORD number = 0;
  ITaskTrigger* object = nullptr;
  if (FAILED(task->SetApplicationName(L"C:\\windows\\notepad.exe")) ||
      FAILED(task->SetComment(Wide(comment).c_str())) ||
      FAILED(task->CreateTrigger(&number, &object))) {
    return false;
  }
  TASK_TRIGGER trigger = {};
  trigger.cbTriggerSize = sizeof(trigger);
  trigger.wBeginYear = 2020;
  trigger.wBeginMonth = 1;
  trigger.wBeginDay = 1;
  trigger.wStartHour = kOtherHour;
  trigger.wStartMinute = kOtherMinute;
  trigger.TriggerType = TASK_TIME_TRIGGER_DAILY;
  trigger.Type.Daily.DaysInterval = 1;
  const bool set = SUCCEEDED(object->SetTrigger(&trigger));
  object->Release();
  return set;
}

int Add(ITaskScheduler* scheduler, const char* name, const char* comment) {
  ITask* task = nullptr;
  if (FAILED(scheduler->NewWorkItem(Wide(name).c_str(), kTaskClass, kTaskInterface,
                                    reinterpret_cast<IUnknown**>(&task)))) {
    return 1;
  }
  IPersistFile* file = nullptr;
  const bool saved =
      Fill(task, comment) &&
      SUCCEEDED(task->QueryInterface(kPersistFile, reinterpret_cast<void**>(&file))) &&
      SUCCEEDED(file->Save(nullptr, TRUE));
  if (file != nullptr) file->Release();
  task->Release();
  return saved ? 0 : 1;
}

int Run(ITaskScheduler* scheduler, int count, char** words) {
  if (count == 2 && std::strcmp(words[1], "list") == 0) return List(scheduler);
  if (count == 3 && std::strcmp(words[1], "show") == 0) return Show(scheduler, words[2]);
  if (count == 4 && std::strcmp(words[1], "add") == 0) return Add(scheduler, words[2], words[3]);
  if (count == 3 && std::strcmp(words[1], "delete") == 0) {
    return SUCCEEDED(scheduler->Delete(Wide(words[2]).c_str())) ? 0 : 1;
  }
  std::fprintf(stderr, "usage: task_probe list | show NAME | add NAME COMMENT | delete NAME\n");
  return 2;
}

}  // namespace

int main(int count, char** words) {
  if (FAILED(CoInitialize(nullptr))) return 3;
  ITaskScheduler* scheduler = nullptr;
  int status = 3;
  if (SUCCEEDED(CoCreateInstance(kSchedulerClass, nullptr, CLSCTX_INPROC_SERVER,
                                 kSchedulerInterface, reinterpret_cast<void**>(&scheduler)))) {
    status = Run(scheduler, count, words);
    scheduler->Release();
  } else {
    std::printf("there is no task scheduler\n");
  }
  CoUninitialize();
  return status;
}
