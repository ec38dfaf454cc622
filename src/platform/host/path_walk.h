// The way from a machine path to what stands on the host. Names are found without regard to case,
// "." and ".." are resolved inside the drive, and a link that leads outside of it leads nowhere.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "platform/host/drives.h"
#include "platform/host/folder_cache.h"

namespace quorvale::host {

// Where a path leads.
struct Place {
  Drive* drive = nullptr;
  std::string parent;  // host path of the folder; "" for the drive's root
  std::string name;    // in the case it has on disk, or as it was asked for
  std::string host;    // host path of what stands there, behind any link
  bool exists = false;
  bool is_link = false;
  bool blocked = false;  // a link that leads outside, or nowhere

  // The host path of the name itself, which may be a link.
  std::string Entry() const { return JoinHostPath(parent, name); }
};

class PathWalk {
 public:
  // Both must live as long as this object.
  PathWalk(Drives& drives, FolderCache& cache) : drives_(drives), cache_(cache) {}

  // Nothing if there is no such drive or a folder on the way does not exist.
  std::optional<Place> Resolve(const std::string& path);
  // Follows the link at a place. False if it leads outside the drive.
  bool FollowLink(Place* place);
  // The drives have changed.
  void Forget() { walked_ = {}; }

 private:
  // A folder that a path named exactly as it stands, with no link on the way: another path into it
  // need not be walked from the drive on, as long as this very folder stands there.
  struct WalkedFolder {
    std::string path;  // of the machine, with the last "\\"; "" if there is none
    std::string host;
    Drive* drive = nullptr;
    dev_t device = 0;
    ino_t number = 0;
  };

  // Where a link of an old disk leads that names a place outside of it as its own computer saw it;
  // "" if that is on no old disk.
  std::string InsideDisk(const Place& place);
  // Looks for one name in a folder. Nothing below what does not exist.
  bool Step(const std::string& asked, Place* place);
  // All names from the drive on; `folder` is the path without its last name, "" if that is none.
  std::optional<Place> WalkFromDrive(const std::string& path, const std::string& folder);
  // Whether the folder that was walked last is the one of this path, and still stands.
  bool WasWalked(const std::string& folder) const;
  void RememberWalk(const std::string& folder, const Place& place);

  Drives& drives_;
  FolderCache& cache_;
  WalkedFolder walked_;     // the last one
  int links_followed_ = 0;  // by InsideDisk, one behind another
};

// The last name of a path as a new file gets it; "" if there is none.
std::string NewNameOf(const std::string& path);

// True for a name that a new file or folder can have.
bool IsNewName(const std::string& name);

}  // namespace quorvale::host
