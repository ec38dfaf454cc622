// Small text operations that the whole program shares. Text is UTF-8.
//
// This room, base/, is what everything else may use: text, paths, dates, and an error on its way.
// It stands on the standard library alone. Start reading here.
#pragma once

#include <cstddef>
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
// How many characters a UTF-8 text has.
std::size_t CountCharacters(std::string_view utf8);
// True for a byte inside a UTF-8 character, behind its first one.
inline bool ContinuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}
// Appends one code point.
void AppendUtf8(std::string* text, char32_t code);

// The number at the start of the text, as the classic Val function reads it: blanks are skipped,
// "" and text without a number give 0.
double Val(std::string_view text);

}  // namespace quorvale
