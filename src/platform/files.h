// The files and drives of a computer, as the program asks for them.
//
// Paths are UTF-8 with backslashes ("C:\Data\a.txt", "\\server\share\a.txt"). Names are matched
// without regard to case. No method shows a message or throws; failure is told by the result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quorvale {

// A moment in UTC: 100 nanosecond ticks since 1601-01-01, as Windows' FILETIME counts them.
using FileTime = std::int64_t;

// Attribute bits, with the numbers that Windows and the Zip format use.
namespace file_attribute {
inline constexpr std::uint32_t kReadOnly = 1;
inline constexpr std::uint32_t kHidden = 2;
inline constexpr std::uint32_t kSystem = 4;
inline constexpr std::uint32_t kFolder = 16;
inline constexpr std::uint32_t kArchive = 32;
}  // namespace file_attribute

struct FileInfo {
  std::string name;  // the bare name, in the case it has on disk
  std::uint32_t attributes = 0;
  std::uint64_t size = 0;  // bytes; 0 for a folder
  FileTime modified = 0;
  bool IsFolder() const { return (attributes & file_attribute::kFolder) != 0; }
};

enum class FileStatus {
  kOk,
  kNotFound,
  kDenied,  // no rights, read-only, or in use by another program
  kNoSpace,
  kFailed,  // anything else
};

// A file open for reading. Closed by destruction.
class InputFile {
 public:
  virtual ~InputFile() = default;
  // Reads up to `count` bytes. The number read, 0 at the end, -1 on an error.
  virtual std::ptrdiff_t Read(void* buffer, std::size_t count) = 0;
  // Moves to an offset from the start. False if the file cannot be moved in.
  virtual bool Seek(std::uint64_t offset) = 0;
  // The size in bytes now.
  virtual std::uint64_t Size() const = 0;
};

// A file open for writing.
class OutputFile {
 public:
  virtual ~OutputFile() = default;  // closes; errors of that close are not told
  // Writes all `count` bytes, or tells why not.
  virtual FileStatus Write(const void* buffer, std::size_t count) = 0;
  // Moves the write position, so that bytes already written can be rewritten.
  virtual bool Seek(std::uint64_t offset) = 0;
  // Hands everything to the system and closes. kOk only if every byte is accepted.
  virtual FileStatus Close() = 0;
};

enum class DriveKind {
  kUnknown = 0,
  kNoRoot = 1,
  kRemovable = 2,
  kFixed = 3,
  kRemote = 4,
  kCdRom = 5,
  kRamDisk = 6
};  // the numbers of GetDriveTypeA

struct DiskSpace {
  std::uint64_t free_bytes = 0;
  std::uint64_t total_bytes = 0;
};

class Files {
 public:
  virtual ~Files() = default;

  // What stands at a path, file or folder. Nothing if there is nothing. A trailing "\" is allowed.
  virtual std::optional<FileInfo> Stat(const std::string& path) = 0;
  // The entries of a folder without "." and "..", in the file system's order. Empty on failure.
  virtual std::vector<FileInfo> List(const std::string& folder) = 0;
  // True if the entries of a folder can be read: an empty list does not tell.
  virtual bool CanList(const std::string& folder) = 0;

  // Null if the file is missing or cannot be opened.
  virtual std::unique_ptr<InputFile> OpenRead(const std::string& path) = 0;
  // Creates the file or empties an existing one. Null on failure, with the reason in `status`.
  virtual std::unique_ptr<OutputFile> Create(const std::string& path,
                                             FileStatus* status = nullptr) = 0;

  // Makes one folder; its parent must exist. kOk also if the folder is there already.
  virtual FileStatus MakeFolder(const std::string& path) = 0;
  // Removes a file; `force` removes a read-only one too.
  virtual FileStatus RemoveFile(const std::string& path, bool force) = 0;
  // Removes one empty folder; `force` removes a read-only one too.
  virtual FileStatus RemoveFolder(const std::string& path, bool force) = 0;
  // Gives `from` the name `to`; a file of that name is replaced in one step, so that `to` is at
  // every moment the whole old or the whole new file. Both lie on one drive.
  virtual FileStatus Replace(const std::string& from, const std::string& to) = 0;

  virtual FileStatus SetModified(const std::string& path, FileTime modified) = 0;
  // Sets the read-only, hidden, system and archive bits.
  virtual FileStatus SetAttributes(const std::string& path, std::uint32_t attributes) = 0;

  // The short ("8.3") form of an existing path; the path itself where there is none.
  virtual std::string ShortPath(const std::string& path) = 0;

  // `drive` is "C:" or "C:\".
  virtual DriveKind KindOfDrive(const std::string& drive) = 0;
  virtual bool DriveExists(const std::string& drive) = 0;
  // The space of the drive or share that holds `path`. Nothing if it cannot be read.
  virtual std::optional<DiskSpace> Space(const std::string& path) = 0;
};

}  // namespace quorvale
