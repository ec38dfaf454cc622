// The files of a machine folder. Each drive is a host folder that no path leaves: ".." is resolved
// inside it, and links of the host that point outside are not followed. A link to a folder is
// followed when a path names it, but no listing shows it, so that no walk goes round in circles.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/host/drives.h"
#include "platform/host/folder_cache.h"
#include "platform/host/machine_folder.h"
#include "platform/host/open_files.h"
#include "platform/host/path_walk.h"
#include "platform/host/stored_attributes.h"

namespace quorvale::host {

class HostFiles : public Files {
 public:
  // `extended`: what keeps the attributes of files; null: the host's extended attributes.
  explicit HostFiles(const MachineFolder& machine,
                     std::unique_ptr<ExtendedAttribute> extended = nullptr);

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

  // The host path behind a machine path, also of a file that is yet to be made in a folder that
  // stands; "" if there is none.
  std::string HostPath(const std::string& path);

  // What else the computer can be. A drive comes (in the host folder `folder`, which stands) or
  // goes.
  void SetDrive(char letter, DriveKind kind, const std::string& folder);
  void RemoveDrive(char letter);
  // A share ("\\\\server\\share") answers, from a host folder that stands, or is silent.
  void SetShare(const std::string& share, const std::string& folder);
  void RemoveShare(const std::string& share);
  // The free bytes of a drive from now on; nothing: what the host has.
  void SetFreeBytes(char letter, std::optional<std::uint64_t> bytes);

 private:
  // The name, attributes, size and time of what stands there. False if that is neither a file nor
  // a folder.
  bool Describe(const Place& place, FileInfo* info);
  // Whether a file may be created here, and how large the one is that it replaces.
  FileStatus MayBeWritten(const Place& place, std::uint64_t* old_size);
  // Whether `source` may take the name `to`, where `target` is; gives the target the new name's
  // case, and the size of the file that is replaced.
  FileStatus PrepareReplace(const Place& source, const std::string& to, Place* target,
                            std::uint64_t* old_size);
  FileStatus RemoveHostFolder(const Place& place);
  // True if this program has the file open, so that it cannot be removed or replaced.
  bool IsHeld(const Place& place) const;

  Drives drives_;
  FolderCache cache_;
  PathWalk walk_;
  StoredAttributes attributes_;
  std::shared_ptr<OpenFiles> open_;
};

// "/home/x/a.obk", or a path from the working folder, as the machine names it: "Z:\home\x\a.obk".
// A path with a drive letter or of a share is returned as it is.
std::string MachinePathOf(const std::string& path);

FileTime ToFileTime(const struct timespec& time);
struct timespec FromFileTime(FileTime time);

}  // namespace quorvale::host
