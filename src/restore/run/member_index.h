// The members of an archive by name, without regard to case, so that many rows can be looked up
// after one listing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "backup/format/backup_file.h"

namespace quorvale {

class MemberIndex {
 public:
  // Lists the backup file. Empty if that fails.
  void Read(BackupFile& backup);
  // Sum of the sizes of the members that a pattern names: one name, or a folder and "\*".
  double Size(const std::string& pattern) const;
  // How many members have this very name.
  size_t Count(const std::string& name) const;
  // True if the pattern names at least one member.
  bool Has(const std::string& pattern) const;

 private:
  struct Member {
    std::string name;   // folded
    double before = 0;  // bytes of all members sorted before this one
    double size = 0;
  };
  std::pair<size_t, size_t> Range(const std::string& pattern) const;

  std::vector<Member> members_;  // by name
};

}  // namespace quorvale
