#include "platform/host/folder_cache.h"

#include <dirent.h>
#include <fcntl.h>
#include <time.h>

#include <cstdlib>

#include "base/text.h"
#include "platform/host/host_file.h"
#include "platform/host/sort_name.h"

namespace quorvale::host {
namespace {

// More than a walk needs at a time; beyond it everything is forgotten and read anew.
constexpr std::size_t kMostListings = 4096;
constexpr std::size_t kMostNames = 200000;

std::pair<std::string, std::string> KeyOf(const std::string& name) {
  return {SortName(name), name};
}

// The longest time that two changes of a folder can lie apart and still carry one time stamp.
std::int64_t TickOf(const struct timespec& stamp) {
  constexpr std::int64_t kMillisecond = 1000000;
  // File systems without fractions of seconds count in steps of up to two seconds.
  return stamp.tv_nsec == 0 ? 2000 * kMillisecond : 20 * kMillisecond;
}

std::int64_t Nanoseconds(const struct timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1000000000 + time.tv_nsec;
}

bool SameMoment(const struct timespec& a, const struct timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Lines of "0x2 NAME".
std::map<std::string, std::uint32_t> ReadAttributes(const std::string& folder) {
  std::map<std::string, std::uint32_t> attributes;
  const auto text = ReadHostFile(JoinHostPath(folder, kAttributesFile));
  if (!text) return attributes;
  for (const std::string& line : Split(*text, "\n")) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string::npos) continue;
    const unsigned long bits = std::strtoul(line.c_str(), nullptr, 16);
    attributes[line.substr(blank + 1)] = static_cast<std::uint32_t>(bits);
  }
  return attributes;
}

FolderEntry EntryOf(DIR* directory, const dirent& found) {
  FolderEntry entry;
  entry.name = found.d_name;
  entry.is_folder = found.d_type == DT_DIR;
  entry.is_link = found.d_type == DT_LNK;
  if (found.d_type == DT_UNKNOWN) {
    struct stat info {};
    if (fstatat(dirfd(directory), found.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
      entry.is_folder = S_ISDIR(info.st_mode);
      entry.is_link = S_ISLNK(info.st_mode);
    }
  }
  return entry;
}

}  // namespace

std::string JoinHostPath(const std::string& folder, const std::string& name) {
  return folder == "/" ? "/" + name : folder + "/" + name;
}

FolderListing* FolderCache::Listing(const std::string& folder) {
  struct stat info {};
  if (stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
    Forget(folder);
    return nullptr;
  }
  const auto found = listings_.find(folder);
  if (found != listings_.end() && !found->second.too_fresh &&
      SameMoment(found->second.changed, info.st_mtim)) {
    return &found->second;
  }
  if (listings_.size() >= kMostListings || names_ >= kMostNames) {
    listings_.clear();
    names_ = 0;
  }
  FolderListing listing;
  if (!Read(folder, info, &listing)) {
    Forget(folder);
    return nullptr;
  }
  names_ += listing.entries.size();
  return &(listings_[folder] = std::move(listing));
}

const FolderListing* FolderCache::Known(const std::string& folder) const {
  const auto found = listings_.find(folder);
  return found == listings_.end() ? nullptr : &found->second;
}

bool FolderCache::Read(const std::string& folder, const struct stat& info, FolderListing* listing) {
  struct timespec now {};
  clock_gettime(CLOCK_REALTIME, &now);
  DIR* directory = opendir(folder.c_str());
  if (directory == nullptr) return false;
  bool has_attributes = false;
  while (const dirent* found = readdir(directory)) {
    const std::string name = found->d_name;
    if (name == "." || name == "..") continue;
    if (name == kAttributesFile) {
      has_attributes = true;
      continue;
    }
    // A name with a "\" cannot be told from a path.
    if (Contains(name, "\\")) continue;
    listing->entries.emplace(KeyOf(name), EntryOf(directory, *found));
  }
  closedir(directory);
  if (has_attributes) listing->attributes = ReadAttributes(folder);
  listing->changed = info.st_mtim;
  listing->too_fresh = Nanoseconds(now) - Nanoseconds(info.st_mtim) < TickOf(info.st_mtim);
  return true;
}

std::optional<FolderEntry> FolderCache::Find(const std::string& folder, const std::string& name) {
  if (name == kAttributesFile || name.find('/') != std::string::npos) return std::nullopt;
  for (int attempt = 0; attempt < 2; ++attempt) {
    const FolderListing* listing = Listing(folder);
    if (listing == nullptr) return std::nullopt;
    const auto key = KeyOf(name);
    const auto exact = listing->entries.find(key);
    if (exact != listing->entries.end()) return exact->second;
    const auto first = listing->entries.lower_bound({key.first, ""});
    if (first != listing->entries.end() && first->first.first == key.first) return first->second;
    // Another program may have made it within the tick of the clock in which it was listed.
    struct stat info {};
    if (lstat(JoinHostPath(folder, name).c_str(), &info) != 0) return std::nullopt;
    Forget(folder);
  }
  return std::nullopt;
}

void FolderCache::Restamp(const std::string& folder, FolderListing* listing) {
  struct stat info {};
  if (stat(folder.c_str(), &info) == 0) listing->changed = info.st_mtim;
  listing->too_fresh = false;
}

void FolderCache::Added(const std::string& folder, const FolderEntry& entry) {
  const auto found = listings_.find(folder);
  if (found == listings_.end()) return;
  found->second.entries[KeyOf(entry.name)] = entry;
  ++names_;
  Restamp(folder, &found->second);
}

void FolderCache::Removed(const std::string& folder, const std::string& name) {
  const auto found = listings_.find(folder);
  if (found == listings_.end()) return;
  found->second.entries.erase(KeyOf(name));
  Restamp(folder, &found->second);
}

}  // namespace quorvale::host
