// Names of entries: which are safe, which are asked for, and which a source gets by itself.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quorvale::zip {

// Why this entry may not become a file below a folder; "" if it may. Refused are names that climb
// out ("..") or stand on their own ("\a", "C:a"), and those that a file of Windows cannot have.
std::string WhyUnsafe(const std::string& name);
// Of these reasons, the ones that hold whatever name the file gets instead: "" also for a name
// that ends in a dot or blank or is that of a device.
std::string WhyHostileName(const std::string& name);

// The name of an entry for a source, without drive, or its last component only.
std::string DefaultEntryName(const std::string& source, bool preserve_paths);

// Tells which names are asked for. A pattern is a whole name, or has "*" for any run of characters
// (also none, also "\"). Letters match without regard to case.
class NameFilter {
 public:
  // No patterns: every name matches.
  explicit NameFilter(const std::vector<std::string>& patterns);
  bool Matches(const std::string& name) const;
  // The names in lower case if every pattern is a whole name; null if names are to be matched.
  const std::unordered_set<std::string>* WholeNames() const {
    return all_ || !patterns_.empty() ? nullptr : &names_;
  }

 private:
  bool all_ = false;
  std::unordered_set<std::string> names_;
  std::vector<std::string> patterns_;
};

}  // namespace quorvale::zip
