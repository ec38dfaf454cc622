#include "archive/entry_name.h"

#include <array>

#include "base/paths.h"
#include "base/text.h"

namespace quorvale::zip {
namespace {

// The part before the first dot decides, whatever follows: "nul.tar.gz" is the device too.
bool IsDeviceName(const std::string& component) {
  const std::string stem = FoldCase(Trim(component.substr(0, component.find('.'))));
  static constexpr std::array kDevices = {"con",    "prn",     "aux",   "nul",
                                          "conin$", "conout$", "clock$"};
  for (const char* device : kDevices) {
    if (stem == device) return true;
  }
  if (stem.rfind("com", 0) != 0 && stem.rfind("lpt", 0) != 0) return false;
  const std::string digit = stem.substr(3);
  // Windows takes the superscript digits of its code page for digits here.
  return (digit.size() == 1 && digit[0] >= '0' && digit[0] <= '9') || digit == "\u00B9" ||
         digit == "\u00B2" || digit == "\u00B3";
}

// Why a component could be part of no path, whatever it is called there.
std::string WhyHostile(const std::string& component) {
  if (component.empty()) return "an empty component";
  if (component == "." || component == "..") return "it leads out of the folder";
  for (const char c : component) {
    if (static_cast<unsigned char>(c) < 0x20) return "a control character";
    if (c == ':') return "a colon";
    // A "/" in a name would be one more "\\" to the system.
    if (std::string_view("<>\"|?*/").find(c) != std::string_view::npos) {
      return "a character that no file name has";
    }
  }
  return "";
}

// Why a component cannot be the name of a file.
std::string WhyNoFileName(const std::string& component) {
  if (component.back() == '.' || component.back() == ' ') return "a blank or dot at a name's end";
  if (IsDeviceName(component)) return "the name of a device";
  return "";
}

// A text with "*" against a text; both folded.
bool MatchesPattern(std::string_view pattern, std::string_view text) {
  std::size_t p = 0;
  std::size_t t = 0;
  std::size_t star = std::string_view::npos;  // the last "*" met
  std::size_t resume = 0;                     // where it goes on if the rest does not fit
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && pattern[p] == text[t]) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace

std::string WhyHostileName(const std::string& name) {
  const std::string path = WithoutBackslash(name);
  if (path.empty()) return "no name";
  if (path.front() == '\\') return "it stands on its own";
  if (!IsUtf8(path)) return "its letters cannot be read";
  for (const std::string& component : Split(path, "\\")) {
    const std::string reason = WhyHostile(component);
    if (!reason.empty()) return reason;
  }
  return "";
}

std::string WhyUnsafe(const std::string& name) {
  std::string reason = WhyHostileName(name);
  if (!reason.empty()) return reason;
  for (const std::string& component : Split(WithoutBackslash(name), "\\")) {
    reason = WhyNoFileName(component);
    if (!reason.empty()) return reason;
  }
  return "";
}

std::string DefaultEntryName(const std::string& source, bool preserve_paths) {
  std::string name = source;
  if (!preserve_paths) {
    const bool folder = name.ends_with("\\");
    return FileNameOf(WithoutBackslash(name)) + (folder ? "\\" : "");
  }
  if (name.size() >= 2 && name[1] == ':') name.erase(0, 2);
  name.erase(0, name.find_first_not_of('\\'));
  return name;
}

NameFilter::NameFilter(const std::vector<std::string>& patterns) : all_(patterns.empty()) {
  for (const std::string& pattern : patterns) {
    const std::string folded = FoldCase(pattern);
    names_.insert(folded);
    if (folded.find('*') != std::string::npos) patterns_.push_back(folded);
  }
}

bool NameFilter::Matches(const std::string& name) const {
  if (all_) return true;
  const std::string folded = FoldCase(name);
  if (names_.count(folded) != 0) return true;
  for (const std::string& pattern : patterns_) {
    if (MatchesPattern(pattern, folded)) return true;
  }
  return false;
}

}  // namespace quorvale::zip
