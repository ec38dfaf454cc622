#include "restore/run/safe_target.h"

#include "archive/entry_name.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

bool IsSafeBelow(const std::string& name) { return zip::WhyUnsafe(name).empty(); }

bool IsSafeTarget(const std::string& path) {
  if (IsNetworkPath(path)) {
    const std::string rest = path.substr(2);
    // A server alone is no place for a file.
    return Contains(WithoutBackslash(rest), "\\") && IsSafeBelow(rest);
  }
  if (path.size() < 3 || !IsLetter(path[0]) || path[1] != ':' || path[2] != '\\') return false;
  return path.size() == 3 || IsSafeBelow(path.substr(3));
}

}  // namespace quorvale
