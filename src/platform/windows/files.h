// Files and drives of the running system. Files are opened by their Unicode names on every system
// that has them, so a name outside of the code page is never lost.
#pragma once

#include "platform/files.h"

namespace quorvale::windows {

class WindowsFiles : public Files {
 public:
  // Turns off the system's own boxes about drives that are not ready.
  WindowsFiles();

  std::optional<FileInfo> Stat(const std::string& path) override;
  std::vector<FileInfo> List(const std::string& folder) override;
  bool CanList(const std::string& folder) override;
  std::unique_ptr<InputFile> OpenRead(const std::string& path) override;
  std::unique_ptr<OutputFile> Create(const std::string& path, FileStatus* status) override;
  FileStatus MakeFolder(const std::string& path) override;
  FileStatus RemoveFile(const std::string& path, bool force) override;
  FileStatus RemoveFolder(const std::string& path, bool force) override;
  FileStatus Replace(const std::string& from, const std::string& to) override;
  FileStatus SetModified(const std::string& path, FileTime modified) override;
  FileStatus SetAttributes(const std::string& path, std::uint32_t attributes) override;
  std::string ShortPath(const std::string& path) override;
  DriveKind KindOfDrive(const std::string& drive) override;
  bool DriveExists(const std::string& drive) override;
  std::optional<DiskSpace> Space(const std::string& path) override;
};

}  // namespace quorvale::windows
