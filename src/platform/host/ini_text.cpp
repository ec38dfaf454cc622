#include "platform/host/ini_text.h"

#include "base/text.h"

namespace quorvale::host {
namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

void Understand(const std::string& text, IniLine* line) {
  line->text = text;
  if (!IsUtf8(text)) {
    line->name = "the line is not UTF-8 text";
    return;
  }
  if (text[0] == '[') {
    line->kind = IniLine::Kind::kSection;
    if (text.back() == ']') line->name = Stripped(text.substr(1, text.size() - 2));
    return;
  }
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) {
    line->name = "the line has no \"=\"";
    return;
  }
  line->kind = IniLine::Kind::kEntry;
  line->name = Stripped(text.substr(0, equals));
  line->value = Stripped(text.substr(equals + 1));
}

}  // namespace

IniReader::IniReader(const std::string& text)
    : lines_(Split(text.starts_with(kByteOrderMark) ? text.substr(3) : text, "\n")) {}

bool IniReader::Next(IniLine* line) {
  while (next_ < lines_.size()) {
    const std::string text = Stripped(lines_[next_++]);
    const bool is_comment = !text.empty() && (text[0] == ';' || text[0] == '#') && IsUtf8(text);
    if (text.empty() || is_comment) continue;
    *line = {};
    line->number = static_cast<int>(next_);
    Understand(text, line);
    return true;
  }
  return false;
}

}  // namespace quorvale::host
