// The repair of a mail profile that comes from another computer or user, so that it opens the
// restored data files.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>

#include "core/program/program.h"

namespace quorvale {

// The data files that a run puts back: from the path that the backup knew to the file that was
// restored, and to the path by which the profiles are to open it. Paths are compared without regard
// to case.
class RestoredFiles {
 public:
  void Add(const std::string& old_path, const std::string& new_path,
           const std::string& path_in_profile);
  // The restored file of an old path, or "".
  std::string Find(const std::string& old_path) const;
  // What the profiles are to hold instead of an old path, or "".
  std::string PathInProfile(const std::string& old_path) const;
  // True if an old path was given this very file.
  bool Taken(const std::string& new_path) const;
  void Clear();

 private:
  struct Place {
    std::string file;
    std::string path_in_profile;
  };
  std::map<std::string, Place> by_old_path_;
  std::set<std::string> taken_;
};

// Paths that a repair wrote for files that are not among the restored ones: from the old path, in
// lower case, to the new one.
using PointedPaths = std::map<std::string, std::string>;

// Points the data file sections of a profile into `folder`. Sections that `restored` knows get the
// path that it says, in whatever form they hold their path; a section of which `keeps` says so
// stays as it is.
PointedPaths RepairOutlookProfile(
    Program& program, const std::string& profile, const std::string& folder,
    const RestoredFiles& restored = {},
    const std::function<bool(const std::string& old_path)>& keeps = nullptr);

}  // namespace quorvale
