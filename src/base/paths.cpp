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

std::string NumberedName(const std::string& name, int number) {
  const size_t dot = name.rfind('.');
  const size_t folder = name.rfind('\\');
  const bool has_extension =
      dot != std::string::npos && (folder == std::string::npos || dot > folder);
  const size_t end = has_extension ? dot : name.size();
  return name.substr(0, end) + "_" + std::to_string(number) + name.substr(end);
}

bool IsNetworkPath(const std::string& path) { return path.starts_with("\\\\"); }

std::string DriveOf(const std::string& path) {
  return IsNetworkPath(path) ? path : path.substr(0, 2);
}

}  // namespace quorvale
