// Files in memory, for tests: drives that fill, files that cannot be read, that shrink, grow or
// vanish while they are read, and a count of what was written.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"

namespace quorvale::zip_test {

class MemoryFiles : public Files {
 public:
  MemoryFiles();

  // Making and looking, for the test. Parent folders are made. Without a time a file gets the next
  // second of a clock that only this moves.
  void Put(const std::string& path, const std::string& bytes, std::uint32_t attributes = 32,
           FileTime modified = 0);
  void PutFolder(const std::string& path);
  bool Has(const std::string& path) const;
  std::string Bytes(const std::string& path) const;  // "" if it is not there
  std::uint64_t UsedBytes() const { return used_; }
  // The full paths of all files, in order.
  std::vector<std::string> AllFiles() const;

  // Faults.
  // Bytes that all files together may hold; writing more gives kNoSpace.
  std::uint64_t room = ~0ull;
  // Writing fails (kFailed) once so many bytes were written; counts down.
  std::uint64_t writes_fail_after = ~0ull;
  // A read of this file fails from this offset on.
  std::map<std::string, std::uint64_t> read_fails_at;
  // Files that are there but cannot be opened, or not replaced.
  std::map<std::string, bool> locked;
  // Called after a file has taken its name from another one.
  std::function<void(const std::string& path)> after_replace;
  // Called before each read, with the path and the offset.
  std::function<void(const std::string& path, std::uint64_t offset)> before_read;
  // Asked before each change of the drive (create, write, remove, replace ...). On false nothing
  // happens: to a process that was killed it is as if it had stopped there.
  std::function<bool()> may_change;
  // Reads give at most so many bytes at once.
  std::size_t longest_read = ~std::size_t{0};
  // How the present content of a file is made smaller or larger by a test.
  void Resize(const std::string& path, std::size_t size);
  void Remove(const std::string& path);

  std::optional<FileInfo> Stat(const std::string& path) override;
  std::vector<FileInfo> List(const std::string& folder) override;
  std::unique_ptr<InputFile> OpenRead(const std::string& path) override;
  std::unique_ptr<OutputFile> Create(const std::string& path, FileStatus* status) override;
  FileStatus MakeFolder(const std::string& path) override;
  FileStatus RemoveFile(const std::string& path, bool force) override;
  FileStatus RemoveFolder(const std::string& path, bool force) override;
  FileStatus Replace(const std::string& from, const std::string& to) override;
  FileStatus SetModified(const std::string& path, FileTime modified) override;
  FileStatus SetAttributes(const std::string& path, std::uint32_t attributes) override;
  std::string ShortPath(const std::string& path) override { return path; }
  DriveKind KindOfDrive(const std::string&) override { return DriveKind::kFixed; }
  bool DriveExists(const std::string& drive) override;
  std::optional<DiskSpace> Space(const std::string& path) override;

 private:
  friend class MemoryInput;
  friend class MemoryOutput;
  struct Node {
    FileInfo info;
    std::string path;
    std::shared_ptr<std::string> bytes;
  };

  static std::string KeyOf(const std::string& path);
  const Node* Find(const std::string& path) const;
  bool MayChange() const { return !may_change || may_change(); }

  std::map<std::string, Node> nodes_;
  std::uint64_t used_ = 0;
  FileTime clock_ = 128'000'000'000'000'000;
};

}  // namespace quorvale::zip_test
