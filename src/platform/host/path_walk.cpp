#include "platform/host/path_walk.h"

#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/host/disk_links.h"

namespace quorvale::host {
namespace {

bool IsInside(const std::string& root, const std::string& path) {
  return root == "/" || path == root || path.compare(0, root.size() + 1, root + "/") == 0;
}

// Names lose the dots and blanks at their end, as the system's calls take them.
std::string WithoutEndDots(const std::string& name) {
  const std::size_t last = name.find_last_not_of(". ");
  return last == std::string::npos ? "" : name.substr(0, last + 1);
}

// The names of a path below its drive, with "." and ".." resolved.
std::vector<std::string> NamesOf(const std::string& path) {
  std::vector<std::string> names;
  for (std::string& part : Split(path.substr(2), "\\")) {
    if (part.empty() || part == ".") continue;
    if (part != "..") {
      names.push_back(std::move(part));
    } else if (!names.empty()) {
      names.pop_back();
    }
  }
  return names;
}

}  // namespace

std::string NewNameOf(const std::string& path) {
  const std::vector<std::string> names = NamesOf(ReplaceAll(path, "/", "\\"));
  return names.empty() ? "" : WithoutEndDots(names.back());
}

bool IsNewName(const std::string& name) {
  if (name.empty() || name == kAttributesFile) return false;
  return std::none_of(name.begin(), name.end(), [](char c) {
    return (c >= 0 && c < ' ') || std::string_view("/\\:*?\"<>|").find(c) != std::string::npos;
  });
}

bool PathWalk::FollowLink(Place* place) {
  std::string target = RealPath(place->host);
  if (target.empty() || !IsInside(place->drive->root, target)) {
    target = place->drive->read_only ? InsideDisk(*place) : "";
  }
  if (target.empty()) return false;
  place->host = target;
  return true;
}

std::string PathWalk::InsideDisk(const Place& place) {
  constexpr int kMostLinks = 8;  // one behind another
  std::string path = LinkOfOldDisk(place.host);
  if (path.empty() || links_followed_ >= kMostLinks) return "";
  // Without a letter the link's own drive is meant.
  if (path[0] == '\\') path = drives_.NameOf(*place.drive) + path;
  ++links_followed_;
  const auto target = Resolve(path);
  --links_followed_;
  return target && target->exists && target->drive->read_only ? target->host : "";
}

bool PathWalk::Step(const std::string& asked, Place* place) {
  // Only what stands has something below it.
  if (!place->exists) return false;
  place->parent = place->host;
  std::optional<FolderEntry> entry = cache_.Find(place->parent, asked);
  const std::string plain = WithoutEndDots(asked);
  if (!entry && plain != asked && !plain.empty()) entry = cache_.Find(place->parent, plain);
  place->exists = entry.has_value();
  place->name = entry ? entry->name : plain;
  place->host = place->Entry();
  place->is_link = entry && entry->is_link;
  if (place->is_link && !FollowLink(place)) {
    place->exists = false;
    place->blocked = true;
  }
  return true;
}

bool PathWalk::WasWalked(const std::string& folder) const {
  struct stat info {};
  return !folder.empty() && folder == walked_.path && lstat(walked_.host.c_str(), &info) == 0 &&
         S_ISDIR(info.st_mode) && info.st_dev == walked_.device && info.st_ino == walked_.number;
}

void PathWalk::RememberWalk(const std::string& folder, const Place& place) {
  struct stat info {};
  if (stat(place.host.c_str(), &info) != 0) return;
  walked_ = {folder, place.host, place.drive, info.st_dev, info.st_ino};
}

std::optional<Place> PathWalk::Resolve(const std::string& original) {
  const std::string path = ReplaceAll(original, "/", "\\");
  if (path.find('\0') != std::string::npos) return std::nullopt;
  // Most calls name files of one folder, one after the other.
  const std::size_t name_at = path.rfind('\\') + 1;
  const std::string last = path.substr(name_at);
  const std::string folder =
      last.empty() || last == "." || last == ".." ? "" : path.substr(0, name_at);
  if (!WasWalked(folder)) return WalkFromDrive(path, folder);
  Place place;
  place.drive = walked_.drive;
  place.host = walked_.host;
  place.exists = true;
  Step(last, &place);
  return place;
}

std::optional<Place> PathWalk::WalkFromDrive(const std::string& path, const std::string& folder) {
  Place place;
  place.drive = drives_.Find(path);
  if (place.drive == nullptr || place.drive->root.empty()) return std::nullopt;
  place.host = place.drive->root;
  place.exists = true;
  // The names stand behind "C:" or behind the name of the share.
  const std::string share = ShareOf(path);
  const std::vector<std::string> names =
      NamesOf(share.empty() ? path : "C:" + path.substr(share.size()));
  bool exact = !folder.empty() && names.size() >= 2;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i + 1 == names.size() && exact && place.exists) RememberWalk(folder, place);
    if (!Step(names[i], &place)) return std::nullopt;
    exact = exact && place.name == names[i] && !place.is_link;
  }
  return place;
}

}  // namespace quorvale::host
