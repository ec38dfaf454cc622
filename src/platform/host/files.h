// The files of a machine folder. Each drive is a host folder that no path leaves: ".." is resolved
// inside it, and links of the host that point outside are not followed. A link to a folder is
// followed when a path names it, but no listing shows it, so that no walk goes round in circles.
#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/host/folder_cache.h"
#include "platform/host/machine_folder.h"

namespace quorvale::host {

class HostFiles : public Files {
 public:
  explicit HostFiles(const MachineFolder& machine);

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
  std::string ShortPath(const std::string& path) override;
  DriveKind KindOfDrive(const std::string& drive) override;
  bool DriveExists(const std::string& drive) override;
  std::optional<DiskSpace> Space(const std::string& path) override;

  // The host path behind a machine path, also of a file that is yet to be made in a folder that
  // stands; "" if there is none.
  std::string HostPath(const std::string& path);

  // What tests arrange. A drive comes (in the host folder `folder`, which stands) or goes.
  void SetDrive(char letter, DriveKind kind, const std::string& folder);
  void RemoveDrive(char letter);
  // A share ("\\\\server\\share") answers, from a host folder that stands, or is silent.
  void SetShare(const std::string& share, const std::string& folder);
  void RemoveShare(const std::string& share);
  // The free bytes of a drive from now on; nothing: what the host has.
  void SetFreeBytes(char letter, std::optional<std::uint64_t> bytes);
  // Another program holds the file open: it can be neither read, written nor removed.
  void SetInUse(const std::string& path, bool in_use);
  // Reading the file fails once this many bytes were read.
  void FailReadsAfter(const std::string& path, std::uint64_t bytes);
  // Keeps attributes as on file systems that have no extended attributes.
  void UseAttributesFile() { use_attributes_file_ = true; }
  // How often a folder was read from the host.
  int folder_reads() const { return cache_.reads(); }

  struct Drive {
    DriveKind kind = DriveKind::kFixed;
    std::string root;  // host path without links; "" without a medium
    std::optional<std::uint64_t> free_bytes;
    std::uint64_t total_bytes = 0;  // of a drive with free_bytes
    bool read_only = false;         // an old disk: nothing is ever written on it

    // Takes bytes off the free ones. False if there are not so many.
    bool Take(std::uint64_t bytes);
    void GiveBack(std::uint64_t bytes);
  };

  // The files that this program itself has open, by host path. As on Windows, they can be neither
  // removed nor replaced, and one that is being written cannot be opened for writing again.
  struct OpenFiles {
    std::multiset<std::string> read;
    std::multiset<std::string> written;
    bool Holds(const std::string& host) const {
      return read.count(host) != 0 || written.count(host) != 0;
    }
  };

 private:
  // Where a path leads.
  struct Place {
    Drive* drive = nullptr;
    std::string parent;  // host path of the folder; "" for the drive's root
    std::string name;    // in the case it has on disk, or as it was asked for
    std::string host;    // host path of what stands there, behind any link
    bool exists = false;
    bool is_link = false;
    bool blocked = false;  // a link that leads outside, or nowhere
  };

  // A folder that a path named exactly as it stands, with no link on the way: another path into it
  // need not be walked from the drive on, as long as this very folder stands there.
  struct WalkedFolder {
    std::string path;  // of the machine, with the last "\\"; "" if there is none
    std::string host;
    Drive* drive = nullptr;
    dev_t device = 0;
    ino_t number = 0;
  };

  Drive* FindDrive(const std::string& path);
  // Looks for one name in a folder. Nothing below what does not exist.
  bool Step(const std::string& asked, Place* place);
  // Whether the folder that was walked last is the one of this path, and still stands.
  bool WasWalked(const std::string& folder) const;
  void RememberWalk(const std::string& folder, const Place& place);
  // Nothing if a folder on the way does not exist.
  std::optional<Place> Resolve(const std::string& path);
  // Follows the link at a place. False if it leads outside the drive.
  bool FollowLink(Place* place);
  // Where a link of an old disk leads that names a place outside of it as its own computer saw it;
  // "" if that is on no old disk.
  std::string InsideDisk(const Place& place);
  std::uint32_t AttributesOf(const Drive& drive, const std::string& parent, const std::string& name,
                             const std::string& host, const struct stat& info);
  bool Describe(const Place& place, FileInfo* info);
  bool IsReadOnly(const Place& place);
  FileStatus StoreAttributes(const Place& place, std::uint32_t attributes, bool is_folder);
  FileStatus StoreInAttributesFile(const std::string& parent, const std::string& name,
                                   std::optional<std::uint32_t> attributes);
  // The attributes that kAttributesFile has for a name, as the folder was listed last.
  std::optional<std::uint32_t> StoredInFile(const std::string& parent, const std::string& name);
  FileStatus RemoveHostFolder(const Place& place);

  // True if someone has the file open, so that it cannot be removed or replaced.
  bool IsHeld(const std::string& host) const {
    return in_use_.count(host) != 0 || open_->Holds(host);
  }

  std::map<char, Drive> drives_;
  std::shared_ptr<OpenFiles> open_ = std::make_shared<OpenFiles>();
  std::map<std::string, Drive> shares_;  // by folded name
  WalkedFolder walked_;                  // the last one
  FolderCache cache_;
  std::set<std::string> in_use_;                      // host paths
  std::map<std::string, std::uint64_t> read_faults_;  // by host path
  bool use_attributes_file_ = false;
  int links_followed_ = 0;  // by InsideDisk, one behind another
};

// "/home/x/a.obk", or a path from the working folder, as the machine names it: "Z:\home\x\a.obk".
// A path with a drive letter or of a share is returned as it is.
std::string MachinePathOf(const std::string& path);

FileTime ToFileTime(const struct timespec& time);
struct timespec FromFileTime(FileTime time);

}  // namespace quorvale::host
