#include "platform/host/registry_store.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/text.h"
#include "platform/host/host_file.h"
#include "platform/host/sort_name.h"

namespace quorvale::host {
namespace {

constexpr RegistryRoot kAllRoots[] = {RegistryRoot::kClassesRoot, RegistryRoot::kCurrentUser,
                                      RegistryRoot::kLocalMachine};

std::size_t IndexOf(RegistryRoot root) { return static_cast<std::size_t>(root); }

// The parts of a key path; leading, trailing and doubled "\" do not count.
std::vector<std::string> KeyParts(const std::string& subkey) {
  std::vector<std::string> parts;
  for (std::string& part : Split(subkey, "\\")) {
    if (!part.empty()) parts.push_back(std::move(part));
  }
  return parts;
}

// At most 255 characters, none of them a control character.
bool IsKeyName(const std::string& name) {
  if (Utf8ToUtf16Bytes(name).size() > 255 * 2) return false;
  return std::none_of(name.begin(), name.end(), [](char c) { return c >= 0 && c < ' '; });
}

}  // namespace

struct HostRegistryStore::Key {
  struct Value {
    std::string name;
    std::uint32_t type = registry_type::kNone;
    std::string data;  // text types in UTF-16LE
    std::uint64_t order = 0;
  };

  std::string name;
  std::map<std::string, std::unique_ptr<Key>> subkeys;  // by SortName
  std::map<std::string, Value> values;                  // by SortName
  std::uint64_t next_order = 0;

  // Values in the order of their making.
  std::vector<const Value*> OrderedValues() const {
    std::vector<const Value*> ordered;
    ordered.reserve(values.size());
    for (const auto& [sort_name, value] : values) ordered.push_back(&value);
    std::sort(ordered.begin(), ordered.end(),
              [](const Value* a, const Value* b) { return a->order < b->order; });
    return ordered;
  }

  // Appends this key and all below it. Keys nest at most as deep as the path of one is long, and
  // each is taken off a list instead of the stack.
  static void Append(const Key& top, const std::string& path,
                     std::vector<RegistryStatement>* statements) {
    std::vector<std::pair<const Key*, std::string>> waiting{{&top, path}};
    while (!waiting.empty()) {
      const auto [key, key_path] = std::move(waiting.back());
      waiting.pop_back();
      RegistryStatement statement;
      statement.key = key_path;
      statement.kind = RegistryStatement::Kind::kKey;
      statements->push_back(statement);
      statement.kind = RegistryStatement::Kind::kValue;
      for (const Value* value : key->OrderedValues()) {
        statement.name = value->name;
        statement.type = value->type;
        statement.data = value->data;
        statements->push_back(statement);
      }
      for (auto subkey = key->subkeys.rbegin(); subkey != key->subkeys.rend(); ++subkey) {
        waiting.emplace_back(subkey->second.get(), key_path + "\\" + subkey->second->name);
      }
    }
  }
};

HostRegistryStore::HostRegistryStore(const std::string& machine_folder, const CodePage& code_page)
    : machine_folder_(machine_folder), code_page_(code_page) {
  for (auto& root : roots_) root = std::make_unique<Key>();
}

HostRegistryStore::~HostRegistryStore() = default;

std::string HostRegistryStore::FilePath(RegistryRoot root) const {
  return machine_folder_ + "/registry/" + RegistryRootName(root) + ".reg";
}

bool HostRegistryStore::Load(MachineError* error) {
  for (RegistryRoot root : kAllRoots) {
    if (!LoadRoot(root, error)) return false;
  }
  return true;
}

bool HostRegistryStore::LoadRoot(RegistryRoot root, MachineError* error) {
  const std::string path = FilePath(root);
  struct stat info {};
  if (stat(path.c_str(), &info) != 0 && errno == ENOENT) return true;
  const std::optional<std::string> bytes = ReadHostFile(path);
  if (!bytes) {
    *error = {path, 0, "the file cannot be read"};
    return false;
  }
  std::vector<RegistryStatement> statements;
  std::vector<RegistryTextError> errors;
  const auto from_ansi = [this](const std::string& text) { return code_page_.ToUtf8(text); };
  if (!ReadRegistryText(*bytes, from_ansi, &statements, &errors)) {
    *error = {path, 1, "the file does not begin as a registry editor's text does"};
    return false;
  }
  for (const RegistryStatement& statement : statements) {
    const auto parsed = ParseRegistryPath(statement.key);
    if (!parsed || parsed->root != root) {
      errors.push_back({statement.line, "the key does not belong to this root"});
    }
  }
  if (!errors.empty()) {
    const auto first = std::min_element(
        errors.begin(), errors.end(), [](const auto& a, const auto& b) { return a.line < b.line; });
    *error = {path, first->line, first->message};
    return false;
  }
  Merge(statements);
  changed_[IndexOf(root)] = false;
  return true;
}

bool HostRegistryStore::HasChanges() const {
  return std::find(std::begin(changed_), std::end(changed_), true) != std::end(changed_);
}

bool HostRegistryStore::Flush(std::string* error) {
  if (!HasChanges()) return true;
  const std::string folder = machine_folder_ + "/registry";
  if (mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST) {
    *error = folder + ": " + std::strerror(errno);
    return false;
  }
  for (RegistryRoot root : kAllRoots) {
    if (!changed_[IndexOf(root)]) continue;
    if (!WriteRoot(root, error)) return false;
    changed_[IndexOf(root)] = false;
  }
  return true;
}

bool HostRegistryStore::WriteRoot(RegistryRoot root, std::string* error) const {
  const auto to_ansi = [this](const std::string& text) { return code_page_.FromUtf8(text); };
  return ReplaceHostFile(
      FilePath(root), WriteRegistryText(Export(root, ""), RegistryTextVersion::kVersion5, to_ansi),
      error);
}

HostRegistryStore::Key* HostRegistryStore::Find(RegistryRoot root,
                                                const std::string& subkey) const {
  Key* key = roots_[IndexOf(root)].get();
  for (const std::string& part : KeyParts(subkey)) {
    const auto found = key->subkeys.find(SortName(part));
    if (found == key->subkeys.end()) return nullptr;
    key = found->second.get();
  }
  return key;
}

HostRegistryStore::Key* HostRegistryStore::Make(RegistryRoot root, const std::string& subkey) {
  const std::vector<std::string> parts = KeyParts(subkey);
  // The system's registry nests no deeper.
  if (parts.size() > 512 || !std::all_of(parts.begin(), parts.end(), IsKeyName)) return nullptr;
  Key* key = roots_[IndexOf(root)].get();
  for (const std::string& part : parts) {
    std::unique_ptr<Key>& child = key->subkeys[SortName(part)];
    if (!child) {
      child = std::make_unique<Key>();
      child->name = part;
      changed_[IndexOf(root)] = true;
    }
    key = child.get();
  }
  return key;
}

std::string HostRegistryStore::ToAnsiData(std::uint32_t type, const std::string& data) const {
  return registry_type::HoldsText(type) ? code_page_.FromUtf8(Utf16BytesToUtf8(data)) : data;
}

std::string HostRegistryStore::ToUnicodeData(std::uint32_t type, const std::string& data) const {
  if (!registry_type::HoldsText(type)) return data;
  std::string unicode = Utf8ToUtf16Bytes(code_page_.ToUtf8(data));
  // The system adds the NUL that a caller forgot to count.
  if (!data.empty() && data.back() != '\0') unicode.append(2, '\0');
  return unicode;
}

bool HostRegistryStore::KeyExists(RegistryRoot root, const std::string& subkey) {
  return Find(root, subkey) != nullptr;
}

long HostRegistryStore::CreateKey(RegistryRoot root, const std::string& subkey) {
  return Make(root, subkey) == nullptr ? registry_status::kDenied : registry_status::kOk;
}

long HostRegistryStore::QueryValue(RegistryRoot root, const std::string& subkey,
                                   const std::string& name, RegistryValue* value) {
  const Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  const auto found = key->values.find(SortName(name));
  if (found == key->values.end()) return registry_status::kNotFound;
  value->name = found->second.name;
  value->type = found->second.type;
  value->data = ToAnsiData(value->type, found->second.data);
  return registry_status::kOk;
}

long HostRegistryStore::SetValue(RegistryRoot root, const std::string& subkey,
                                 const std::string& name, std::uint32_t type,
                                 const std::string& data) {
  return SetUnicodeValue(root, subkey, name, type, ToUnicodeData(type, data));
}

long HostRegistryStore::SetUnicodeValue(RegistryRoot root, const std::string& subkey,
                                        const std::string& name, std::uint32_t type,
                                        const std::string& data) {
  Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  const auto [found, is_new] = key->values.try_emplace(SortName(name));
  Key::Value& value = found->second;
  if (is_new) {
    value.name = name;
    value.order = key->next_order++;
  }
  if (is_new || value.type != type || value.data != data) changed_[IndexOf(root)] = true;
  value.type = type;
  value.data = data;
  return registry_status::kOk;
}

long HostRegistryStore::DeleteValue(RegistryRoot root, const std::string& subkey,
                                    const std::string& name) {
  Key* key = Find(root, subkey);
  if (key == nullptr || key->values.erase(SortName(name)) == 0) return registry_status::kNotFound;
  changed_[IndexOf(root)] = true;
  return registry_status::kOk;
}

long HostRegistryStore::QueryText(RegistryRoot root, const std::string& subkey,
                                  const std::string& name, std::string* text) {
  const Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  const auto found = key->values.find(SortName(name));
  if (found == key->values.end() || !registry_type::IsText(found->second.type)) {
    return registry_status::kNotFound;
  }
  *text = Utf16BytesToUtf8(found->second.data);
  if (text->ends_with('\0')) text->pop_back();
  return registry_status::kOk;
}

long HostRegistryStore::SetText(RegistryRoot root, const std::string& subkey,
                                const std::string& name, std::uint32_t type,
                                const std::string& text) {
  return SetUnicodeValue(root, subkey, name, type, Utf8ToUtf16Bytes(text + '\0'));
}

long HostRegistryStore::DeleteKey(RegistryRoot root, const std::string& subkey) {
  const std::vector<std::string> parts = KeyParts(subkey);
  if (parts.empty() || Find(root, subkey) == nullptr) return registry_status::kNotFound;
  std::string parent;
  for (std::size_t i = 0; i + 1 < parts.size(); ++i) parent += parts[i] + "\\";
  Find(root, parent)->subkeys.erase(SortName(parts.back()));
  changed_[IndexOf(root)] = true;
  return registry_status::kOk;
}

long HostRegistryStore::ListSubkeys(RegistryRoot root, const std::string& subkey,
                                    std::vector<std::string>* names) {
  const Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  names->clear();
  for (const auto& [sort_name, child] : key->subkeys) names->push_back(child->name);
  return registry_status::kOk;
}

long HostRegistryStore::ListValues(RegistryRoot root, const std::string& subkey,
                                   std::vector<RegistryValue>* values) {
  const Key* key = Find(root, subkey);
  if (key == nullptr) return registry_status::kNotFound;
  values->clear();
  for (const Key::Value* value : key->OrderedValues()) {
    values->push_back({value->name, value->type, ToAnsiData(value->type, value->data)});
  }
  return registry_status::kOk;
}

void HostRegistryStore::Merge(const std::vector<RegistryStatement>& statements) {
  for (const RegistryStatement& statement : statements) {
    const auto path = ParseRegistryPath(statement.key);
    if (!path) continue;
    switch (statement.kind) {
      case RegistryStatement::Kind::kKey:
        Make(path->root, path->subkey);
        break;
      case RegistryStatement::Kind::kDeleteKey:
        DeleteKey(path->root, path->subkey);
        break;
      case RegistryStatement::Kind::kValue:
        SetUnicodeValue(path->root, path->subkey, statement.name, statement.type, statement.data);
        break;
      case RegistryStatement::Kind::kDeleteValue:
        DeleteValue(path->root, path->subkey, statement.name);
        break;
    }
  }
}

std::vector<RegistryStatement> HostRegistryStore::Export(RegistryRoot root,
                                                         const std::string& subkey) const {
  std::vector<RegistryStatement> statements;
  const Key* key = Find(root, subkey);
  if (key == nullptr) return statements;
  // The path with the names in the case that they have in the store.
  std::string path = RegistryRootName(root);
  std::string walked;
  for (const std::string& part : KeyParts(subkey)) {
    walked += part + "\\";
    path += "\\" + Find(root, walked)->name;
  }
  Key::Append(*key, path, &statements);
  return statements;
}

}  // namespace quorvale::host
