#include "platform/host/disk_links.h"

#include <limits.h>
#include <unistd.h>

#include "base/text.h"

namespace quorvale::host {

std::string PathOfLinkTarget(const std::string& target) {
  std::string path = ReplaceAll(target, "/", "\\");
  // What the system puts before a path that it does not take apart.
  for (const char* prefix : {"\\??\\", "\\\\?\\", "\\DosDevices\\"}) {
    if (path.starts_with(prefix)) path.erase(0, std::string(prefix).size());
  }
  const bool has_letter =
      path.size() >= 2 && path[1] == ':' &&
      ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
  if (has_letter) return path.size() == 2 ? path + "\\" : path;
  const bool from_root = path.starts_with("\\") && !path.starts_with("\\\\");
  return from_root && path.find(':') == std::string::npos ? path : "";
}

std::string LinkOfOldDisk(const std::string& host_path) {
  char target[PATH_MAX];
  const ssize_t length = readlink(host_path.c_str(), target, sizeof(target));
  if (length <= 0) return "";
  return PathOfLinkTarget(std::string(target, static_cast<std::size_t>(length)));
}

}  // namespace quorvale::host
