// The listings of host folders, each read once and kept while the folder stays as it is.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace quorvale::host {

// The file that keeps the attributes of its folder's files where the host's file system has no
// extended attributes. No machine path reaches it.
inline constexpr char kAttributesFile[] = ".quorvale-attributes";

struct FolderEntry {
  std::string name;
  bool is_folder = false;
  bool is_link = false;
};

struct FolderListing {
  // By the form that is compared, then by the exact name: two host files whose names differ only
  // in case stand side by side.
  std::map<std::pair<std::string, std::string>, FolderEntry> entries;
  std::map<std::string, std::uint32_t> attributes;  // of kAttributesFile, by exact name
  struct timespec changed {};                       // when the folder was changed last
  bool too_fresh = false;  // a change within one tick of the clock could have gone unseen
};

class FolderCache {
 public:
  // The listing of a folder as it is now; null if it cannot be read. Valid until the next call.
  FolderListing* Listing(const std::string& folder);
  // The same without another look at the host; null if it was not asked for yet.
  const FolderListing* Known(const std::string& folder) const;
  // The entry that has this name without regard to case; the exact name goes first.
  std::optional<FolderEntry> Find(const std::string& folder, const std::string& name);

  // What this program itself changed. The folder's listing was asked for just before.
  void Added(const std::string& folder, const FolderEntry& entry);
  void Removed(const std::string& folder, const std::string& name);
  void Forget(const std::string& folder) { listings_.erase(folder); }

 private:
  bool Read(const std::string& folder, const struct stat& info, FolderListing* listing);
  void Restamp(const std::string& folder, FolderListing* listing);

  std::unordered_map<std::string, FolderListing> listings_;
  std::size_t names_ = 0;  // entries that were kept since everything was forgotten last
};

// "FOLDER/NAME".
std::string JoinHostPath(const std::string& folder, const std::string& name);

}  // namespace quorvale::host
