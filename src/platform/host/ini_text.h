// What the machine folder's text files have in common.
#pragma once

#include <charconv>
#include <string>
#include <system_error>
#include <vector>

namespace quorvale::host {

// Without blanks, tabs and carriage returns at both ends.
inline std::string Stripped(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// A decimal number that fills the whole text. False, with `number` undefined, for anything else.
template <class Number>
bool ParseNumber(const std::string& text, Number* number) {
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, *number);
  return result.ec == std::errc() && result.ptr == end;
}

// A line of an ini text that says something.
struct IniLine {
  enum class Kind {
    kSection,  // "[name]"; without its "]" the name is ""
    kEntry,    // "name = value", without the blanks around both
    kBroken    // anything else; `name` tells what is wrong with it
  };
  Kind kind = Kind::kBroken;
  int number = 0;    // 1-based
  std::string text;  // all of it, without the blanks around
  std::string name;
  std::string value;
};

// Gives the lines of an ini text one after the other. Empty lines and comments (";" or "#" at their
// beginning) are passed over, and so is a byte order mark.
class IniReader {
 public:
  explicit IniReader(const std::string& text);
  // False at the end.
  bool Next(IniLine* line);

 private:
  std::vector<std::string> lines_;
  std::size_t next_ = 0;
};

}  // namespace quorvale::host
