#include "platform/registry_text.h"

#include <cstdint>

#include "base/text.h"

namespace quorvale {
namespace {

using Converter = std::function<std::string(const std::string&)>;

constexpr char kHeader4[] = "REGEDIT4";
constexpr char kHeader5[] = "Windows Registry Editor Version 5.00";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// The longest line of a list of bytes, with its final "\".
constexpr std::size_t kHexLineLength = 80;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view WithoutEndBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && (IsBlank(text.back()) || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

// The value of a hexadecimal digit, or -1.
int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// One to eight hexadecimal digits and nothing else.
bool ParseHexNumber(std::string_view digits, std::uint32_t* number) {
  if (digits.empty() || digits.size() > 8) return false;
  *number = 0;
  for (char c : digits) {
    const int digit = HexDigit(c);
    if (digit < 0) return false;
    *number = *number << 4 | static_cast<std::uint32_t>(digit);
  }
  return true;
}

// The four bytes of a number, low byte first.
std::string LittleEndian(std::uint32_t number) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<char>(number >> (8 * i) & 0xFF));
  return bytes;
}

// Reads the lines behind the first one.
class Reader {
 public:
  Reader(std::string_view text, bool data_is_ansi, const Converter& from_ansi,
         std::vector<RegistryStatement>* statements, std::vector<RegistryTextError>* errors)
      : text_(text),
        data_is_ansi_(data_is_ansi),
        from_ansi_(from_ansi),
        statements_(statements),
        errors_(errors) {}

  void ReadAll();

 private:
  bool NextLine(std::string_view* line);
  // Looks at the line that NextLine would give. False at the end.
  bool PeekLine(std::string_view* line) const;
  void Error(int line, const char* message) { errors_->push_back({line, message}); }

  void ReadKey(std::string_view line);
  void ReadValue(std::string_view line);
  bool ReadName(std::string_view* line, std::string* name);
  bool ReadData(std::string_view text, RegistryStatement* statement, const char** message);
  bool ReadString(std::string_view text, RegistryStatement* statement);
  bool ReadHex(std::string_view text, RegistryStatement* statement);
  bool ReadHexType(std::string_view* text, std::uint32_t* type);
  bool ReadHexBytes(std::string_view line, std::string* bytes, bool* goes_on);

  std::string_view text_;
  std::size_t at_ = 0;
  int line_ = 1;  // number of the line that was read last
  const bool data_is_ansi_;
  const Converter& from_ansi_;
  std::vector<RegistryStatement>* statements_;
  std::vector<RegistryTextError>* errors_;
  std::string key_;  // "" while no key can take values
  bool key_was_bad_ = false;
};

bool Reader::PeekLine(std::string_view* line) const {
  if (at_ >= text_.size()) return false;
  *line = text_.substr(at_, text_.find('\n', at_) - at_);
  if (!line->empty() && line->back() == '\r') line->remove_suffix(1);
  return true;
}

bool Reader::NextLine(std::string_view* line) {
  if (!PeekLine(line)) return false;
  const std::size_t end = text_.find('\n', at_);
  at_ = end == std::string_view::npos ? text_.size() : end + 1;
  ++line_;
  return true;
}

void Reader::ReadAll() {
  std::string_view raw;
  line_ = 0;
  NextLine(&raw);  // the first line names the variant
  while (NextLine(&raw)) {
    const std::string_view line = WithoutEndBlanks(raw);
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '[') {
      ReadKey(line);
    } else if (line[0] == '@' || line[0] == '"') {
      // The end of a line may belong to a text, so nothing is taken off there.
      ReadValue(raw.substr(static_cast<std::size_t>(line.data() - raw.data())));
    } else {
      Error(line_, "the line is neither a key nor a value");
    }
  }
}

void Reader::ReadKey(std::string_view line) {
  key_.clear();
  key_was_bad_ = true;
  const std::size_t end = line.rfind(']');
  if (end == std::string_view::npos) return Error(line_, "a key lacks its \"]\"");
  std::string_view path = line.substr(1, end - 1);
  const bool deletes = !path.empty() && path[0] == '-';
  if (deletes) path.remove_prefix(1);
  const auto parsed = ParseRegistryPath(std::string(path));
  if (!parsed) return Error(line_, "the key has an unknown root");

  RegistryStatement statement;
  statement.kind = deletes ? RegistryStatement::Kind::kDeleteKey : RegistryStatement::Kind::kKey;
  statement.key = RegistryRootName(parsed->root);
  if (!parsed->subkey.empty()) statement.key += "\\" + parsed->subkey;
  statement.line = line_;
  key_was_bad_ = false;
  if (!deletes) key_ = statement.key;
  statements_->push_back(std::move(statement));
}

void Reader::ReadValue(std::string_view line) {
  RegistryStatement statement;
  statement.kind = RegistryStatement::Kind::kValue;
  statement.line = line_;
  if (!ReadName(&line, &statement.name)) {
    return Error(statement.line, "a value's name is not followed by \"=\"");
  }
  const char* message = "a value's data cannot be understood";
  if (!ReadData(line, &statement, &message)) return Error(statement.line, message);
  if (key_.empty()) {
    // Values below a key that could not be read are told once, by that key.
    if (!key_was_bad_) Error(statement.line, "the value stands below no key");
    return;
  }
  statement.key = key_;
  statements_->push_back(std::move(statement));
}

// Reads a text in quotes; `*at` stands behind the first quote, and behind the last one afterwards.
// False if there is no last one.
bool ReadQuoted(std::string_view text, std::size_t* at, std::string* result) {
  while (*at < text.size()) {
    const char c = text[(*at)++];
    if (c == '"') return true;
    if (c != '\\' || *at >= text.size()) {
      result->push_back(c);
      continue;
    }
    const char escaped = text[(*at)++];
    if (escaped == 'n') {
      result->push_back('\n');
    } else if (escaped == 'r') {
      result->push_back('\r');
    } else {
      if (escaped != '\\' && escaped != '"') result->push_back('\\');
      result->push_back(escaped);
    }
  }
  return false;
}

// Reads the name and the "="; the rest stays in `line`.
bool Reader::ReadName(std::string_view* line, std::string* name) {
  std::size_t at = 1;
  if ((*line)[0] == '"' && !ReadQuoted(*line, &at, name)) return false;
  while (at < line->size() && IsBlank((*line)[at])) ++at;
  if (at >= line->size() || (*line)[at] != '=') return false;
  line->remove_prefix(at + 1);
  while (!line->empty() && IsBlank(line->front())) line->remove_prefix(1);
  return true;
}

// True for nothing, or a comment.
bool IsEndOfStatement(std::string_view rest) {
  rest = WithoutEndBlanks(rest);
  return rest.empty() || rest[0] == ';';
}

bool StartsWithNoCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualsNoCase(text.substr(0, start.size()), start);
}

bool Reader::ReadData(std::string_view text, RegistryStatement* statement, const char** message) {
  if (!text.empty() && text[0] == '-' && IsEndOfStatement(text.substr(1))) {
    statement->kind = RegistryStatement::Kind::kDeleteValue;
    return true;
  }
  if (!text.empty() && text[0] == '"') {
    *message = "a text lacks its closing quote";
    return ReadString(text, statement);
  }
  if (StartsWithNoCase(text, "dword:")) {
    *message = "a dword is not one to eight hexadecimal digits";
    statement->type = registry_type::kDword;
    std::string_view digits = text.substr(6);
    digits = WithoutEndBlanks(digits.substr(0, digits.find(';')));
    std::uint32_t number = 0;
    if (!ParseHexNumber(digits, &number)) return false;
    statement->data = LittleEndian(number);
    return true;
  }
  if (StartsWithNoCase(text, "hex")) {
    *message = "a list of bytes is broken or cut short";
    return ReadHex(text.substr(3), statement);
  }
  return false;
}

// A text may hold line ends; the system's own editor writes them as they are.
bool Reader::ReadString(std::string_view text, RegistryStatement* statement) {
  statement->type = registry_type::kString;
  std::string value;
  std::size_t at = 1;
  const std::size_t start = at_;
  const int start_line = line_;
  bool closed = ReadQuoted(text, &at, &value);
  while (!closed && PeekLine(&text) && !text.starts_with('[')) {
    NextLine(&text);
    value += "\r\n";
    at = 0;
    closed = ReadQuoted(text, &at, &value);
  }
  if (!closed || !IsEndOfStatement(text.substr(at))) {
    // What was taken for more lines of the text are statements of their own.
    at_ = start;
    line_ = start_line;
    return false;
  }
  statement->data = Utf8ToUtf16Bytes(value) + std::string(2, '\0');
  return true;
}

// ":" or "(TYPE):" behind the word "hex".
bool Reader::ReadHexType(std::string_view* text, std::uint32_t* type) {
  *type = registry_type::kBinary;
  if (!text->empty() && text->front() == '(') {
    const std::size_t end = text->find(')');
    if (end == std::string_view::npos || !ParseHexNumber(text->substr(1, end - 1), type)) {
      return false;
    }
    text->remove_prefix(end + 1);
  }
  if (text->empty() || text->front() != ':') return false;
  text->remove_prefix(1);
  return true;
}

// One line of a list of bytes. `goes_on`: it ends in "\".
bool Reader::ReadHexBytes(std::string_view line, std::string* bytes, bool* goes_on) {
  *goes_on = false;
  std::size_t at = 0;
  while (at < line.size()) {
    const char c = line[at];
    if (c == ';') return true;
    if (c == '\\') {
      *goes_on = true;
      return IsEndOfStatement(line.substr(at + 1));
    }
    if (c == ',' || IsBlank(c) || c == '\r') {
      ++at;
      continue;
    }
    std::size_t end = at;
    while (end < line.size() && HexDigit(line[end]) >= 0) ++end;
    std::uint32_t byte = 0;
    if (end - at > 2 || !ParseHexNumber(line.substr(at, end - at), &byte)) return false;
    bytes->push_back(static_cast<char>(byte));
    at = end;
  }
  return true;
}

// True if a line can be part of a list of bytes.
bool LooksLikeBytes(std::string_view line) {
  line = WithoutEndBlanks(line);
  return !line.empty() && (HexDigit(line[0]) >= 0 || line[0] == ',' || line[0] == '\\');
}

bool Reader::ReadHex(std::string_view text, RegistryStatement* statement) {
  bool sound = ReadHexType(&text, &statement->type);
  std::string bytes;
  bool goes_on = false;
  if (sound) sound = ReadHexBytes(text, &bytes, &goes_on);
  // The lines of a broken list are still passed over with it.
  if (!sound) goes_on = WithoutEndBlanks(text).ends_with('\\');
  while (goes_on) {
    std::string_view line;
    if (!PeekLine(&line) || !LooksLikeBytes(line)) return false;
    NextLine(&line);
    if (!ReadHexBytes(line, &bytes, &goes_on)) {
      sound = false;
      goes_on = WithoutEndBlanks(line).ends_with('\\');
    }
  }
  if (!sound) return false;
  statement->data = data_is_ansi_ && registry_type::HoldsText(statement->type)
                        ? Utf8ToUtf16Bytes(from_ansi_(bytes))
                        : std::move(bytes);
  return true;
}

// The text of a file as UTF-8.
std::string DecodeFile(std::string_view bytes, const Converter& from_ansi) {
  if (bytes.starts_with(kUtf16Mark)) return Utf16BytesToUtf8(bytes.substr(2));
  // There and back, so that broken characters do not come through.
  if (bytes.starts_with(kUtf8Mark)) return Utf16BytesToUtf8(Utf8ToUtf16Bytes(bytes.substr(3)));
  // Version 5 texts that were typed in an editor come without a mark, in UTF-8.
  if (bytes.starts_with(kHeader5) && IsUtf8(bytes)) return std::string(bytes);
  return from_ansi(std::string(bytes));
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '\n') {
      quoted += "\\n";
    } else if (c == '\r') {
      quoted += "\\r";
    } else {
      if (c == '"' || c == '\\') quoted += '\\';
      quoted += c;
    }
  }
  return quoted + '"';
}

// True if a text in quotes gives exactly these bytes back: UTF-16 that ends in its only NUL and
// holds no line end.
bool FitsInQuotes(const std::string& data, std::string* text) {
  if (data.size() < 2 || data.size() % 2 != 0) return false;
  *text = Utf16BytesToUtf8(std::string_view(data).substr(0, data.size() - 2));
  for (char c : *text) {
    if (c == '\0' || c == '\r' || c == '\n') return false;
  }
  return Utf8ToUtf16Bytes(*text) + std::string(2, '\0') == data;
}

// Writes a list of bytes behind what stands on the line, cut into lines.
void AppendHex(std::string* text, std::size_t line_start, const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (text->size() - line_start + 4 > kHexLineLength) {
      *text += "\\\r\n";
      line_start = text->size();
      *text += "  ";
    }
    const auto byte = static_cast<unsigned char>(bytes[i]);
    *text += kDigits[byte >> 4];
    *text += kDigits[byte & 15];
    if (i + 1 < bytes.size()) *text += ',';
  }
}

std::string HexNumber(std::uint32_t number) {
  static const char kDigits[] = "0123456789abcdef";
  std::string digits;
  do {
    digits.insert(digits.begin(), kDigits[number & 15]);
    number >>= 4;
  } while (number != 0);
  return digits;
}

void AppendValue(std::string* text, const RegistryStatement& value, bool data_is_ansi,
                 const Converter& to_ansi) {
  const std::size_t line_start = text->size();
  *text += value.name.empty() ? "@" : Quoted(value.name);
  *text += '=';
  std::string string;
  if (value.kind == RegistryStatement::Kind::kDeleteValue) {
    *text += '-';
  } else if (value.type == registry_type::kString && FitsInQuotes(value.data, &string)) {
    *text += Quoted(string);
  } else if (value.type == registry_type::kDword && value.data.size() == 4) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i) {
      number = number << 8 | static_cast<unsigned char>(value.data[i - 1]);
    }
    const std::string digits = HexNumber(number);
    *text += "dword:" + std::string(8 - digits.size(), '0') + digits;
  } else {
    *text += value.type == registry_type::kBinary ? "hex:" : "hex(" + HexNumber(value.type) + "):";
    const bool converts = data_is_ansi && registry_type::HoldsText(value.type);
    AppendHex(text, line_start, converts ? to_ansi(Utf16BytesToUtf8(value.data)) : value.data);
  }
  *text += "\r\n";
}

}  // namespace

bool ReadRegistryText(std::string_view bytes, const Converter& from_ansi,
                      std::vector<RegistryStatement>* statements,
                      std::vector<RegistryTextError>* errors) {
  const std::string text = DecodeFile(bytes, from_ansi);
  const std::string_view first =
      WithoutEndBlanks(std::string_view(text).substr(0, text.find('\n')));
  if (first != kHeader4 && first != kHeader5) return false;
  Reader(text, first == kHeader4, from_ansi, statements, errors).ReadAll();
  return true;
}

std::string WriteRegistryText(const std::vector<RegistryStatement>& statements,
                              RegistryTextVersion version, const Converter& to_ansi) {
  const bool ansi = version == RegistryTextVersion::kRegedit4;
  std::string text = ansi ? kHeader4 : kHeader5;
  text += "\r\n";
  for (const RegistryStatement& statement : statements) {
    if (statement.kind == RegistryStatement::Kind::kKey) {
      text += "\r\n[" + statement.key + "]\r\n";
    } else if (statement.kind == RegistryStatement::Kind::kDeleteKey) {
      text += "\r\n[-" + statement.key + "]\r\n";
    } else {
      AppendValue(&text, statement, ansi, to_ansi);
    }
  }
  text += "\r\n";
  if (ansi) return to_ansi(text);
  return std::string(kUtf16Mark) + Utf8ToUtf16Bytes(text);
}

std::optional<RegistryPath> ParseRegistryPath(const std::string& path) {
  static const struct {
    const char* word;
    RegistryRoot root;
  } kRoots[] = {{"HKEY_CLASSES_ROOT", RegistryRoot::kClassesRoot},
                {"HKEY_CURRENT_USER", RegistryRoot::kCurrentUser},
                {"HKEY_LOCAL_MACHINE", RegistryRoot::kLocalMachine},
                {"HKCR", RegistryRoot::kClassesRoot},
                {"HKCU", RegistryRoot::kCurrentUser},
                {"HKLM", RegistryRoot::kLocalMachine}};
  const std::size_t separator = path.find('\\');
  const std::string word = path.substr(0, separator);
  for (const auto& entry : kRoots) {
    if (!EqualsNoCase(word, entry.word)) continue;
    std::string subkey = separator == std::string::npos ? "" : path.substr(separator + 1);
    while (!subkey.empty() && subkey.back() == '\\') subkey.pop_back();
    return RegistryPath{entry.root, subkey};
  }
  return std::nullopt;
}

const char* RegistryRootName(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::kClassesRoot:
      return "HKEY_CLASSES_ROOT";
    case RegistryRoot::kCurrentUser:
      return "HKEY_CURRENT_USER";
    case RegistryRoot::kLocalMachine:
      return "HKEY_LOCAL_MACHINE";
  }
  return "";
}

}  // namespace quorvale
