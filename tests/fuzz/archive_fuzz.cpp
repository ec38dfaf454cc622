// Any bytes as an archive: listed, tested and unpacked. What is written must lie below the folder
// that was named, and all of it together may not be more than such an archive can hold.
//
// The first byte chooses a password and how many workers there are; the rest is the file.
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "archive/archive.h"
#include "base/text.h"
#include "support/memory_platform.h"

namespace {

using namespace quorvale;  // NOLINT: this file is all about it

constexpr char kArchive[] = "C:\\in.obk";
constexpr char kTarget[] = "C:\\Out";

void Require(bool condition) {
  if (!condition) std::abort();
}

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
class FuzzFiles : public MemoryFiles {
 public:
  explicit FuzzFiles(const std::string& bytes) : size_(bytes.size()) {
    Put(kArchive, bytes);
    PutFolder(kTarget);
  }

  std::uint64_t written() const { return written_; }
  std::size_t size() const { return size_; }

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

  const std::size_t size_;
  std::uint64_t written_ = 0;
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
  MemorySystem system;
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
