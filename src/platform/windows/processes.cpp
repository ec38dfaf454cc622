#include "platform/windows/processes.h"

#include "base/paths.h"
#include "base/text.h"
#include "platform/windows/automation.h"
#include "platform/windows/system_info.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

using SnapshotCall = HANDLE(WINAPI*)(DWORD, DWORD);
using WalkCall = BOOL(WINAPI*)(HANDLE, PROCESSENTRY32*);

// NT 4 has no snapshots of processes; it answers through a library of its own, where that is
// installed.
std::vector<ProcessInfo> ListByStatusLibrary() {
  using EnumCall = BOOL(WINAPI*)(DWORD*, DWORD, DWORD*);
  using NameCall = DWORD(WINAPI*)(HANDLE, HMODULE, LPSTR, DWORD);
  const auto enumerate = LookUp<EnumCall>("psapi.dll", "EnumProcesses");
  const auto base_name = LookUp<NameCall>("psapi.dll", "GetModuleBaseNameA");
  std::vector<ProcessInfo> processes;
  std::vector<DWORD> ids(4096);
  DWORD bytes = 0;
  if (enumerate == nullptr || base_name == nullptr ||
      enumerate(ids.data(), static_cast<DWORD>(ids.size() * sizeof(DWORD)), &bytes) == 0) {
    return processes;
  }
  ids.resize(bytes / sizeof(DWORD));
  for (const DWORD id : ids) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id);
    if (process == nullptr) continue;
    char name[MAX_PATH] = "";
    if (base_name(process, nullptr, name, sizeof(name)) > 0) {
      processes.push_back({FromAnsi(name), id});
    }
    CloseHandle(process);
  }
  return processes;
}

// The path of a process's file where the management service cannot tell it, or "".
std::string PathByStatusLibrary(std::uint32_t id) {
  using PathCall = DWORD(WINAPI*)(HANDLE, HMODULE, LPSTR, DWORD);
  const auto path_of = LookUp<PathCall>("psapi.dll", "GetModuleFileNameExA");
  const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id);
  char path[MAX_PATH] = "";
  if (path_of != nullptr && process != nullptr) path_of(process, nullptr, path, sizeof(path));
  if (process != nullptr) CloseHandle(process);
  return FromAnsi(path);
}

// True if a process runs the file of this path.
bool ProcessHasPath(std::uint32_t id, const std::string& path) {
  if (EqualsNoCase(PathByStatusLibrary(id), FromAnsi(Ansi(path)))) return true;
  bool found = false;
  QueryManagement("Select * from Win32_Process where ProcessID = \"" + std::to_string(id) + "\"",
                  [&](Dispatch& row) {
                    const std::optional<std::string> running = row.Text("ExecutablePath");
                    found = running && EqualsNoCase(Trim(*running), Trim(path));
                    return !found;
                  });
  return found;
}

struct WindowSearch {
  std::uint32_t process = 0;
  std::string title;
};

BOOL CALLBACK BringForward(HWND window, LPARAM data) {
  const auto& search = *reinterpret_cast<const WindowSearch*>(data);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || GetParent(window) != nullptr) return TRUE;
  char text[256] = "";
  GetWindowTextA(window, text, sizeof(text));
  if (!Contains(FromAnsi(text), search.title)) return TRUE;
  OpenIcon(window);
  SetForegroundWindow(window);
  SetFocus(window);
  ShowWindow(window, IsIconic(window) != 0 ? SW_RESTORE : SW_SHOWNORMAL);
  return TRUE;
}

}  // namespace

std::vector<ProcessInfo> WindowsProcesses::List() {
  const auto snapshot = LookUp<SnapshotCall>("kernel32.dll", "CreateToolhelp32Snapshot");
  const auto first = LookUp<WalkCall>("kernel32.dll", "Process32First");
  const auto next = LookUp<WalkCall>("kernel32.dll", "Process32Next");
  if (snapshot == nullptr || first == nullptr || next == nullptr) return ListByStatusLibrary();
  std::vector<ProcessInfo> processes;
  const HANDLE handle = snapshot(TH32CS_SNAPPROCESS, 0);
  if (handle == INVALID_HANDLE_VALUE) return processes;
  PROCESSENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  for (BOOL more = first(handle, &entry); more != 0; more = next(handle, &entry)) {
    // The older systems tell the whole path here.
    processes.push_back({FileNameOf(FromAnsi(entry.szExeFile)), entry.th32ProcessID});
  }
  CloseHandle(handle);
  return processes;
}

bool WindowsProcesses::WindowExists(const std::string& title) {
  return (HasUnicode() ? FindWindowW(nullptr, Wide(title).c_str())
                       : FindWindowA(nullptr, Ansi(title).c_str())) != nullptr;
}

std::uint32_t FindOtherInstance() {
  const std::string path = ProgramFile();
  const std::string image = FileNameOf(path);
  for (const ProcessInfo& process : WindowsProcesses("").List()) {
    if (process.id == GetCurrentProcessId() || !ContainsNoCase(process.image, image)) continue;
    if (ProcessHasPath(process.id, path)) return process.id;
  }
  return 0;
}

void WindowsProcesses::ActivatePreviousInstance() {
  WindowSearch search{FindOtherInstance(), title_};
  if (search.process != 0) EnumWindows(BringForward, reinterpret_cast<LPARAM>(&search));
}

}  // namespace quorvale::windows
