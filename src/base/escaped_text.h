// Text on one line of a file whose fields stand between tabs: control characters and "%" are
// written as "%" and two hexadecimal digits.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvale {

std::string Escaped(const std::string& text);
// False for a "%" that no two digits follow, and where the plain text is no UTF-8.
bool Unescape(std::string_view text, std::string* plain);

// The fields of a line, escaped, with a tab before each but the first.
std::string TabbedLine(const std::vector<std::string>& fields);
// The fields of such a line. False if one of them is no escaped text.
bool ReadTabbedLine(std::string_view line, std::vector<std::string>* fields);

}  // namespace quorvale
