#include "base/text.h"

#include <algorithm>
#include <cstdlib>

namespace quorvale {
namespace {

// Reads one code point at `*at` and moves behind it. False, having moved one byte, if the bytes
// are not well-formed UTF-8.
bool ReadUtf8(std::string_view text, size_t* at, char32_t* code) {
  auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned char lead = byte(*at);
  size_t extra = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  static constexpr char32_t kLowest[] = {0, 0x80, 0x800, 0x10000};
  char32_t value = extra == 0 ? lead : lead & (0x3Fu >> extra);
  bool well_formed = lead < 0x80 || (lead >= 0xC2 && lead <= 0xF4);
  if (*at + extra >= text.size()) well_formed = false;
  for (size_t i = 1; well_formed && i <= extra; ++i) {
    if (!ContinuesCharacter(text[*at + i])) well_formed = false;
    value = value << 6 | (byte(*at + i) & 0x3Fu);
  }
  if (well_formed &&
      (value < kLowest[extra] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))) {
    well_formed = false;
  }
  *at += well_formed ? extra + 1 : 1;
  *code = value;
  return well_formed;
}

// Capitals, and how far behind each its small letter stands.
struct Capitals {
  char32_t first;
  char32_t last;
  char32_t distance;
  char32_t step = 1;  // 2: every other code, where capitals and small letters take turns
};
constexpr Capitals kCapitals[] = {
    {'A', 'Z', 32},
    {0xC0, 0xD6, 32},
    {0xD8, 0xDE, 32},
    // Latin Extended-A.
    {0x100, 0x12E, 1, 2},
    {0x132, 0x136, 1, 2},
    {0x139, 0x147, 1, 2},
    {0x14A, 0x176, 1, 2},
    {0x179, 0x17D, 1, 2},
    // Greek.
    {0x386, 0x386, 38},
    {0x388, 0x38A, 37},
    {0x38C, 0x38C, 64},
    {0x38E, 0x38F, 63},
    {0x391, 0x3A1, 32},
    {0x3A3, 0x3AB, 32},
    // Cyrillic.
    {0x400, 0x40F, 80},
    {0x410, 0x42F, 32},
};

char32_t FoldCode(char32_t code) {
  if (code == 0x178) return 0xFF;  // the only one whose small letter stands before it
  for (const Capitals& range : kCapitals) {
    if (code < range.first) break;
    if (code <= range.last && (code - range.first) % range.step == 0) return code + range.distance;
  }
  return code;
}

void AppendUtf16(std::string* bytes, char32_t unit) {
  bytes->push_back(static_cast<char>(unit & 0xFF));
  bytes->push_back(static_cast<char>(unit >> 8 & 0xFF));
}

}  // namespace

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool ContainsNoCase(std::string_view text, std::string_view part) {
  return Contains(FoldCase(text), FoldCase(part));
}

bool EqualsNoCase(std::string_view a, std::string_view b) { return FoldCase(a) == FoldCase(b); }

bool EndsWithNoCase(std::string_view text, std::string_view end) {
  return FoldCase(text).ends_with(FoldCase(end));
}

std::string FoldCase(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    size_t start = at;
    char32_t code = 0;
    if (ReadUtf8(text, &at, &code)) {
      AppendUtf8(&folded, FoldCode(code));
    } else {
      folded.push_back(text[start]);
    }
  }
  return folded;
}

std::string ReplaceAll(std::string text, std::string_view what, std::string_view with) {
  if (what.empty() || !Contains(text, what)) return text;
  std::string result;
  size_t start = 0;
  for (size_t hit = text.find(what); hit != std::string::npos; hit = text.find(what, start)) {
    result.append(text, start, hit - start).append(with);
    start = hit + what.size();
  }
  return result.append(text, start);
}

std::string Trim(std::string_view text) {
  size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  size_t last = text.find_last_not_of(' ');
  return std::string(text.substr(first, last - first + 1));
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (size_t hit = text.find(separator); hit != std::string_view::npos;
       hit = text.find(separator, start)) {
    parts.emplace_back(text.substr(start, hit - start));
    start = hit + separator.size();
  }
  parts.emplace_back(text.substr(start));
  return parts;
}

std::string Utf8ToUtf16Bytes(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size() * 2);
  for (size_t at = 0; at < utf8.size();) {
    char32_t code = 0;
    if (!ReadUtf8(utf8, &at, &code)) code = 0xFFFD;
    if (code >= 0x10000) {
      AppendUtf16(&bytes, 0xD800 + ((code - 0x10000) >> 10));
      AppendUtf16(&bytes, 0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      AppendUtf16(&bytes, code);
    }
  }
  return bytes;
}

std::string Utf16BytesToUtf8(std::string_view bytes) {
  std::string utf8;
  auto unit_at = [&](size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(bytes[i]) |
                                 static_cast<unsigned char>(bytes[i + 1]) << 8);
  };
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    char32_t unit = unit_at(i);
    bool is_high = unit >= 0xD800 && unit <= 0xDBFF;
    if (is_high && i + 3 < bytes.size() && unit_at(i + 2) >= 0xDC00 && unit_at(i + 2) <= 0xDFFF) {
      unit = 0x10000 + ((unit - 0xD800) << 10) + (unit_at(i + 2) - 0xDC00);
      i += 2;
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      unit = 0xFFFD;
    }
    AppendUtf8(&utf8, unit);
  }
  return utf8;
}

bool IsUtf8(std::string_view text) {
  char32_t code = 0;
  for (size_t at = 0; at < text.size();) {
    if (!ReadUtf8(text, &at, &code)) return false;
  }
  return true;
}

std::size_t CountCharacters(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return !ContinuesCharacter(c); }));
}

void AppendUtf8(std::string* text, char32_t code) {
  auto put = [text](char32_t byte) { text->push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6);
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | code >> 12);
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | code >> 18);
    put(0x80 | (code >> 12 & 0x3F));
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

double Val(std::string_view text) {
  std::string compact = ReplaceAll(std::string(text), " ", "");
  // strtod would also read "inf", "nan" and hexadecimal numbers.
  size_t end = compact.find_first_not_of("0123456789+-.eE");
  return std::strtod(compact.substr(0, end).c_str(), nullptr);
}

}  // namespace quorvale
