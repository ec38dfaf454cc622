#include "base/text.h"

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
    if ((byte(*at + i) & 0xC0) != 0x80) well_formed = false;
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

char32_t FoldCode(char32_t code) {
  if (code < 0x80) return code >= 'A' && code <= 'Z' ? code + 32 : code;
  if (code >= 0xC0 && code <= 0xDE && code != 0xD7) return code + 32;
  // Latin Extended-A pairs: the capital is even, but odd in two runs.
  if (code >= 0x100 && code <= 0x137 && code != 0x130 && code != 0x131) return code | 1;
  if (code >= 0x139 && code <= 0x148) return code % 2 == 1 ? code + 1 : code;
  if (code >= 0x14A && code <= 0x177) return code | 1;
  if (code == 0x178) return 0xFF;
  if (code >= 0x179 && code <= 0x17E) return code % 2 == 1 ? code + 1 : code;
  // Greek.
  if (code == 0x386) return 0x3AC;
  if (code >= 0x388 && code <= 0x38A) return code + 37;
  if (code == 0x38C) return 0x3CC;
  if (code == 0x38E || code == 0x38F) return code + 63;
  if (code >= 0x391 && code <= 0x3AB && code != 0x3A2) return code + 32;
  // Cyrillic.
  if (code >= 0x400 && code <= 0x40F) return code + 80;
  if (code >= 0x410 && code <= 0x42F) return code + 32;
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
