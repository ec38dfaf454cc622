#include "program_processes.h"

#include <functional>

#include "base/paths.h"
#include "base/text.h"
#include "platform/windows/system_info.h"
#include "platform/windows/text_calls.h"

namespace quorvale::driver {
namespace {

using windows::FromWide;
using windows::Wide;

constexpr char kStandInFolder[] = "C:\\stand-ins";
constexpr char kProgramName[] = "Quorvale.exe";
constexpr char kGate[] = "QuorvaleGate";

// The command line that a process was started with, read where the system keeps it in the process;
// "" while the process is being made.
std::string CommandLineOf(DWORD process) {
  using Query = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
  struct BasicFacts {
    void* unused;
    char* environment_block;
    void* more[4];
  };
  constexpr size_t kParameters = sizeof(void*) == 4 ? 0x10 : 0x20;
  constexpr size_t kLine = sizeof(void*) == 4 ? 0x40 : 0x70;
  constexpr size_t kTextOfLine = sizeof(void*);
  const auto query = windows::LookUp<Query>("ntdll.dll", "NtQueryInformationProcess");
  const HANDLE handle = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process);
  if (query == nullptr || handle == nullptr) return "";
  BasicFacts facts = {};
  char* parameters = nullptr;
  USHORT bytes = 0;
  char* place = nullptr;
  std::wstring text;
  const bool found =
      query(handle, 0, &facts, sizeof(facts), nullptr) >= 0 &&
      ReadProcessMemory(handle, facts.environment_block + kParameters, &parameters,
                        sizeof(parameters), nullptr) != 0 &&
      ReadProcessMemory(handle, parameters + kLine, &bytes, sizeof(bytes), nullptr) != 0 &&
      ReadProcessMemory(handle, parameters + kLine + kTextOfLine, &place, sizeof(place), nullptr) !=
          0;
  if (found) {
    text.resize(bytes / sizeof(wchar_t));
    if (ReadProcessMemory(handle, place, text.data(), bytes, nullptr) == 0) text.clear();
  }
  CloseHandle(handle);
  // The place is there before the text is in it.
  if (text.find(L'\0') != std::wstring::npos) text.clear();
  return FromWide(text);
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

// `before_it_runs` is called when the process is made and its file no longer needed.
DWORD Launch(const std::string& file, const std::string& parameters,
             const std::function<void()>& before_it_runs = nullptr) {
  std::wstring line = Wide("\"" + file + "\"" + (parameters.empty() ? "" : " " + parameters));
  const std::wstring folder = Wide(ParentFolder(file));
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE,
                     before_it_runs ? CREATE_SUSPENDED : 0, nullptr, folder.c_str(), &startup,
                     &process) == 0) {
    return 0;
  }
  if (before_it_runs) {
    before_it_runs();
    ResumeThread(process.hThread);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

}  // namespace

ProgramProcesses::~ProgramProcesses() {
  for (const DWORD copy : copies_) End(copy);
  for (const DWORD gate : gates_) End(gate);
  for (const auto& [id, image] : stand_ins_) End(id);
  if (gate_ != nullptr) CloseHandle(gate_);
}

DWORD ProgramProcesses::Start(const std::string& command_line) {
  PutInPlace(Place::kProgram);
  if (gate_ != nullptr) ResetEvent(gate_);
  const DWORD id = Launch(program_, command_line, [this] {
    PutInPlace(refuse_restarts_ ? Place::kNothing : Place::kGate);
  });
  if (id != 0) {
    copies_.insert(id);
    seen_.insert(id);
  }
  return id;
}

DWORD ProgramProcesses::StartBeside(const std::string& command_line) {
  PutInPlace(Place::kProgram);
  const DWORD id = Launch(program_, command_line);
  if (id != 0) {
    copies_.insert(id);
    seen_.insert(id);
  }
  return id;
}

DWORD ProgramProcesses::FindCopy(const std::string& command_line, DWORD other) {
  Look();
  for (const Process& process : AllProcesses()) {
    const bool is_copy = EqualsNoCase(process.image, FileNameOf(program_));
    if (!is_copy || process.id == other || ParametersOf(CommandLineOf(process.id)) != command_line)
      continue;
    if (gates_.contains(process.id)) {
      PutInPlace(Place::kProgram);
      SetEvent(gate_);
    } else if (gates_.contains(process.parent)) {
      copies_.insert(process.id);
      return process.id;
    }
  }
  return 0;
}

int ProgramProcesses::Copies() const {
  int copies = 0;
  for (const Process& process : AllProcesses()) {
    const bool is_copy = EqualsNoCase(process.image, FileNameOf(program_));
    if (is_copy && !gates_.contains(process.id)) ++copies;
  }
  return copies;
}

void ProgramProcesses::RefuseRestarts(bool refuse) {
  refuse_restarts_ = refuse;
  if (place_ != Place::kProgram) PutInPlace(refuse ? Place::kNothing : Place::kGate);
}

// A file whose program runs can be renamed, not removed.
void ProgramProcesses::PutInPlace(Place place) {
  if (place == place_) return;
  const std::string folder = ParentFolder(program_);
  const std::wstring file = Wide(program_);
  const std::wstring aside = Wide(folder + "\\program aside");
  if (place_ == Place::kProgram) {
    MoveFileW(file.c_str(), aside.c_str());
  } else if (place_ == Place::kGate) {
    const std::string old = folder + "\\gate " + std::to_string(++gate_files_);
    MoveFileW(file.c_str(), Wide(old).c_str());
  }
  if (place == Place::kProgram) MoveFileW(aside.c_str(), file.c_str());
  if (place == Place::kGate) {
    if (gate_ == nullptr) gate_ = CreateEventA(nullptr, TRUE, FALSE, kGate);
    CopyFileW(Wide(windows::ProgramFile()).c_str(), file.c_str(), TRUE);
  }
  place_ = place;
}

bool IsGate() { return EqualsNoCase(FileNameOf(windows::ProgramFile()), kProgramName); }

void WaitAtGate() {
  const HANDLE gate = CreateEventA(nullptr, TRUE, FALSE, kGate);
  WaitForSingleObject(gate, INFINITE);
  Launch(windows::ProgramFile(), ParametersOf(FromWide(GetCommandLineW())));
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

void ProgramProcesses::RunOnHost(const std::string& file, const std::string& parameters) {
  Launch("Z:" + ReplaceAll(file, "/", "\\"), parameters);
}

void ProgramProcesses::Look() {
  for (const Process& process : AllProcesses()) {
    // A copy counts as the program's own start although its parent may have ended by now.
    const bool is_copy = EqualsNoCase(process.image, FileNameOf(program_));
    if (!is_copy && !copies_.contains(process.parent)) continue;
    if (gates_.contains(process.parent)) continue;
    // One that is just being made has no name or no line yet: the next look reads them.
    if (seen_.contains(process.id) || process.image.empty()) continue;
    if (is_copy) gates_.insert(process.id);
    const std::string line = CommandLineOf(process.id);
    if (line.empty()) continue;
    seen_.insert(process.id);
    if (is_copy) {
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
