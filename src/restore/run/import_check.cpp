#include "restore/run/import_check.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "base/text.h"
#include "discovery/products/outlook_express_places.h"
#include "platform/registry_text.h"

namespace quorvale {
namespace {

using Statement = RegistryStatement;

// What a file says of one key.
struct KeyOfFile {
  RegistryPath path;
  std::vector<const Statement*> values;
};

std::string TextOf(const Statement& value) {
  std::string text = Utf16BytesToUtf8(value.data);
  while (text.ends_with('\0')) text.pop_back();
  return text;
}

bool Stands(Program& program, const RegistryPath& path, const Statement& value) {
  RegistryStore& store = program.registry().store();
  if (registry_type::IsText(value.type)) {
    std::string text;
    if (store.QueryText(path.root, path.subkey, value.name, &text) != registry_status::kOk) {
      return false;
    }
    const std::string meant = TextOf(value);
    return text == meant || text == program.registry().AsString(meant);
  }
  RegistryValue there;
  if (store.QueryValue(path.root, path.subkey, value.name, &there) != registry_status::kOk) {
    return false;
  }
  // Several texts are in the code page here and in full in the file.
  return there.type == value.type &&
         (there.data == value.data || value.type == registry_type::kMultiString);
}

bool Stands(Program& program, const KeyOfFile& key) {
  if (!program.registry().store().KeyExists(key.path.root, key.path.subkey)) return false;
  return std::all_of(key.values.begin(), key.values.end(),
                     [&](const Statement* value) { return Stands(program, key.path, *value); });
}

std::map<std::string, KeyOfFile> KeysOf(const std::vector<Statement>& statements) {
  std::map<std::string, KeyOfFile> keys;
  for (const Statement& statement : statements) {
    const std::optional<RegistryPath> path = ParseRegistryPath(statement.key);
    if (!path) continue;
    const std::string id = FoldCase(statement.key);
    if (statement.kind == Statement::Kind::kDeleteKey) keys.erase(id);
    if (statement.kind == Statement::Kind::kKey) keys[id].path = *path;
    // A restore writes the store's folder itself, perhaps before the import is through.
    const bool is_own = statement.name == kStoreRootValue;
    if (statement.kind == Statement::Kind::kValue && !is_own) keys[id].values.push_back(&statement);
  }
  return keys;
}

}  // namespace

bool ImportTook(Program& program, const std::string& file) {
  const std::optional<std::string> bytes = program.files().ReadWhole(file);
  if (!bytes) return false;
  std::vector<Statement> statements;
  std::vector<RegistryTextError> errors;
  const auto from_ansi = [&program](const std::string& text) {
    return program.platform().system.FromAnsi(text);
  };
  if (!ReadRegistryText(*bytes, from_ansi, &statements, &errors)) return false;
  const std::map<std::string, KeyOfFile> keys = KeysOf(statements);
  return std::all_of(keys.begin(), keys.end(),
                     [&program](const auto& key) { return Stands(program, key.second); });
}

}  // namespace quorvale
