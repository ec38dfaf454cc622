#include "machine_facts.h"

#include <map>
#include <optional>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "platform/file_toolkit.h"
#include "platform/registry_text.h"
#include "platform/windows/files.h"
#include "platform/windows/text_calls.h"
#include "platform/windows/windows_headers.h"

namespace quorvale::driver {
namespace {

using windows::Wide;

HKEY KeyOf(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::kClassesRoot:
      return HKEY_CLASSES_ROOT;
    case RegistryRoot::kLocalMachine:
      return HKEY_LOCAL_MACHINE;
    default:
      return HKEY_CURRENT_USER;
  }
}

bool SetValue(HKEY root, const std::string& key, const std::string& name, DWORD type,
              const std::string& data) {
  HKEY opened = nullptr;
  if (RegCreateKeyExW(root, Wide(key).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened,
                      nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const bool written =
      type == REG_NONE || RegSetValueExW(opened, name.empty() ? nullptr : Wide(name).c_str(), 0,
                                         type, reinterpret_cast<const BYTE*>(data.data()),
                                         static_cast<DWORD>(data.size())) == ERROR_SUCCESS;
  RegCloseKey(opened);
  return written;
}

bool SetText(HKEY root, const std::string& key, const std::string& name, const std::string& text) {
  return SetValue(root, key, name, REG_SZ, Utf8ToUtf16Bytes(text) + std::string(2, '\0'));
}

std::string ImportRegistry(FileToolkit& files, const std::string& path) {
  const std::optional<std::string> bytes = files.ReadWhole(path);
  if (!bytes) return "";  // a root without anything in it
  std::vector<RegistryStatement> statements;
  std::vector<RegistryTextError> errors;
  ReadRegistryText(
      *bytes, [](const std::string& text) { return windows::FromAnsi(text); }, &statements,
      &errors);
  if (!errors.empty()) return path + ": " + errors.front().message;
  for (const RegistryStatement& statement : statements) {
    const std::optional<RegistryPath> key = ParseRegistryPath(statement.key);
    const bool value = statement.kind == RegistryStatement::Kind::kValue;
    if (!key || !SetValue(KeyOf(key->root), key->subkey, statement.name,
                          value ? statement.type : static_cast<DWORD>(REG_NONE), statement.data)) {
      return statement.key + " cannot be written";
    }
  }
  return "";
}

// Under which name the system keeps the place of a special folder.
const std::map<std::string, std::string>& FolderNames() {
  static const std::map<std::string, std::string> names = {
      {"2", "Programs"}, {"5", "Personal"},       {"6", "Favorites"}, {"16", "Desktop"},
      {"26", "AppData"}, {"28", "Local AppData"}, {"33", "Cookies"}};
  return names;
}

// By which name Wine knows a version "platform.major.minor".
std::string WineVersion(const std::string& version) {
  static const std::map<std::string, std::string> names = {
      {"1.4.0", "win95"}, {"1.4.10", "win98"}, {"1.4.90", "winme"}, {"2.4.0", "nt40"},
      {"2.5.0", "win2k"}, {"2.5.1", "winxp"},  {"2.6.0", "vista"}};
  const auto found = names.find(version);
  return found == names.end() ? "" : found->second;
}

// "section/name" = value
std::map<std::string, std::string> ReadIni(const std::string& text) {
  std::map<std::string, std::string> facts;
  std::string section;
  for (const std::string& raw : Split(text, "\n")) {
    const std::string line = Trim(ReplaceAll(raw, "\r", ""));
    if (line.starts_with("[")) section = line.substr(1, line.find(']') - 1);
    const size_t equal = line.find('=');
    if (line.starts_with("#") || equal == std::string::npos) continue;
    facts[section + "/" + Trim(line.substr(0, equal))] = Trim(line.substr(equal + 1));
  }
  return facts;
}

}  // namespace

std::string TakeFactsOf(const std::string& machine_folder) {
  windows::WindowsFiles system_files;
  FileToolkit files(system_files, [] {});
  const std::optional<std::string> ini = files.ReadWhole(machine_folder + "\\machine.ini");
  if (!ini) return machine_folder + " holds no machine";
  const std::map<std::string, std::string> facts = ReadIni(*ini);
  const auto fact = [&facts](const std::string& name) {
    const auto found = facts.find(name);
    return found == facts.end() ? "" : found->second;
  };
  for (const char* root : {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE", "HKEY_CLASSES_ROOT"}) {
    const std::string problem =
        ImportRegistry(files, machine_folder + "\\registry\\" + root + ".reg");
    if (!problem.empty()) return problem;
  }
  for (const auto& [number, name] : FolderNames()) {
    const std::string key =
        "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
    if (!SetText(HKEY_CURRENT_USER, key, name, fact("folders/" + number))) return "no folders";
  }
  const std::string version = WineVersion(fact("system/version"));
  if (version.empty()) return "no such version: " + fact("system/version");
  if (!SetText(HKEY_CURRENT_USER, "Software\\Wine", "Version", version)) return "no version";
  const std::string user = fact("system/user");
  const auto set = [](const char* name, const std::string& value) {
    SetEnvironmentVariableW(Wide(name).c_str(), Wide(value).c_str());
  };
  set("USERNAME", user);
  set("WINEUSERNAME", user);
  set("APPDATA", fact("environment/appdata"));
  set("USERPROFILE", fact("environment/UserProfile"));
  set("LOCALAPPDATA", fact("folders/28"));
  return "";
}

}  // namespace quorvale::driver
