// The repair of a mail profile that comes from another computer or user, so that it opens the
// restored data files.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "core/program/program.h"

namespace quorvale {

// The data files that a run puts back: from the path that the backup knew to the file that was
// restored. Paths are compared without regard to case.
class RestoredFiles {
 public:
  void Add(const std::string& old_path, const std::string& new_path);
  // The restored file of an old path, or "".
  std::string Find(const std::string& old_path) const;
  // True if another old path was given this very file.
  bool Taken(const std::string& new_path) const;
  void Clear();

 private:
  std::map<std::string, std::string> by_old_path_;
  std::map<std::string, std::string> by_new_path_;
};

// Points the data file sections of a profile into `folder`. Sections that `restored` knows take
// the name of the file that was in fact restored, in whatever form they hold their path; a section
// of which `keeps` says so stays as it is.
void RepairOutlookProfile(Program& program, const std::string& profile, const std::string& folder,
                          const RestoredFiles& restored = {},
                          const std::function<bool(const std::string& old_path)>& keeps = nullptr);

}  // namespace quorvale
