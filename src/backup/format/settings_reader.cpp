#include <iterator>
#include <utility>

#include "backup/format/settings_file.h"
#include "backup/format/settings_items.h"
#include "core/program/full_text.h"
#include "core/program/program.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

using namespace settings_items;

// Takes the next line off `text`, without its line end.
std::string_view TakeLine(std::string_view* text) {
  const size_t end = text->find('\n');
  std::string_view line = text->substr(0, end);
  text->remove_prefix(end == std::string_view::npos ? text->size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// The text of a line "<name>text</name>", whatever the text holds.
std::optional<std::string> ElementText(std::string_view line, std::string_view name) {
  const std::string open = "<" + std::string(name) + ">";
  const std::string close = "</" + std::string(name) + ">";
  if (line.size() < open.size() + close.size()) return std::nullopt;
  if (!line.starts_with(open) || !line.ends_with(close)) return std::nullopt;
  line.remove_prefix(open.size());
  line.remove_suffix(close.size());
  return std::string(line);
}

// The text of a line "<anything>text</anything>".
std::optional<std::string> AnyElementText(std::string_view line) {
  const size_t end = line.find('>');
  if (!line.starts_with('<') || end == std::string_view::npos) return std::nullopt;
  return ElementText(line, line.substr(1, end - 1));
}

// Where the key of "key' >path" ends. A key may hold the mark itself: the one is meant behind
// which a tree path begins.
size_t FindAttributeEnd(std::string_view rest) {
  const std::string_view mark = kAttributeEnd;
  const size_t first = rest.find(mark);
  for (size_t at = first; at != std::string_view::npos; at = rest.find(mark, at + 1)) {
    if (ProductOfItem(rest.substr(at + mark.size())) != nullptr) return at;
  }
  return first;
}

// A line "<OE Key='key' >path". The element's name goes to `element`.
bool ParseItemLine(std::string_view line, SettingsItem* item, std::string* element) {
  constexpr std::string_view kKey = " Key='";
  const size_t key = line.substr(0, kLongestElement + kKey.size() + 1).find(kKey);
  if (!line.starts_with('<') || key == std::string_view::npos) return false;
  const std::string_view rest = line.substr(key + kKey.size());
  const size_t end = FindAttributeEnd(rest);
  if (end == std::string_view::npos) return false;
  *element = std::string(line.substr(1, key - 1));
  item->key = std::string(rest.substr(0, end));
  item->path = std::string(rest.substr(end + std::string_view(kAttributeEnd).size()));
  return true;
}

// The item list up to its closing line. An item without a closing line of its own ends where the
// next one starts; further lines of a path belong to it.
void ParseItems(std::string_view* text, std::vector<SettingsItem>* items) {
  std::string element;  // of the item that is open, "" if none is
  while (!text->empty()) {
    const std::string_view line = TakeLine(text);
    if (line == "</ItemsForBackup>") return;
    SettingsItem item;
    if (!element.empty() && line == "</" + element + ">") {
      element.clear();
    } else if (ParseItemLine(line, &item, &element)) {
      const std::string close = "</" + element + ">";
      if (item.path.ends_with(close)) {
        item.path.resize(item.path.size() - close.size());
        element.clear();
      }
      items->push_back(std::move(item));
    } else if (!element.empty()) {
      items->back().path += "\r\n" + std::string(line);
    }
  }
}

// The elements' names are not looked at: their places count, and what follows the last one is not
// kept.
void ParseOptions(std::string_view* text, SettingsOptions* options) {
  std::optional<std::string>* const places[] = {&options->log, &options->compression,
                                                &options->level, &options->password,
                                                &options->protection};
  size_t place = 0;
  while (!text->empty()) {
    const std::string_view line = TakeLine(text);
    if (line == "</AdvancedSettings>") return;
    std::optional<std::string> value = AnyElementText(line);
    if (value && place < std::size(places)) *places[place++] = std::move(value);
  }
}

// "<Main Process='name'>".
bool ParseMainLine(std::string_view line, SettingsFile* settings) {
  if (!line.starts_with("<Main")) return false;
  constexpr std::string_view kStart = "<Main Process='";
  if (line.starts_with(kStart) && line.ends_with("'>") && line.size() >= kStart.size() + 2) {
    settings->process_name =
        std::string(line.substr(kStart.size(), line.size() - kStart.size() - 2));
  }
  return true;
}

void ParseMainChild(std::string_view line, std::string_view* rest, SettingsFile* settings) {
  if (line == "<ItemsForBackup>") return ParseItems(rest, &settings->items);
  if (line == "<AdvancedSettings>") return ParseOptions(rest, &settings->options);
  if (auto folder = ElementText(line, "BackupFolder")) settings->backup_folder = *folder;
  if (auto name = ElementText(line, "BackupName")) settings->backup_name = name;
  if (auto type = ElementText(line, "BackupType")) settings->backup_type = type;
  if (auto path = ElementText(line, "BackupPath")) settings->backup_path = path;
}

}  // namespace

bool ParseSettings(std::string_view text, SettingsFile* settings) {
  *settings = SettingsFile();
  bool found = false;
  while (!text.empty() && !found) found = ParseMainLine(TakeLine(&text), settings);
  while (!text.empty()) {
    const std::string_view line = TakeLine(&text);
    if (line == "</Main>") break;
    ParseMainChild(line, &text, settings);
  }
  return found;
}

bool ReadSettingsFile(Program& program, const std::string& path, SettingsFile* settings) {
  *settings = SettingsFile();
  const std::optional<std::string> bytes = program.files().ReadWhole(path);
  return bytes && ParseSettings(program.platform().system.FromAnsi(*bytes), settings);
}

bool ReadHandOver(Program& program, const std::string& path, SettingsFile* settings) {
  *settings = SettingsFile();
  const std::optional<std::string> text = ReadTextFile(program, path);
  return text && ParseSettings(*text, settings);
}

}  // namespace quorvale
