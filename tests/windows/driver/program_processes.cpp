#include "program_processes.h"

#include "platform/paths.h"
#include "platform/text.h"
#include "platform/windows/system_info.h"
#include "platform/windows/text_calls.h"

namespace quorvale::driver {
namespace {

using windows::FromWide;
using windows::Wide;

constexpr char kStandInFolder[] = "C:\\stand-ins";

// A string of the system's process interface.
struct CountedText {
  USHORT length;  // bytes
  USHORT room;
  wchar_t* text;
};

// The command line that a process was started with.
std::string CommandLineOf(DWORD process) {
  using Query = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
  constexpr int kCommandLine = 60;
  const auto query = windows::LookUp<Query>("ntdll.dll", "NtQueryInformationProcess");
  const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, process);
  if (query == nullptr || handle == nullptr) return "";
  std::vector<CountedText> buffer(2048);
  ULONG used = 0;
  const LONG status = query(handle, kCommandLine, buffer.data(),
                            static_cast<ULONG>(buffer.size() * sizeof(CountedText)), &used);
  CloseHandle(handle);
  if (status < 0 || buffer[0].text == nullptr) return "";
  return FromWide({buffer[0].text, buffer[0].length / sizeof(wchar_t)});
}

struct Process {
  DWORD id = 0, parent = 0;
  std::string image;
};

std::vector<Process> AllProcesses() {
  std::vector<Process> all;
  const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Process32FirstW(list, &entry); more != 0; more = Process32NextW(list, &entry)) {
    all.push_back({entry.th32ProcessID, entry.th32ParentProcessID, FromWide(entry.szExeFile)});
  }
  CloseHandle(list);
  return all;
}

// What stands behind the program's name in a command line.
std::string ParametersOf(const std::string& line) {
  const size_t end = line.starts_with("\"") ? line.find('"', 1) : line.find(' ');
  return end == std::string::npos ? "" : Trim(line.substr(end + 1));
}

DWORD Launch(const std::string& file, const std::string& parameters) {
  std::wstring line = Wide("\"" + file + "\"" + (parameters.empty() ? "" : " " + parameters));
  const std::wstring folder = Wide(ParentFolder(file));
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                     &startup, &process) == 0) {
    return 0;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

}  // namespace

ProgramProcesses::~ProgramProcesses() {
  for (const DWORD copy : copies_) End(copy);
  for (const auto& [id, image] : stand_ins_) End(id);
}

DWORD ProgramProcesses::Start(const std::string& command_line) {
  const DWORD id = Launch(program_, command_line);
  if (id != 0) copies_.insert(id);
  return id;
}

DWORD ProgramProcesses::FindCopy(const std::string& command_line, DWORD other) {
  for (const Process& process : AllProcesses()) {
    if (process.id == other || !EqualsNoCase(process.image, FileNameOf(program_))) continue;
    if (ParametersOf(CommandLineOf(process.id)) != command_line) continue;
    copies_.insert(process.id);
    return process.id;
  }
  return 0;
}

bool ProgramProcesses::Runs(DWORD process) {
  const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, process);
  if (handle == nullptr) return false;
  const bool runs = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
  CloseHandle(handle);
  return runs;
}

void ProgramProcesses::End(DWORD process) {
  const HANDLE handle = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process);
  if (handle == nullptr) return;
  TerminateProcess(handle, 1);
  WaitForSingleObject(handle, 5000);
  CloseHandle(handle);
}

unsigned long long ProgramProcesses::TimeUsed(HANDLE process) {
  FILETIME start, end, kernel, user;
  if (GetProcessTimes(process, &start, &end, &kernel, &user) == 0) return 0;
  const auto number = [](const FILETIME& time) {
    return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  };
  return number(kernel) + number(user);
}

void ProgramProcesses::Look() {
  for (const Process& process : AllProcesses()) {
    if (!copies_.contains(process.parent) || !seen_.insert(process.id).second) continue;
    const std::string line = CommandLineOf(process.id);
    if (EqualsNoCase(process.image, FileNameOf(program_))) {
      started_.push_back("runas|" + program_ + "|" + ParametersOf(line));
    } else {
      started_.push_back("run|" + line);
    }
  }
}

bool ProgramProcesses::RunStandIn(const std::string& image) {
  const std::string file = std::string(kStandInFolder) + "\\" + image;
  CreateDirectoryW(Wide(kStandInFolder).c_str(), nullptr);
  CopyFileW(Wide(windows::ProgramFile()).c_str(), Wide(file).c_str(), FALSE);
  const DWORD id = Launch(file, kStandInWord);
  if (id != 0) stand_ins_.emplace(id, image);
  return id != 0;
}

void ProgramProcesses::EndStandIns(const std::string& image) {
  for (auto each = stand_ins_.begin(); each != stand_ins_.end();) {
    if (EqualsNoCase(each->second, image)) {
      End(each->first);
      each = stand_ins_.erase(each);
    } else {
      ++each;
    }
  }
}

}  // namespace quorvale::driver
