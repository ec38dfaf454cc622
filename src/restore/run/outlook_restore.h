// Microsoft Outlook: profiles and settings are imported, data files and loose files go to their
// fixed homes, and the profiles are pointed at the files that were restored.
#pragma once

#include <set>
#include <string>

#include "restore/run/outlook_repair.h"
#include "restore/run/restore_tools.h"

namespace quorvale {

class OutlookRestore {
 public:
  explicit OutlookRestore(const RestoreTools& tools) : tools_(tools) {}

  // All items of the product, until a stop.
  void RestoreOutlook();
  void RestoreOutlookItem(const RestoreRow& row);
  // Points an imported profile at the data files: at those that come back, or into `folder` where
  // they are to stay in the restore folder.
  void RewriteProfilePaths(const std::string& profile, const std::string& folder);

 private:
  void PlanDataFiles();
  void PlanDataFile(const std::string& old_path, const std::string& folder,
                    const std::string& folder_in_profile);
  void RestoreDataFile(const RestoreOrigin& origin);
  void RestoreLooseFile(const RestoreOrigin& origin);
  // Another item brought the same file.
  void NoteRestoredBefore(const RestoreOrigin& origin);
  // Where the files are to stay in the restore folder: puts there what else the profiles were
  // pointed at.
  void KeepPointedFiles();
  // Where the profiles look for their data files on this system.
  std::string DataFolder() const;
  // Where Outlook keeps the files of a group, "" for no such group.
  std::string HomeOfGroup(const std::string& path);
  // A new profile begins the table of data files anew.
  void NoteProfile();

  RestoreTools tools_;
  RestoredFiles restored_;           // the data files, by their paths in the backup
  std::set<std::string> extracted_;  // the restored files that stand already, in lower case
  PointedPaths pointed_;
  bool profile_seen_ = false;
  std::string repaired_;  // the profile that was repaired last
};

}  // namespace quorvale
