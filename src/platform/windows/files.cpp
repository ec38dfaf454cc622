#include "platform/windows/files.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

// One call moves at most this much; the calls count in 32 bits.
constexpr std::size_t kLargestTransfer = 1 << 24;
// From about here on the system asks for the long form of a path.
constexpr std::size_t kLongPath = 240;

std::wstring WidePath(const std::string& path) {
  if (path.size() < kLongPath) return Wide(path);
  if (IsNetworkPath(path)) return L"\\\\?\\UNC" + Wide(path.substr(1));
  if (path.size() > 2 && path[1] == ':' && path[2] == '\\') return L"\\\\?\\" + Wide(path);
  return Wide(path);
}

HANDLE OpenHandle(const std::string& path, DWORD access, DWORD share, DWORD disposition,
                  DWORD flags) {
  if (HasUnicode()) {
    return CreateFileW(WidePath(path).c_str(), access, share, nullptr, disposition, flags, nullptr);
  }
  return CreateFileA(Ansi(path).c_str(), access, share, nullptr, disposition, flags, nullptr);
}

DWORD Attributes(const std::string& path) {
  return HasUnicode() ? GetFileAttributesW(WidePath(path).c_str())
                      : GetFileAttributesA(Ansi(path).c_str());
}

bool ChangeAttributes(const std::string& path, DWORD attributes) {
  return (HasUnicode() ? SetFileAttributesW(WidePath(path).c_str(), attributes)
                       : SetFileAttributesA(Ansi(path).c_str(), attributes)) != 0;
}

bool Delete(const std::string& path) {
  return (HasUnicode() ? DeleteFileW(WidePath(path).c_str()) : DeleteFileA(Ansi(path).c_str())) !=
         0;
}

bool Move(const std::string& from, const std::string& to) {
  return (HasUnicode() ? MoveFileW(WidePath(from).c_str(), WidePath(to).c_str())
                       : MoveFileA(Ansi(from).c_str(), Ansi(to).c_str())) != 0;
}

FileStatus LastStatus() {
  switch (GetLastError()) {
    case ERROR_SUCCESS:
      return FileStatus::kFailed;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return FileStatus::kNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return FileStatus::kDenied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return FileStatus::kNoSpace;
    default:
      return FileStatus::kFailed;
  }
}

FileStatus StatusOf(bool done) { return done ? FileStatus::kOk : LastStatus(); }

template <class FindData>
FileInfo InfoFrom(const FindData& found, std::string name) {
  FileInfo info;
  info.name = std::move(name);
  info.attributes = found.dwFileAttributes;
  if (!info.IsFolder()) {
    info.size = (static_cast<std::uint64_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
  }
  info.modified = (static_cast<FileTime>(found.ftLastWriteTime.dwHighDateTime) << 32) |
                  found.ftLastWriteTime.dwLowDateTime;
  return info;
}

FileInfo InfoFrom(const WIN32_FIND_DATAW& found) {
  return InfoFrom(found, FromWide(found.cFileName));
}
FileInfo InfoFrom(const WIN32_FIND_DATAA& found) {
  return InfoFrom(found, FromAnsi(found.cFileName));
}

bool HasWildcard(const std::string& path) { return path.find_first_of("*?") != std::string::npos; }

// What a pattern finds, one FileInfo for each, "." and ".." too.
std::vector<FileInfo> Find(const std::string& pattern) {
  std::vector<FileInfo> found;
  if (HasUnicode()) {
    WIN32_FIND_DATAW data;
    const HANDLE handle = FindFirstFileW(WidePath(pattern).c_str(), &data);
    if (handle == INVALID_HANDLE_VALUE) return found;
    do {
      found.push_back(InfoFrom(data));
    } while (FindNextFileW(handle, &data) != 0);
    FindClose(handle);
    return found;
  }
  WIN32_FIND_DATAA data;
  const HANDLE handle = FindFirstFileA(Ansi(pattern).c_str(), &data);
  if (handle == INVALID_HANDLE_VALUE) return found;
  do {
    found.push_back(InfoFrom(data));
  } while (FindNextFileA(handle, &data) != 0);
  FindClose(handle);
  return found;
}

// "C:\" or "\\server\share\": what the drive calls ask for.
std::string RootOf(const std::string& path) {
  if (!IsNetworkPath(path)) return WithBackslash(path.substr(0, 2));
  const size_t server_end = path.find('\\', 2);
  if (server_end == std::string::npos) return WithBackslash(path);
  return WithBackslash(path.substr(0, path.find('\\', server_end + 1)));
}

class WindowsInputFile : public InputFile {
 public:
  explicit WindowsInputFile(HANDLE handle) : handle_(handle) {}
  ~WindowsInputFile() override { CloseHandle(handle_); }

  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    DWORD read = 0;
    const DWORD wanted = static_cast<DWORD>(std::min(count, kLargestTransfer));
    if (ReadFile(handle_, buffer, wanted, &read, nullptr) == 0) return -1;
    return static_cast<std::ptrdiff_t>(read);
  }

  bool Seek(std::uint64_t offset) override {
    LONG high = static_cast<LONG>(offset >> 32);
    const DWORD low =
        SetFilePointer(handle_, static_cast<LONG>(offset & 0xFFFFFFFF), &high, FILE_BEGIN);
    return low != INVALID_SET_FILE_POINTER || GetLastError() == NO_ERROR;
  }

  std::uint64_t Size() const override {
    DWORD high = 0;
    const DWORD low = GetFileSize(handle_, &high);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) return 0;
    return (static_cast<std::uint64_t>(high) << 32) | low;
  }

 private:
  HANDLE handle_;
};

class WindowsOutputFile : public OutputFile {
 public:
  explicit WindowsOutputFile(HANDLE handle) : handle_(handle) {}
  ~WindowsOutputFile() override {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }

  FileStatus Write(const void* buffer, std::size_t count) override {
    const char* next = static_cast<const char*>(buffer);
    while (count > 0) {
      DWORD written = 0;
      const DWORD wanted = static_cast<DWORD>(std::min(count, kLargestTransfer));
      if (WriteFile(handle_, next, wanted, &written, nullptr) == 0) return LastStatus();
      if (written == 0) return FileStatus::kNoSpace;  // what a full drive answers, too
      next += written;
      count -= written;
    }
    return FileStatus::kOk;
  }

  bool Seek(std::uint64_t offset) override {
    LONG high = static_cast<LONG>(offset >> 32);
    const DWORD low =
        SetFilePointer(handle_, static_cast<LONG>(offset & 0xFFFFFFFF), &high, FILE_BEGIN);
    return low != INVALID_SET_FILE_POINTER || GetLastError() == NO_ERROR;
  }

  FileStatus Close() override {
    if (handle_ == INVALID_HANDLE_VALUE) return FileStatus::kOk;
    const bool flushed = FlushFileBuffers(handle_) != 0;
    const FileStatus status = StatusOf(flushed);
    const bool closed = CloseHandle(handle_) != 0;
    handle_ = INVALID_HANDLE_VALUE;
    return flushed && !closed ? FileStatus::kFailed : status;
  }

 private:
  HANDLE handle_;
};

}  // namespace

WindowsFiles::WindowsFiles() { SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX); }

std::optional<FileInfo> WindowsFiles::Stat(const std::string& path) {
  if (path.empty() || HasWildcard(path)) return std::nullopt;
  const std::string bare = WithoutBackslash(path);
  if (RootOf(path) == WithBackslash(path)) {  // a root has no entry that could be found
    const DWORD attributes = Attributes(RootOf(path));
    if (attributes == INVALID_FILE_ATTRIBUTES) return std::nullopt;
    FileInfo info;
    info.name = bare;
    info.attributes = attributes | file_attribute::kFolder;
    return info;
  }
  std::vector<FileInfo> found = Find(bare);
  if (found.size() != 1) return std::nullopt;
  if (bare.size() != path.size() && !found[0].IsFolder()) return std::nullopt;
  return std::move(found[0]);
}

std::vector<FileInfo> WindowsFiles::List(const std::string& folder) {
  if (folder.empty() || HasWildcard(folder)) return {};
  std::vector<FileInfo> found = Find(WithBackslash(folder) + "*");
  std::erase_if(found, [](const FileInfo& each) { return each.name == "." || each.name == ".."; });
  return found;
}

bool WindowsFiles::CanList(const std::string& folder) {
  if (folder.empty() || HasWildcard(folder)) return false;
  const std::string pattern = WithBackslash(folder) + "*";
  WIN32_FIND_DATAW wide;
  WIN32_FIND_DATAA narrow;
  const HANDLE handle = HasUnicode() ? FindFirstFileW(WidePath(pattern).c_str(), &wide)
                                     : FindFirstFileA(Ansi(pattern).c_str(), &narrow);
  // An empty root has not even an entry for itself.
  if (handle == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND;
  FindClose(handle);
  return true;
}

std::unique_ptr<InputFile> WindowsFiles::OpenRead(const std::string& path) {
  const HANDLE handle = OpenHandle(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<WindowsInputFile>(handle);
}

std::unique_ptr<OutputFile> WindowsFiles::Create(const std::string& path, FileStatus* status) {
  HANDLE handle =
      OpenHandle(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
  if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_ACCESS_DENIED) {
    // Creating over a hidden or system file is refused, emptying it is not.
    handle = OpenHandle(path, GENERIC_WRITE, FILE_SHARE_READ, TRUNCATE_EXISTING, 0);
  }
  if (status != nullptr) *status = StatusOf(handle != INVALID_HANDLE_VALUE);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<WindowsOutputFile>(handle);
}

FileStatus WindowsFiles::MakeFolder(const std::string& path) {
  const std::string bare = WithoutBackslash(path);
  const bool made = (HasUnicode() ? CreateDirectoryW(WidePath(bare).c_str(), nullptr)
                                  : CreateDirectoryA(Ansi(bare).c_str(), nullptr)) != 0;
  if (made) return FileStatus::kOk;
  const FileStatus status = LastStatus();
  const std::optional<FileInfo> there = Stat(path);
  if (!there) return status;
  return there->IsFolder() ? FileStatus::kOk : FileStatus::kFailed;
}

FileStatus WindowsFiles::RemoveFile(const std::string& path, bool force) {
  if (force) {
    const DWORD attributes = Attributes(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
      ChangeAttributes(path, attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
  }
  return StatusOf(Delete(path));
}

FileStatus WindowsFiles::RemoveFolder(const std::string& path, bool force) {
  const std::string bare = WithoutBackslash(path);
  if (force) {
    const DWORD attributes = Attributes(bare);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
      ChangeAttributes(bare, attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
  }
  return StatusOf((HasUnicode() ? RemoveDirectoryW(WidePath(bare).c_str())
                                : RemoveDirectoryA(Ansi(bare).c_str())) != 0);
}

FileStatus WindowsFiles::Replace(const std::string& from, const std::string& to) {
  if (HasUnicode()) {
    return StatusOf(MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(),
                                MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0);
  }
  // The older systems have no call that does it in one step. The old file steps aside first and
  // comes back if the new one cannot take its place.
  if (Attributes(to) == INVALID_FILE_ATTRIBUTES) return StatusOf(Move(from, to));
  const std::string aside = to + ".old";
  Delete(aside);
  if (!Move(to, aside)) return LastStatus();
  if (!Move(from, to)) {
    const FileStatus status = LastStatus();
    Move(aside, to);
    return status;
  }
  RemoveFile(aside, true);
  return FileStatus::kOk;
}

FileStatus WindowsFiles::SetModified(const std::string& path, FileTime modified) {
  const DWORD access = HasUnicode() ? FILE_WRITE_ATTRIBUTES : GENERIC_WRITE;
  const HANDLE handle =
      OpenHandle(WithoutBackslash(path), access, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING,
                 HasUnicode() ? FILE_FLAG_BACKUP_SEMANTICS : 0);
  if (handle == INVALID_HANDLE_VALUE) return LastStatus();
  FILETIME time;
  time.dwLowDateTime = static_cast<DWORD>(modified & 0xFFFFFFFF);
  time.dwHighDateTime = static_cast<DWORD>(modified >> 32);
  const FileStatus status = StatusOf(SetFileTime(handle, nullptr, nullptr, &time) != 0);
  CloseHandle(handle);
  return status;
}

FileStatus WindowsFiles::SetAttributes(const std::string& path, std::uint32_t attributes) {
  constexpr DWORD kSettable = file_attribute::kReadOnly | file_attribute::kHidden |
                              file_attribute::kSystem | file_attribute::kArchive;
  const DWORD wanted = attributes & kSettable;
  return StatusOf(
      ChangeAttributes(WithoutBackslash(path), wanted != 0 ? wanted : FILE_ATTRIBUTE_NORMAL));
}

std::string WindowsFiles::ShortPath(const std::string& path) {
  if (HasUnicode()) {
    const std::wstring wide = Wide(path);
    std::wstring result(wide.size() + 1, L'\0');
    const DWORD length =
        GetShortPathNameW(wide.c_str(), result.data(), static_cast<DWORD>(result.size()));
    if (length == 0 || length > result.size()) return path;
    return FromWide(result.substr(0, length));
  }
  const std::string ansi = Ansi(path);
  std::string result(ansi.size() + 1, '\0');
  const DWORD length =
      GetShortPathNameA(ansi.c_str(), result.data(), static_cast<DWORD>(result.size()));
  if (length == 0 || length > result.size()) return path;
  return FromAnsi(result.substr(0, length));
}

DriveKind WindowsFiles::KindOfDrive(const std::string& drive) {
  if (drive.empty()) return DriveKind::kUnknown;
  const UINT kind = GetDriveTypeA(Ansi(RootOf(drive)).c_str());
  return kind <= static_cast<UINT>(DriveKind::kRamDisk) ? static_cast<DriveKind>(kind)
                                                        : DriveKind::kUnknown;
}

bool WindowsFiles::DriveExists(const std::string& drive) {
  if (IsNetworkPath(drive)) return Attributes(RootOf(drive)) != INVALID_FILE_ATTRIBUTES;
  if (drive.empty()) return false;
  const char letter = static_cast<char>(drive[0] & ~0x20);
  if (letter < 'A' || letter > 'Z') return false;
  return (GetLogicalDrives() >> (letter - 'A') & 1) != 0;
}

std::optional<DiskSpace> WindowsFiles::Space(const std::string& path) {
  if (path.empty()) return std::nullopt;
  const std::string root = Ansi(RootOf(path));
  using SpaceCall = BOOL(WINAPI*)(LPCSTR, PULARGE_INTEGER, PULARGE_INTEGER, PULARGE_INTEGER);
  // The first Windows 95 has the older call only, which ends at 2 GiB.
  if (const auto call = LookUp<SpaceCall>("kernel32.dll", "GetDiskFreeSpaceExA")) {
    ULARGE_INTEGER free_for_user, total, free_in_all;
    if (call(root.c_str(), &free_for_user, &total, &free_in_all) == 0) return std::nullopt;
    return DiskSpace{free_for_user.QuadPart, total.QuadPart};
  }
  DWORD sectors = 0, bytes = 0, free_clusters = 0, clusters = 0;
  if (GetDiskFreeSpaceA(root.c_str(), &sectors, &bytes, &free_clusters, &clusters) == 0) {
    return std::nullopt;
  }
  const std::uint64_t cluster = static_cast<std::uint64_t>(sectors) * bytes;
  return DiskSpace{cluster * free_clusters, cluster * clusters};
}

}  // namespace quorvale::windows
