#include "platform/error_report/report_text.h"

#include <algorithm>
#include <cstdio>

#include "base/text.h"

namespace quorvale::report_text {
namespace {

constexpr std::size_t kLongestListed = 40;

// A text that would break the line of the call stack.
const std::string* LongText(const ErrArg& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return nullptr;
  const bool breaks = text->find_first_of("\r\n") != std::string::npos;
  return breaks || text->size() > kLongestListed ? text : nullptr;
}

bool IsXml(const std::string& text) { return text.starts_with("<") || text.starts_with("xml"); }

// The lines that show a long text below its line of the call stack.
std::string ValueLines(const std::string& name, const std::string& text) {
  std::string lines = "    Value Of " + name + ":" + kLineEnd;
  if (!IsXml(text)) return lines + HuntERR::FormatArg(text) + kLineEnd;
  for (const std::string& line : Split(ReplaceAll(text, "\r\n", "\n"), "\n")) {
    lines += "      " + line + kLineEnd;
  }
  return lines;
}

}  // namespace

std::string Fill(const std::string& text, const Fields& fields) {
  std::string filled;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = text[at] == '%' ? text.find('%', at + 1) : std::string::npos;
    const auto field =
        end == std::string::npos ? fields.end() : fields.find(text.substr(at + 1, end - at - 1));
    if (field == fields.end()) {
      filled += text[at++];
    } else {
      filled += field->second;
      at = end + 1;
    }
  }
  return filled;
}

std::string Hex(std::uint32_t number) {
  char text[16];
  std::snprintf(text, sizeof(text), "%X", static_cast<unsigned>(number));
  return text;
}

std::string Relative(std::int32_t number, std::int32_t base) {
  const std::int64_t distance = std::int64_t{number} - base;
  return (distance < 0 ? "- " : "+ ") + std::to_string(distance < 0 ? -distance : distance);
}

std::string TimeText(const LocalTime& time) {
  char text[80];
  std::snprintf(text, sizeof(text), "%02d/%02d/%02d %02d:%02d:%02d", time.month, time.day,
                time.year % 100, time.hour, time.minute, time.second);
  return text;
}

std::string WithoutLineBreaks(const std::string& text) {
  return ReplaceAll(ReplaceAll(text, "\r", ""), "\n", "");
}

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

std::vector<std::string> Names(const std::string& list) {
  std::vector<std::string> names;
  if (Trim(list).empty()) return names;
  for (const std::string& name : Split(list, ",")) names.push_back(Trim(name));
  return names;
}

Method MethodOf(const std::string& text) {
  const std::size_t open = text.find('(');
  if (open == std::string::npos) return {text, {}};
  const std::size_t close = std::min(text.rfind(')'), text.size());
  const std::size_t length = close > open ? close - open - 1 : 0;
  return {Trim(text.substr(0, open)), Names(text.substr(open + 1, length))};
}

std::string NameAt(const std::vector<std::string>& names, std::size_t place) {
  return place < names.size() ? names[place] : "Arg" + std::to_string(place + 1);
}

std::string Listed(const std::string& name, const ErrArg& value, std::string* below) {
  const std::string* text = LongText(value);
  if (text == nullptr) return HuntERR::FormatArg(value);
  *below += ValueLines(name, *text);
  return "{Text}";
}

std::string CrashName(std::uint32_t code) {
  switch (code) {
    case 0xC0000005:
      return "Access violation";
    case 0xC0000017:
      return "No memory";
    case 0xC000001D:
      return "Illegal instruction";
    case 0xC000008E:
      return "Floating point division by zero";
    case 0xC0000094:
      return "Integer division by zero";
    case 0xC00000FD:
      return "Stack overflow";
    default:
      return "Exception &H" + Hex(code);
  }
}

}  // namespace quorvale::report_text
