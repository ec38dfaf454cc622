#include "base/paths.h"

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

std::string DriveOf(const std::string& path) {
  return IsNetworkPath(path) ? path : path.substr(0, 2);
}

}  // namespace quorvale
