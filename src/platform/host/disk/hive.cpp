#include "platform/host/disk/hive.h"

#include <algorithm>

#include "base/text.h"

namespace quorvale::host {

const HiveKey* HiveKey::Find(const std::string& path) const {
  const HiveKey* key = this;
  for (const std::string& part : Split(path, "\\")) {
    if (part.empty()) continue;
    const auto found =
        std::find_if(key->subkeys.begin(), key->subkeys.end(),
                     [&part](const HiveKey& sub) { return EqualsNoCase(sub.name, part); });
    if (found == key->subkeys.end()) return nullptr;
    key = &*found;
  }
  return key;
}

const HiveValue* HiveKey::Value(const std::string& value_name) const {
  for (const HiveValue& value : values) {
    if (EqualsNoCase(value.name, value_name)) return &value;
  }
  return nullptr;
}

std::string HiveKey::Text(const std::string& value_name) const {
  const HiveValue* value = Value(value_name);
  if (value == nullptr ||
      (value->type != registry_type::kString && value->type != registry_type::kExpandString)) {
    return "";
  }
  const std::string text = Utf16BytesToUtf8(value->data);
  return text.substr(0, text.find('\0'));
}

std::optional<std::uint32_t> HiveKey::Number(const std::string& value_name) const {
  const HiveValue* value = Value(value_name);
  if (value == nullptr || value->data.size() != 4) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = 4; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(value->data[i - 1]);
  }
  return number;
}

bool IsHiveKeyName(const std::string& name) {
  return !name.empty() && std::none_of(name.begin(), name.end(),
                                       [](char c) { return (c >= 0 && c < ' ') || c == '\\'; });
}

void AppendStatements(const HiveKey& root, const std::string& path,
                      std::vector<RegistryStatement>* statements) {
  RegistryStatement statement;
  statement.kind = RegistryStatement::Kind::kKey;
  statement.key = path;
  statements->push_back(statement);
  statement.kind = RegistryStatement::Kind::kValue;
  for (const HiveValue& value : root.values) {
    statement.name = value.name;
    statement.type = value.type;
    statement.data = value.data;
    statements->push_back(statement);
  }
  for (const HiveKey& key : root.subkeys) AppendStatements(key, path + "\\" + key.name, statements);
}

}  // namespace quorvale::host
