// Any bytes as an archive: listed, tested and unpacked. What is written must lie below the folder
// that was named, and all of it together may not be more than such an archive can hold.
//
// The first byte chooses a password and how many workers there are; the rest is the file.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "archive/archive.h"
#include "base/text.h"

namespace {

using namespace quorvale;  // NOLINT: this file is all about it

constexpr char kArchive[] = "C:\\in.obk";
constexpr char kTarget[] = "C:\\Out";

void Require(bool condition) {
  if (!condition) std::abort();
}

class BytesInput : public InputFile {
 public:
  explicit BytesInput(const std::string& bytes) : bytes_(bytes) {}
  std::ptrdiff_t Read(void* buffer, std::size_t count) override {
    if (at_ >= bytes_.size()) return 0;
    count = std::min<std::size_t>(count, bytes_.size() - static_cast<std::size_t>(at_));
    std::memcpy(buffer, bytes_.data() + at_, count);
    at_ += count;
    return static_cast<std::ptrdiff_t>(count);
  }
  bool Seek(std::uint64_t offset) override {
    at_ = offset;
    return true;
  }
  std::uint64_t Size() const override { return bytes_.size(); }

 private:
  const std::string& bytes_;
  std::uint64_t at_ = 0;
};

class CountingOutput : public OutputFile {
 public:
  explicit CountingOutput(std::uint64_t* written) : written_(written) {}
  FileStatus Write(const void*, std::size_t count) override {
    *written_ += count;
    return FileStatus::kOk;
  }
  bool Seek(std::uint64_t) override { return true; }
  FileStatus Close() override { return FileStatus::kOk; }

 private:
  std::uint64_t* written_;
};

// One file to read; what is written is counted and forgotten.
class FuzzFiles : public Files {
 public:
  explicit FuzzFiles(std::string bytes) : bytes_(std::move(bytes)) {}

  std::uint64_t written() const { return written_; }
  std::size_t size() const { return bytes_.size(); }

  std::optional<FileInfo> Stat(const std::string& path) override {
    FileInfo info;
    info.name = "x";
    if (path == kArchive) {
      info.size = bytes_.size();
      return info;
    }
    if (path != "C:" && path != kTarget) return std::nullopt;
    info.attributes = file_attribute::kFolder;
    return info;
  }
  std::vector<FileInfo> List(const std::string&) override { return {}; }
  std::unique_ptr<InputFile> OpenRead(const std::string& path) override {
    return path == kArchive ? std::make_unique<BytesInput>(bytes_) : nullptr;
  }
  std::unique_ptr<OutputFile> Create(const std::string& path, FileStatus* status) override {
    RequireSafe(path);
    *status = FileStatus::kOk;
    return std::make_unique<CountingOutput>(&written_);
  }
  FileStatus MakeFolder(const std::string& path) override { return RequireSafe(path); }
  FileStatus RemoveFile(const std::string& path, bool) override { return RequireSafe(path); }
  FileStatus RemoveFolder(const std::string& path, bool) override { return RequireSafe(path); }
  FileStatus Replace(const std::string& from, const std::string& to) override {
    RequireSafe(from);
    return RequireSafe(to);
  }
  FileStatus SetModified(const std::string& path, FileTime) override { return RequireSafe(path); }
  FileStatus SetAttributes(const std::string& path, std::uint32_t) override {
    return RequireSafe(path);
  }
  std::string ShortPath(const std::string& path) override { return path; }
  DriveKind KindOfDrive(const std::string&) override { return DriveKind::kFixed; }
  bool DriveExists(const std::string&) override { return true; }
  std::optional<DiskSpace> Space(const std::string&) override { return std::nullopt; }

 private:
  static FileStatus RequireSafe(const std::string& path) {
    Require(path.rfind(std::string(kTarget) + "\\", 0) == 0);
    Require(path.find(':', 2) == std::string::npos);
    for (const std::string& component : Split(path, "\\")) {
      Require(!component.empty() && component != "." && component != "..");
      Require(component.back() != '.' && component.back() != ' ');
    }
    return FileStatus::kOk;
  }

  const std::string bytes_;
  std::uint64_t written_ = 0;
};

class FuzzSystem : public SystemInfo {
 public:
  SystemVersion Version() override { return {}; }
  std::string UserName() override { return ""; }
  std::string ComputerName() override { return ""; }
  std::string Environment(const std::string&) override { return ""; }
  std::string ProgramFolder() override { return ""; }
  std::string CommandLine() override { return ""; }
  bool PreviousInstanceRuns() override { return false; }
  bool HoldInstanceMutex(const std::string&) override { return true; }
  LocalTime Now() override { return {}; }
  LocalTime ToLocal(FileTime) override { return {2006, 1, 2, 3, 4, 5, 2}; }
  std::uint64_t Ticks() override { return 0; }
  void Sleep(int) override {}
  std::string RandomBytes(std::size_t count) override { return std::string(count, 'r'); }
  std::string TimeText(const LocalTime&) override { return ""; }
  std::string WeekdayName(int) override { return ""; }
  std::string ToAnsi(const std::string& utf8) override { return utf8; }
  std::string FromAnsi(const std::string& bytes) override {
    std::string text;
    for (const char c : bytes) AppendUtf8(&text, static_cast<unsigned char>(c));
    return text;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  // A key of an AES entry takes thousands of rounds, so that nothing else would get its turn.
  // Damaged ones are tried by the tests of the archive component.
  if (std::string_view(reinterpret_cast<const char*>(data), size).find("\x01\x99") !=
      std::string_view::npos) {
    return -1;
  }
  FuzzFiles files(std::string(reinterpret_cast<const char*>(data + 1), size - 1));
  FuzzSystem system;
  host::HostThreads threads;
  zip::Archive archive(files, system, threads);
  archive.archive_name = kArchive;
  archive.unzip_folder = kTarget;
  if ((data[0] & 1) != 0) archive.password = "right";
  archive.worker_threads = data[0] >= 0xF0 ? 2 : 0;  // threads are slow to start
  std::vector<zip::Entry> entries;
  archive.List(&entries);
  archive.Test();
  archive.Unzip();
  // Deflate's densest stream holds 1,032 times its size.
  Require(files.written() <= 1040 * static_cast<std::uint64_t>(files.size()));
  return 0;
}
