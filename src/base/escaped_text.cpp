#include "base/escaped_text.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace quorvale {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

bool NeedsEscape(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F || c == '%';
}

bool ReadCode(std::string_view digits, unsigned* code) {
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, *code, 16);
  return error == std::errc() && stop == end;
}

}  // namespace

std::string Escaped(const std::string& text) {
  if (std::none_of(text.begin(), text.end(), NeedsEscape)) return text;
  std::string escaped;
  for (const char c : text) {
    if (!NeedsEscape(c)) {
      escaped += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    escaped += '%';
    escaped += kDigits[byte >> 4];
    escaped += kDigits[byte & 0xF];
  }
  return escaped;
}

bool Unescape(std::string_view text, std::string* plain) {
  plain->clear();
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      *plain += text[i];
      continue;
    }
    unsigned code = 0;
    if (i + 2 >= text.size() || !ReadCode(text.substr(i + 1, 2), &code)) return false;
    *plain += static_cast<char>(code);
    i += 2;
  }
  return IsUtf8(*plain);
}

std::string TabbedLine(const std::vector<std::string>& fields) {
  std::string line;
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) line += '\t';
    line += Escaped(fields[i]);
  }
  return line;
}

bool ReadTabbedLine(std::string_view line, std::vector<std::string>* fields) {
  fields->clear();
  for (size_t begin = 0; begin <= line.size();) {
    const size_t end = std::min(line.find('\t', begin), line.size());
    std::string field;
    if (!Unescape(line.substr(begin, end - begin), &field)) return false;
    fields->push_back(std::move(field));
    begin = end + 1;
  }
  return true;
}

}  // namespace quorvale
