#include "play/scenario_files.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "archive/archive.h"
#include "base/paths.h"
#include "base/text.h"
#include "platform/file_toolkit.h"
#include "platform/registry.h"
#include "platform/registry_text.h"

namespace quorvale {
namespace {

// A value's place from "HKEY_...\key\name"; "(Default)" is the name of the default value.
struct ValuePlace {
  RegistryPath key;
  std::string name;
};
std::optional<ValuePlace> PlaceOf(const std::string& path) {
  const std::optional<RegistryPath> key = ParseRegistryPath(ParentFolder(path));
  if (!key) return std::nullopt;
  const std::string name = FileNameOf(path);
  return ValuePlace{*key, name == "(Default)" ? "" : name};
}

// Removes the values of a key and of the keys below it. How many; -1 if one stays.
int RemoveValues(RegistryStore& registry, const RegistryPath& key) {
  std::vector<RegistryValue> values;
  registry.ListValues(key.root, key.subkey, &values);
  int gone = 0;
  for (const RegistryValue& value : values) {
    if (registry.DeleteValue(key.root, key.subkey, value.name) != registry_status::kOk) return -1;
    ++gone;
  }
  std::vector<std::string> names;
  registry.ListSubkeys(key.root, key.subkey, &names);
  for (const std::string& name : names) {
    const int below = RemoveValues(registry, {key.root, key.subkey + "\\" + name});
    if (below < 0) return -1;
    gone += below;
  }
  return gone;
}

// True if a list of verbs holds one.
bool IsOneOf(std::initializer_list<const char*> verbs, const std::string& verb) {
  return std::any_of(verbs.begin(), verbs.end(),
                     [&verb](const char* each) { return verb == each; });
}

}  // namespace

std::string Different(const std::string& what, const std::string& is, const std::string& expected) {
  constexpr size_t kLongest = 300;
  const std::string shown = is.size() <= kLongest ? is : is.substr(0, kLongest) + "...";
  return what + " is \"" + shown + "\", not \"" + expected + "\"";
}

bool IsTextExpectation(const std::string& verb) {
  return IsOneOf({"expect", "expect-contains", "expect-like", "expect-not"}, verb);
}

std::string CompareText(const ScenarioAct& act, const std::string& name, const std::string& text) {
  if (act.verb == "expect-contains") {
    return Contains(text, act.text) ? "" : Different(name, text, "..." + act.text + "...");
  }
  if (act.verb == "expect-like")
    return IsLike(text, act.text) ? "" : Different(name, text, act.text);
  if (act.verb == "expect-not") return text != act.text ? "" : name + " is \"" + text + "\"";
  return text == act.text ? "" : Different(name, text, act.text);
}

std::string NotANumber(const std::string& text) { return "\"" + text + "\" is no number"; }

bool ScenarioFiles::IsAct(const std::string& verb) {
  return IsOneOf({"bring", "seed", "seed-bytes", "seed-folder", "seed-value", "seed-key", "remove",
                  "remove-values", "rename", "task"},
                 verb);
}

bool ScenarioFiles::IsExpectation(const std::string& verb) {
  return IsOneOf(
      {"expect-file", "expect-no-file", "expect-same", "expect-folder", "expect-entry",
       "expect-no-entry", "expect-registry", "expect-no-registry", "expect-task", "expect-no-task"},
      verb);
}

std::string ScenarioFiles::Expect(const ScenarioAct& act) {
  if (act.verb.ends_with("-entry")) return ExpectEntry(act);
  if (act.verb.ends_with("-registry")) return ExpectRegistry(act);
  if (act.verb.ends_with("-task")) return ExpectTask(act);
  return ExpectFiles(act);
}

std::string ScenarioFiles::SeedFile(const std::string& path, const std::string& bytes) {
  FileToolkit files(platform_.files, [] {});
  const bool written =
      files.MakeFolderChain(ParentFolder(path)) && files.WriteWhole(path, bytes) == FileStatus::kOk;
  return written ? "" : path + " cannot be written";
}

// A job as another program makes it: it tells the time of nothing of ours.
std::string ScenarioFiles::DoTask(const ScenarioAct& act) {
  if (act.text == "gone") {
    return platform_.scheduler.Delete(act.path) ? "" : "there is no job " + act.path;
  }
  ScheduledTask task;
  task.name = act.path;
  task.application = "C:\\Program Files\\Other\\other.exe";
  task.comment = act.text;
  TaskTrigger trigger;
  trigger.type = TaskTriggerType::kDaily;
  trigger.begin = platform_.system.Now();
  task.triggers.push_back(trigger);
  return platform_.scheduler.Create(task) ? "" : "job " + act.path + " cannot be made";
}

std::string ScenarioFiles::ExpectTask(const ScenarioAct& act) {
  const bool wanted = act.verb == "expect-task";
  const std::string& name = wanted ? act.path : act.text;
  const std::optional<ScheduledTask> task = platform_.scheduler.Read(name);
  if (!wanted) return task ? "there is a job " + name : "";
  if (!task) return "there is no job " + name;
  return task->comment == act.text ? ""
                                   : Different("the comment of " + name, task->comment, act.text);
}

std::string ScenarioFiles::Do(const ScenarioAct& act) {
  if (act.verb == "task") return DoTask(act);
  FileToolkit files(platform_.files, [] {});
  if (act.verb == "bring") {
    if (!former) return "there is no former machine";
    const std::optional<std::string> bytes = former(act.path);
    return bytes ? SeedFile(act.text, *bytes) : act.path + " is not on the former machine";
  }
  if (act.verb == "seed") return SeedFile(act.path, act.text);
  if (act.verb == "seed-bytes") {
    std::size_t count = 0;
    if (!ReadNumber(act.text, &count)) return NotANumber(act.text);
    std::string bytes(count, '\0');
    std::uint32_t word = 12345;
    for (char& byte : bytes) {
      word = word * 1664525 + 1013904223;
      byte = static_cast<char>(word >> 24);
    }
    return SeedFile(act.path, bytes);
  }
  if (act.verb == "seed-folder") {
    return files.MakeFolderChain(act.text) ? "" : act.text + " cannot be made";
  }
  if (act.verb == "seed-key") {
    const std::optional<RegistryPath> key = ParseRegistryPath(act.text);
    if (!key) return "\"" + act.text + "\" is no key";
    return platform_.registry.CreateKey(key->root, key->subkey) == registry_status::kOk
               ? ""
               : act.text + " cannot be made";
  }
  if (act.verb == "seed-value") {
    const std::optional<ValuePlace> place = PlaceOf(act.path);
    if (!place) return "\"" + act.path + "\" is no value";
    const bool written =
        platform_.registry.CreateKey(place->key.root, place->key.subkey) == registry_status::kOk &&
        platform_.registry.SetValue(
            place->key.root, place->key.subkey, place->name, registry_type::kString,
            platform_.system.ToAnsi(act.text) + '\0') == registry_status::kOk;
    return written ? "" : act.path + " cannot be written";
  }
  if (act.verb == "remove-values") {
    const std::optional<RegistryPath> key = ParseRegistryPath(act.text);
    if (!key) return "\"" + act.text + "\" is no key";
    const int gone = RemoveValues(platform_.registry, *key);
    if (gone < 0) return act.text + " keeps a value";
    return gone > 0 ? "" : "there is no value below " + act.text;
  }
  if (act.verb == "remove") {
    const std::optional<FileInfo> info = platform_.files.Stat(act.text);
    if (!info) return "there is no " + act.text;
    const bool gone = info->IsFolder()
                          ? files.KillFolder(act.text)
                          : platform_.files.RemoveFile(act.text, true) == FileStatus::kOk;
    return gone ? "" : act.text + " cannot be removed";
  }
  return platform_.files.Replace(act.path, act.text) == FileStatus::kOk
             ? ""
             : act.path + " cannot be renamed";
}

std::string ScenarioFiles::ExpectFiles(const ScenarioAct& act) {
  FileToolkit files(platform_.files, [] {});
  if (act.verb == "expect-no-file") {
    return files.files().Stat(act.text) ? "there is a " + act.text : "";
  }
  if (act.verb == "expect-folder") {
    return files.FolderExists(act.text) ? "" : "there is no folder " + act.text;
  }
  if (!files.FileExists(act.path)) return "there is no file " + act.path;
  if (!act.has_text) return "";
  const std::optional<std::string> bytes = files.ReadWhole(act.path);
  if (!bytes) return act.path + " cannot be read";
  if (act.verb == "expect-same") {
    const std::optional<std::string> other = files.ReadWhole(act.text);
    if (!other) return act.text + " cannot be read";
    return *bytes == *other ? "" : act.path + " and " + act.text + " differ";
  }
  return *bytes == act.text ? "" : Different(act.path, *bytes, act.text);
}

std::string ScenarioFiles::ExpectEntry(const ScenarioAct& act) {
  zip::Archive archive(platform_);
  archive.archive_name = act.path;
  std::vector<zip::Entry> entries;
  if (archive.List(&entries) != zip::Result::kDone) return act.path + " is no archive";
  const bool found = std::any_of(entries.begin(), entries.end(), [&act](const zip::Entry& entry) {
    return EqualsNoCase(entry.name, act.text);
  });
  const bool wanted = act.verb == "expect-entry";
  if (found == wanted) return "";
  return act.path + (found ? " has an entry " : " has no entry ") + act.text;
}

std::string ScenarioFiles::ExpectRegistry(const ScenarioAct& act) {
  RegistryStore& registry = platform_.registry;
  const std::string& path = act.verb == "expect-registry" ? act.path : act.text;
  const std::optional<RegistryPath> key = ParseRegistryPath(path);
  const std::optional<ValuePlace> place = PlaceOf(path);
  if (!key) return "\"" + path + "\" is neither key nor value";
  RegistryValue value;
  const bool has_value = place && registry.QueryValue(place->key.root, place->key.subkey,
                                                      place->name, &value) == registry_status::kOk;
  const bool there = has_value || registry.KeyExists(key->root, key->subkey);
  if (act.verb == "expect-no-registry") return there ? "there is a " + path : "";
  if (!there) return "there is no " + path;
  if (!act.has_text) return "";
  Registry reader(registry, platform_.system);
  const std::string text = reader.RegGetTyped(place->key.root, place->key.subkey, place->name);
  return text == act.text ? "" : Different(path, text, act.text);
}

}  // namespace quorvale
