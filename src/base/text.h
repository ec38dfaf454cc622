// Small text operations that the whole program shares. Text is UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvale {

bool Contains(std::string_view text, std::string_view part);
bool ContainsNoCase(std::string_view text, std::string_view part);
bool EqualsNoCase(std::string_view a, std::string_view b);
bool EndsWithNoCase(std::string_view text, std::string_view end);
// Folds letters of the European alphabets to lower case, for comparing names. Bytes that are not
// UTF-8 stay as they are.
std::string FoldCase(std::string_view text);
std::string ReplaceAll(std::string text, std::string_view what, std::string_view with);
// Without blanks at both ends; other white space stays.
std::string Trim(std::string_view text);
// The parts between separators; "a|b|" gives "a", "b", "".
std::vector<std::string> Split(std::string_view text, std::string_view separator);

// UTF-8 to and from UTF-16 code units in little-endian byte order. What is not valid becomes
// U+FFFD.
std::string Utf8ToUtf16Bytes(std::string_view utf8);
std::string Utf16BytesToUtf8(std::string_view bytes);
// True if the text is well-formed UTF-8.
bool IsUtf8(std::string_view text);
// Appends one code point.
void AppendUtf8(std::string* text, char32_t code);

// The number at the start of the text, as the classic Val function reads it: blanks are skipped,
// "" and text without a number give 0.
double Val(std::string_view text);

}  // namespace quorvale
