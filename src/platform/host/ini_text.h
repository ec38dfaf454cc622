// What the machine folder's text files have in common.
#pragma once

#include <charconv>
#include <string>
#include <system_error>

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

}  // namespace quorvale::host
