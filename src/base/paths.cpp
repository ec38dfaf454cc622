#include "base/paths.h"

#include <vector>

#include "base/text.h"

namespace quorvale {

std::string FileNameOf(const std::string& path) {
  size_t slash = path.rfind('\\');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string ParentFolder(const std::string& path) {
  size_t slash = path.rfind('\\');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string WithBackslash(const std::string& path) {
  return path.ends_with('\\') ? path : path + "\\";
}

std::string WithoutBackslash(const std::string& path) {
  return path.ends_with('\\') ? path.substr(0, path.size() - 1) : path;
}

std::string CollapseBackslashes(const std::string& path) {
  size_t start = IsNetworkPath(path) ? 2 : 0;
  return path.substr(0, start) + ReplaceAll(path.substr(start), "\\\\", "\\");
}

std::string WithoutLastFour(const std::string& name) {
  return name.size() < 4 ? std::string() : name.substr(0, name.size() - 4);
}

std::string NumberedName(const std::string& path, int number) {
  const size_t name = path.rfind('\\') == std::string::npos ? 0 : path.rfind('\\') + 1;
  const size_t dot = path.rfind('.');
  // A name that only begins with a dot has no extension.
  const size_t end = dot == std::string::npos || dot <= name ? path.size() : dot;
  return path.substr(0, end) + "_" + std::to_string(number) + path.substr(end);
}

bool IsNetworkPath(const std::string& path) { return path.starts_with("\\\\"); }

bool IsShareRoot(const std::string& path) {
  if (!IsNetworkPath(path)) return false;
  const size_t server_end = path.find('\\', 2);
  if (server_end == std::string::npos || server_end == 2) return false;
  const size_t share_end = path.find('\\', server_end + 1);
  return share_end == std::string::npos
             ? server_end + 1 < path.size()
             : share_end > server_end + 1 && share_end + 1 == path.size();
}

std::string TypedFolder(const std::string& text, const std::string& drive) {
  const std::string path = ReplaceAll(Trim(text), "/", "\\");
  if (path.empty()) return "";
  const bool network = IsNetworkPath(path);
  const bool has_drive = path.size() >= 2 && path[1] == ':';
  const size_t kept = network ? 2 : 0;  // the server and the share have nothing above them
  std::vector<std::string> names;
  for (const std::string& part : Split(path.substr(network || has_drive ? 2 : 0), "\\")) {
    const std::string name = part.substr(0, part.find_last_not_of(". ") + 1);
    if (!name.empty()) {
      names.push_back(name);
    } else if (part == ".." && names.size() > kept) {
      names.pop_back();
    }
  }
  std::string folder = network ? "\\" : has_drive ? path.substr(0, 2) : drive;
  for (const std::string& name : names) folder += "\\" + name;
  return names.empty() ? folder + "\\" : folder;
}

std::string DriveOf(const std::string& path) {
  return IsNetworkPath(path) ? path : path.substr(0, 2);
}

}  // namespace quorvale
