#include "platform/host/disk/wine_registry.h"

#include <string_view>

#include "base/text.h"

namespace quorvale::host {
namespace {

constexpr char kHead[] = "WINE REGISTRY Version ";
constexpr char kBase[] = ";; All keys relative to ";

// The value of a digit of a number to this base, or -1.
int Digit(char c, int base) {
  int digit = -1;
  if (c >= '0' && c <= '9') digit = c - '0';
  if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
  if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
  return digit < base ? digit : -1;
}

// Takes up to `most` digits off the text.
std::uint32_t TakeNumber(std::string_view* text, int base, std::size_t most) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < most && !text->empty() && Digit(text->front(), base) >= 0; ++i) {
    number = number * static_cast<std::uint32_t>(base) +
             static_cast<std::uint32_t>(Digit(text->front(), base));
    text->remove_prefix(1);
  }
  return number;
}

void AppendUnit(std::string* units, std::uint32_t unit) {
  units->push_back(static_cast<char>(unit & 0xFF));
  units->push_back(static_cast<char>(unit >> 8 & 0xFF));
}

// Takes one character behind a "\" off the text.
std::uint32_t TakeEscaped(std::string_view* text) {
  if (Digit(text->front(), 8) >= 0) return TakeNumber(text, 8, 3);
  const char letter = text->front();
  text->remove_prefix(1);
  if (letter == 'x') return TakeNumber(text, 16, 4);
  static constexpr std::string_view kLetters = "abefnrtv";
  static constexpr char kMeanings[] = {'\a', '\b', 0x1B, '\f', '\n', '\r', '\t', '\v'};
  const std::size_t at = kLetters.find(letter);
  return static_cast<unsigned char>(at == std::string_view::npos ? letter : kMeanings[at]);
}

// Takes text as UTF-16 off the line, as far as `end`, which goes with it. False without an end.
bool TakeText(std::string_view* line, char end, std::string* units) {
  while (!line->empty()) {
    if (line->front() == end) {
      line->remove_prefix(1);
      return true;
    }
    if (line->front() == '\\' && line->size() > 1) {
      line->remove_prefix(1);
      AppendUnit(units, TakeEscaped(line));
      continue;
    }
    std::size_t plain = 1;
    while (plain < line->size() && (*line)[plain] != end && (*line)[plain] != '\\') ++plain;
    *units += Utf8ToUtf16Bytes(line->substr(0, plain));
    line->remove_prefix(plain);
  }
  return false;
}

bool TakeWord(std::string_view* text, std::string_view word) {
  if (!text->starts_with(word)) return false;
  text->remove_prefix(word.size());
  return true;
}

class Reader {
 public:
  Reader(std::string_view text, const HiveFilter& wanted, HiveKey* root)
      : text_(text), wanted_(wanted), root_(root) {}

  void ReadAll() {
    std::string_view line;
    NextLine(&line);
    while (NextLine(&line)) {
      if (line.empty() || line[0] == ';' || line[0] == '#') continue;
      const bool understood = line[0] == '[' ? ReadKey(line) : ReadValue(line);
      if (!understood) ++lost_lines_;
    }
  }
  std::size_t lost_lines() const { return lost_lines_; }

 private:
  bool NextLine(std::string_view* line) {
    if (text_.empty()) return false;
    const std::size_t end = text_.find('\n');
    *line = text_.substr(0, end);
    text_.remove_prefix(end == std::string_view::npos ? text_.size() : end + 1);
    if (!line->empty() && line->back() == '\r') line->remove_suffix(1);
    return true;
  }

  // "[Software\\Wine] 1234567890"
  bool ReadKey(std::string_view line) {
    key_ = nullptr;
    key_is_wanted_ = true;
    line.remove_prefix(1);
    std::string units;
    if (!TakeText(&line, ']', &units)) return false;
    const std::string path = Utf16BytesToUtf8(units);
    const std::vector<std::string> names = Split(path, "\\");
    if (names.size() > HiveBounds::kDepth || path.size() > HiveBounds::kNameBytes) return false;
    for (const std::string& name : names) {
      if (!IsHiveKeyName(name)) return false;
    }
    key_is_wanted_ = IsWanted(names);
    if (key_is_wanted_) key_ = Make(names);
    return key_ != nullptr || !key_is_wanted_;
  }

  bool IsWanted(const std::vector<std::string>& names) const {
    if (!wanted_) return true;
    std::string path;
    for (const std::string& name : names) {
      path += (path.empty() ? "" : "\\") + name;
      if (!wanted_(path)) return false;
    }
    return true;
  }

  HiveKey* Make(const std::vector<std::string>& names) {
    HiveKey* key = root_;
    for (const std::string& name : names) {
      // The text is sorted: the key that is looked for is the last one that was made.
      HiveKey* child = nullptr;
      if (!key->subkeys.empty() && EqualsNoCase(key->subkeys.back().name, name)) {
        child = &key->subkeys.back();
      } else {
        if (++keys_ > HiveBounds::kKeys) return nullptr;
        key->subkeys.emplace_back();
        child = &key->subkeys.back();
        child->name = name;
      }
      key = child;
    }
    return key;
  }

  // "@=..." or "\"Name\"=..."
  bool ReadValue(std::string_view line) {
    HiveValue value;
    std::string units;
    const bool has_name =
        TakeWord(&line, "@") || (TakeWord(&line, "\"") && TakeText(&line, '"', &units));
    value.name = Utf16BytesToUtf8(units);
    if (!has_name || value.name.size() > HiveBounds::kNameBytes || !TakeWord(&line, "=") ||
        !ReadData(line, &value)) {
      return false;
    }
    if (key_ == nullptr) return !key_is_wanted_;
    key_->values.push_back(std::move(value));
    return true;
  }

  bool ReadData(std::string_view line, HiveValue* value) {
    if (TakeWord(&line, "dword:")) {
      if (line.empty() || Digit(line.front(), 16) < 0) return false;
      value->type = registry_type::kDword;
      const std::uint32_t number = TakeNumber(&line, 16, 8);
      AppendUnit(&value->data, number & 0xFFFF);
      AppendUnit(&value->data, number >> 16);
      return true;
    }
    if (TakeWord(&line, "hex")) {
      value->type = registry_type::kBinary;
      return TakeType(&line, value) && TakeWord(&line, ":") && ReadBytes(line, &value->data);
    }
    value->type = registry_type::kString;
    if (TakeWord(&line, "str") && (!TakeType(&line, value) || !TakeWord(&line, ":"))) return false;
    if (!TakeWord(&line, "\"") || !TakeText(&line, '"', &value->data)) return false;
    AppendUnit(&value->data, 0);
    return true;
  }

  // "(2)", where it stands.
  static bool TakeType(std::string_view* line, HiveValue* value) {
    if (!TakeWord(line, "(")) return true;
    value->type = TakeNumber(line, 16, 8);
    return TakeWord(line, ")");
  }

  // "01,02,\" and the lines that follow.
  bool ReadBytes(std::string_view line, std::string* bytes) {
    for (;;) {
      while (!line.empty() && (line.front() == ',' || line.front() == ' ')) line.remove_prefix(1);
      if (line.empty()) return true;
      if (line == "\\") {
        if (!NextLine(&line)) return false;
        continue;
      }
      if (Digit(line.front(), 16) < 0) return false;
      bytes->push_back(static_cast<char>(TakeNumber(&line, 16, 2)));
    }
  }

  std::string_view text_;
  const HiveFilter& wanted_;
  HiveKey* const root_;
  HiveKey* key_ = nullptr;  // null while no values are taken
  bool key_is_wanted_ = true;
  std::size_t keys_ = 0;
  std::size_t lost_lines_ = 0;
};

}  // namespace

bool IsWineRegistry(const std::string& bytes) { return bytes.starts_with(kHead); }

std::string WineRegistryBase(const std::string& bytes) {
  const std::size_t at = bytes.find(kBase);
  if (!IsWineRegistry(bytes) || at == std::string::npos || at > 4096) return "";
  std::string_view line(bytes);
  line = line.substr(at + sizeof(kBase) - 1);
  line = line.substr(0, line.find_first_of("\r\n"));
  std::string units;
  TakeText(&line, '\n', &units);
  return Utf16BytesToUtf8(units);
}

std::optional<Hive> ReadWineRegistry(const std::string& bytes, const HiveFilter& wanted,
                                     std::string* problem) {
  if (!IsWineRegistry(bytes)) {
    *problem = "it is no registry of Wine";
    return std::nullopt;
  }
  Hive hive;
  Reader reader(bytes, wanted, &hive.root);
  reader.ReadAll();
  if (reader.lost_lines() > 0) {
    hive.remarks.push_back(std::to_string(reader.lost_lines()) +
                           " lines of it could not be understood");
  }
  return hive;
}

}  // namespace quorvale::host
