#include "platform/windows/system_info.h"

#include <algorithm>

#include "base/paths.h"
#include "platform/windows/processes.h"
#include "platform/windows/random_bytes.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {

LocalTime FromSystemTime(const SYSTEMTIME& time) {
  LocalTime local;
  local.year = time.wYear;
  local.month = time.wMonth;
  local.day = time.wDay;
  local.hour = time.wHour;
  local.minute = time.wMinute;
  local.second = time.wSecond;
  local.weekday = time.wDayOfWeek + 1;
  return local;
}

namespace {

// The text behind the program's own name, which is in quotes if it holds a blank.
std::string Arguments(const std::string& line) {
  size_t end = 0;
  bool quoted = false;
  while (end < line.size() && (quoted || (line[end] != ' ' && line[end] != '\t'))) {
    if (line[end] == '"') quoted = !quoted;
    ++end;
  }
  const size_t start = line.find_first_not_of(" \t", end);
  return start == std::string::npos ? "" : line.substr(start);
}

}  // namespace

std::string ProgramFile() {
  if (HasUnicode()) {
    std::wstring path(1024, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return FromWide(path);
  }
  std::string path(1024, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return windows::FromAnsi(path);
}

WindowsSystemInfo::~WindowsSystemInfo() {
  if (mutex_ != nullptr) CloseHandle(mutex_);
}

SystemVersion WindowsSystemInfo::Version() {
  // The older systems know the shorter record only.
  for (const DWORD size : {sizeof(OSVERSIONINFOEXA), sizeof(OSVERSIONINFOA)}) {
    OSVERSIONINFOEXA version = {};
    version.dwOSVersionInfoSize = size;
    if (GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version)) != 0) {
      return {static_cast<int>(version.dwPlatformId), static_cast<int>(version.dwMajorVersion),
              static_cast<int>(version.dwMinorVersion), true};
    }
  }
  return {0, 0, 0, false};
}

std::string WindowsSystemInfo::UserName() {
  constexpr DWORD kLength = 512;
  DWORD length = kLength;
  if (HasUnicode()) {
    wchar_t name[kLength] = L"";
    return GetUserNameW(name, &length) != 0 ? FromWide(name) : "";
  }
  char name[kLength] = "";
  return GetUserNameA(name, &length) != 0 ? windows::FromAnsi(name) : "";
}

std::string WindowsSystemInfo::ComputerName() {
  DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
  char name[MAX_COMPUTERNAME_LENGTH + 1] = "";
  return GetComputerNameA(name, &length) != 0 ? windows::FromAnsi(name) : "";
}

std::string WindowsSystemInfo::Environment(const std::string& name) {
  if (HasUnicode()) {
    const std::wstring wide = Wide(name);
    std::wstring value(GetEnvironmentVariableW(wide.c_str(), nullptr, 0), L'\0');
    value.resize(
        GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return FromWide(value);
  }
  const std::string ansi = windows::Ansi(name);
  std::string value(GetEnvironmentVariableA(ansi.c_str(), nullptr, 0), '\0');
  value.resize(
      GetEnvironmentVariableA(ansi.c_str(), value.data(), static_cast<DWORD>(value.size())));
  return windows::FromAnsi(value);
}

std::string WindowsSystemInfo::ProgramFolder() { return ParentFolder(ProgramFile()); }

std::string WindowsSystemInfo::CommandLine() {
  return Arguments(HasUnicode() ? FromWide(GetCommandLineW())
                                : windows::FromAnsi(GetCommandLineA()));
}

bool WindowsSystemInfo::PreviousInstanceRuns() { return FindOtherInstance() != 0; }

bool WindowsSystemInfo::HoldInstanceMutex(const std::string& name) {
  const HANDLE mutex = CreateMutexA(nullptr, TRUE, windows::Ansi(name).c_str());
  if (GetLastError() != ERROR_ALREADY_EXISTS) {
    mutex_ = mutex;
    return true;
  }
  if (mutex != nullptr) {
    ReleaseMutex(mutex);
    CloseHandle(mutex);
  }
  return false;
}

LocalTime WindowsSystemInfo::Now() {
  SYSTEMTIME time;
  GetLocalTime(&time);
  return FromSystemTime(time);
}

LocalTime WindowsSystemInfo::ToLocal(FileTime time) {
  FILETIME universal, local;
  universal.dwLowDateTime = static_cast<DWORD>(time & 0xFFFFFFFF);
  universal.dwHighDateTime = static_cast<DWORD>(time >> 32);
  SYSTEMTIME parts;
  if (FileTimeToLocalFileTime(&universal, &local) == 0 ||
      FileTimeToSystemTime(&local, &parts) == 0) {
    return {};
  }
  return FromSystemTime(parts);
}

std::uint64_t WindowsSystemInfo::Ticks() {
  const std::uint32_t now = GetTickCount();
  if (now < last_ticks_) ticks_before_ += std::uint64_t{1} << 32;
  last_ticks_ = now;
  return ticks_before_ + now;
}

void WindowsSystemInfo::Sleep(int milliseconds) {
  ::Sleep(static_cast<DWORD>(std::max(milliseconds, 0)));
}

std::string WindowsSystemInfo::RandomBytes(std::size_t count) {
  const std::string bytes = SystemRandomBytes(count);
  return bytes.size() == count ? bytes : JitterBytes(count);
}

std::string WindowsSystemInfo::TimeText(const LocalTime& time) {
  SYSTEMTIME parts = {};
  parts.wYear = static_cast<WORD>(time.year);
  parts.wMonth = static_cast<WORD>(time.month);
  parts.wDay = static_cast<WORD>(time.day);
  parts.wHour = static_cast<WORD>(time.hour);
  parts.wMinute = static_cast<WORD>(time.minute);
  parts.wSecond = static_cast<WORD>(time.second);
  char text[128] = "";
  GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &parts, nullptr, text, sizeof(text));
  return windows::FromAnsi(text);
}

std::string WindowsSystemInfo::WeekdayName(int weekday) {
  // The system's day names start with Monday, ours with Sunday as 1.
  return LocaleText(LOCALE_SDAYNAME1 + (weekday + 5) % 7);
}

std::string WindowsSystemInfo::LocaleText(int type) {
  char text[99] = "";
  GetLocaleInfoA(LOCALE_USER_DEFAULT, static_cast<LCTYPE>(type), text, sizeof(text));
  return windows::FromAnsi(text);
}

std::string WindowsSystemInfo::SystemFolder() {
  char path[MAX_PATH] = "";
  GetSystemDirectoryA(path, sizeof(path));
  return WithoutBackslash(windows::FromAnsi(path));
}

std::string WindowsSystemInfo::ErrorText(int number) {
  char text[512] = "";
  FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                 static_cast<DWORD>(number), 0, text, sizeof(text), nullptr);
  return windows::FromAnsi(text);
}

std::string WindowsSystemInfo::ToAnsi(const std::string& utf8) { return windows::Ansi(utf8); }

std::string WindowsSystemInfo::FromAnsi(const std::string& bytes) {
  return windows::FromAnsi(bytes);
}

}  // namespace quorvale::windows
