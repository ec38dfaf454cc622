#include "support/memory_registry_editor.h"

#include <optional>
#include <vector>

#include "base/text.h"
#include "platform/file_toolkit.h"
#include "platform/registry_text.h"

namespace quorvale {
namespace {

// The parts between quotes: the file, and of an export the key.
std::vector<std::string> QuotedParts(const std::string& command) {
  std::vector<std::string> parts;
  for (std::size_t start = command.find('"'); start != std::string::npos;) {
    const std::size_t end = command.find('"', start + 1);
    if (end == std::string::npos) break;
    parts.push_back(command.substr(start + 1, end - start - 1));
    start = command.find('"', end + 1);
  }
  return parts;
}

class Exporter {
 public:
  Exporter(RegistryStore& registry, SystemInfo& system) : registry_(registry), system_(system) {}

  // False if something below the key could not be read.
  bool Add(const RegistryPath& path) {
    const std::string key = RegistryRootName(path.root) + ("\\" + path.subkey);
    RegistryStatement& statement = statements.emplace_back();
    statement.key = key;
    std::vector<RegistryValue> values;
    std::vector<std::string> names;
    if (registry_.ListValues(path.root, path.subkey, &values) != registry_status::kOk) return false;
    for (RegistryValue& value : values) {
      if (registry_type::HoldsText(value.type)) {
        value.data = Utf8ToUtf16Bytes(system_.FromAnsi(value.data));
      }
      RegistryStatement& statement_of_value = statements.emplace_back();
      statement_of_value.kind = RegistryStatement::Kind::kValue;
      statement_of_value.key = key;
      statement_of_value.name = value.name;
      statement_of_value.type = value.type;
      statement_of_value.data = value.data;
    }
    if (registry_.ListSubkeys(path.root, path.subkey, &names) != registry_status::kOk) return false;
    for (const std::string& name : names) {
      if (!Add({path.root, path.subkey + "\\" + name})) return false;
    }
    return true;
  }

  std::vector<RegistryStatement> statements;

 private:
  RegistryStore& registry_;
  SystemInfo& system_;
};

}  // namespace

MemoryRegistryEditor::MemoryRegistryEditor(MemoryShell& shell, Files& files,
                                           RegistryStore& registry, SystemInfo& system)
    : files_(files), registry_(registry), system_(system) {
  shell.on_end = [this](const std::string& command) { Run(command); };
}

void MemoryRegistryEditor::Run(const std::string& command) {
  if (!Contains(FoldCase(command), "regedit.exe")) return;
  const std::vector<std::string> parts = QuotedParts(command);
  if (parts.size() == 2) {
    Export(parts[0], parts[1]);
  } else if (parts.size() == 1) {
    Import(parts[0]);
  }
}

// Where the key cannot be read the real one writes nothing.
void MemoryRegistryEditor::Export(const std::string& file, const std::string& key) {
  const std::optional<RegistryPath> path = ParseRegistryPath(key);
  if (!path || !registry_.KeyExists(path->root, path->subkey)) return;
  Exporter exporter(registry_, system_);
  if (!exporter.Add(*path)) return;
  FileToolkit(files_, [] {})
      .WriteWhole(file, WriteRegistryText(
                            exporter.statements, RegistryTextVersion::kVersion5,
                            [this](const std::string& text) { return system_.ToAnsi(text); }));
}

// What it cannot set it passes over.
void MemoryRegistryEditor::Import(const std::string& file) {
  const std::optional<std::string> bytes = FileToolkit(files_, [] {}).ReadWhole(file);
  if (!bytes) return;
  std::vector<RegistryStatement> statements;
  std::vector<RegistryTextError> errors;
  const auto from_ansi = [this](const std::string& text) { return system_.FromAnsi(text); };
  if (!ReadRegistryText(*bytes, from_ansi, &statements, &errors)) return;
  for (const RegistryStatement& statement : statements) {
    const std::optional<RegistryPath> path = ParseRegistryPath(statement.key);
    if (!path) continue;
    if (statement.kind == RegistryStatement::Kind::kKey) {
      registry_.CreateKey(path->root, path->subkey);
    } else if (statement.kind == RegistryStatement::Kind::kValue) {
      const bool is_text = registry_type::HoldsText(statement.type);
      registry_.SetValue(
          path->root, path->subkey, statement.name, statement.type,
          is_text ? system_.ToAnsi(Utf16BytesToUtf8(statement.data)) : statement.data);
    }
  }
}

}  // namespace quorvale
