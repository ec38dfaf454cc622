// The acts of a scenario on the computer's files, registry and scheduled jobs, and what it expects
// of them.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "archive/archive.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "core/program/program.h"
#include "platform/file_toolkit.h"
#include "platform/registry.h"
#include "platform/registry_text.h"
#include "play/scenario_acts.h"

namespace quorvale::acts {
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
int RemoveValuesBelow(RegistryStore& registry, const RegistryPath& key) {
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
    const int below = RemoveValuesBelow(registry, {key.root, key.subkey + "\\" + name});
    if (below < 0) return -1;
    gone += below;
  }
  return gone;
}

Platform& PlatformOf(ScenarioPlayer& player) { return *player.stage().platform(); }

FileToolkit Files(ScenarioPlayer& player) {
  return FileToolkit(PlatformOf(player).files, [] {});
}

std::string NoKey(const std::string& text) { return "\"" + text + "\" is no key"; }

std::string WriteFile(ScenarioPlayer& player, const std::string& path, const std::string& bytes) {
  FileToolkit files = Files(player);
  const bool written =
      files.MakeFolderChain(ParentFolder(path)) && files.WriteWhole(path, bytes) == FileStatus::kOk;
  return written ? "" : path + " cannot be written";
}

// The bytes of a file into `bytes`, or what is in the way.
std::string ReadFile(ScenarioPlayer& player, const std::string& path, std::string* bytes) {
  FileToolkit files = Files(player);
  if (!files.FileExists(path)) return "there is no file " + path;
  const std::optional<std::string> read = files.ReadWhole(path);
  if (!read) return path + " cannot be read";
  *bytes = *read;
  return "";
}

// Whether the archive that the act names has its entry, into `found`.
std::string FindEntry(ScenarioPlayer& player, const ScenarioAct& act, bool* found) {
  zip::Archive archive(PlatformOf(player));
  archive.archive_name = act.path;
  std::vector<zip::Entry> entries;
  if (archive.List(&entries) != zip::Result::kDone) return act.path + " is no archive";
  *found = std::any_of(entries.begin(), entries.end(), [&act](const zip::Entry& entry) {
    return EqualsNoCase(entry.name, act.text);
  });
  return "";
}

// Whether a path names a registry key or value that is there, into `there`.
std::string FindInRegistry(ScenarioPlayer& player, const std::string& path, bool* there) {
  RegistryStore& registry = PlatformOf(player).registry;
  const std::optional<RegistryPath> key = ParseRegistryPath(path);
  if (!key) return "\"" + path + "\" is neither key nor value";
  const std::optional<ValuePlace> place = PlaceOf(path);
  RegistryValue value;
  const bool has_value = place && registry.QueryValue(place->key.root, place->key.subkey,
                                                      place->name, &value) == registry_status::kOk;
  *there = has_value || registry.KeyExists(key->root, key->subkey);
  return "";
}

}  // namespace

// --- Acts
// -----------------------------------------------------------------------------------------

std::string Bring(ScenarioPlayer& player, const ScenarioAct& act) {
  if (!player.stage().HasFormerMachine()) return "there is no former machine";
  const std::optional<std::string> bytes = player.stage().FormerFile(act.path);
  return bytes ? WriteFile(player, act.text, *bytes) : act.path + " is not on the former machine";
}

std::string Seed(ScenarioPlayer& player, const ScenarioAct& act) {
  return WriteFile(player, act.path, act.text);
}

std::string SeedBytes(ScenarioPlayer& player, const ScenarioAct& act) {
  std::size_t count = 0;
  if (!ReadNumber(act.text, &count)) return NotANumber(act.text);
  std::string bytes(count, '\0');
  std::uint32_t word = 12345;
  for (char& byte : bytes) {
    word = word * 1664525 + 1013904223;
    byte = static_cast<char>(word >> 24);
  }
  return WriteFile(player, act.path, bytes);
}

std::string SeedFolder(ScenarioPlayer& player, const ScenarioAct& act) {
  return Files(player).MakeFolderChain(act.text) ? "" : act.text + " cannot be made";
}

std::string SeedKey(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<RegistryPath> key = ParseRegistryPath(act.text);
  if (!key) return NoKey(act.text);
  return PlatformOf(player).registry.CreateKey(key->root, key->subkey) == registry_status::kOk
             ? ""
             : act.text + " cannot be made";
}

std::string SeedValue(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<ValuePlace> place = PlaceOf(act.path);
  if (!place) return "\"" + act.path + "\" is no value";
  RegistryStore& registry = PlatformOf(player).registry;
  const bool written =
      registry.CreateKey(place->key.root, place->key.subkey) == registry_status::kOk &&
      registry.SetText(place->key.root, place->key.subkey, place->name, registry_type::kString,
                       act.text) == registry_status::kOk;
  return written ? "" : act.path + " cannot be written";
}

std::string RemoveValues(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<RegistryPath> key = ParseRegistryPath(act.text);
  if (!key) return NoKey(act.text);
  const int gone = RemoveValuesBelow(PlatformOf(player).registry, *key);
  if (gone < 0) return act.text + " keeps a value";
  return gone > 0 ? "" : "there is no value below " + act.text;
}

std::string Remove(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<FileInfo> info = PlatformOf(player).files.Stat(act.text);
  if (!info) return "there is no " + act.text;
  const bool gone = info->IsFolder()
                        ? Files(player).KillFolder(act.text)
                        : PlatformOf(player).files.RemoveFile(act.text, true) == FileStatus::kOk;
  return gone ? "" : act.text + " cannot be removed";
}

std::string Rename(ScenarioPlayer& player, const ScenarioAct& act) {
  return PlatformOf(player).files.Replace(act.path, act.text) == FileStatus::kOk
             ? ""
             : act.path + " cannot be renamed";
}

// The last byte of the entry's packed data.
std::string Damage(ScenarioPlayer& player, const ScenarioAct& act) {
  zip::Archive archive(PlatformOf(player));
  archive.archive_name = act.path;
  std::vector<zip::Entry> entries;
  if (archive.List(&entries) != zip::Result::kDone) return act.path + " is no archive";
  const auto entry = std::find_if(entries.begin(), entries.end(), [&act](const zip::Entry& each) {
    return EqualsNoCase(each.name, act.text);
  });
  if (entry == entries.end() || entry->compressed_size == 0) {
    return act.path + " has no entry " + act.text + " with something in it";
  }
  std::string bytes;
  const std::string problem = ReadFile(player, act.path, &bytes);
  if (!problem.empty()) return problem;
  // Its local header, by the name in it: 30 bytes, the name, what stands behind the name, the data.
  const std::string name = ReplaceAll(entry->name, "\\", "/");
  const size_t named = bytes.find(name);
  if (named == std::string::npos || named < 2) return act.path + " has no header of " + act.text;
  const size_t extra = static_cast<unsigned char>(bytes[named - 2]);
  bytes[named + name.size() + extra + entry->compressed_size - 1] ^= 1;
  return Files(player).WriteWhole(act.path, bytes) == FileStatus::kOk
             ? ""
             : act.path + " cannot be written";
}

// A job as another program makes it: it tells the time of nothing of ours.
std::string Task(ScenarioPlayer& player, const ScenarioAct& act) {
  TaskScheduler& scheduler = PlatformOf(player).scheduler;
  if (act.text == "gone") return scheduler.Delete(act.path) ? "" : "there is no job " + act.path;
  ScheduledTask task;
  task.name = act.path;
  task.application = "C:\\Program Files\\Other\\other.exe";
  task.comment = act.text;
  TaskTrigger trigger;
  trigger.type = TaskTriggerType::kDaily;
  trigger.begin = PlatformOf(player).system.Now();
  task.triggers.push_back(trigger);
  return scheduler.Create(task).saved ? "" : "job " + act.path + " cannot be made";
}

// --- Expectations
// ---------------------------------------------------------------------------------

std::string ExpectFile(ScenarioPlayer& player, const ScenarioAct& act) {
  if (!act.has_text) {
    return Files(player).FileExists(act.path) ? "" : "there is no file " + act.path;
  }
  std::string bytes;
  const std::string problem = ReadFile(player, act.path, &bytes);
  if (!problem.empty()) return problem;
  return bytes == act.text ? "" : Different(act.path, bytes, act.text);
}

std::string ExpectNoFile(ScenarioPlayer& player, const ScenarioAct& act) {
  return PlatformOf(player).files.Stat(act.text) ? "there is a " + act.text : "";
}

std::string ExpectAccount(ScenarioPlayer& player, const ScenarioAct& act) {
  Program program(PlatformOf(player));
  program.session().gAppDataPath = DataFolder(program);
  const std::vector<std::string> kept = KeptAccounts(program);
  if (kept.empty()) return "there is no account";
  std::string bytes;
  const std::string problem = ReadFile(player, kept.front(), &bytes);
  if (!problem.empty()) return problem;
  if (Contains(bytes, act.text)) return "";
  return "the newest account does not say \"" + act.text + "\":\n" + bytes;
}

std::string ExpectSame(ScenarioPlayer& player, const ScenarioAct& act) {
  std::string bytes, others;
  std::string problem = ReadFile(player, act.path, &bytes);
  if (problem.empty()) problem = ReadFile(player, act.text, &others);
  if (!problem.empty()) return problem;
  return bytes == others ? "" : act.path + " and " + act.text + " differ";
}

std::string ExpectFolder(ScenarioPlayer& player, const ScenarioAct& act) {
  return Files(player).FolderExists(act.text) ? "" : "there is no folder " + act.text;
}

std::string ExpectEntry(ScenarioPlayer& player, const ScenarioAct& act) {
  bool found = false;
  const std::string problem = FindEntry(player, act, &found);
  return found || !problem.empty() ? problem : act.path + " has no entry " + act.text;
}

std::string ExpectNoEntry(ScenarioPlayer& player, const ScenarioAct& act) {
  bool found = false;
  const std::string problem = FindEntry(player, act, &found);
  return found ? act.path + " has an entry " + act.text : problem;
}

std::string ExpectRegistry(ScenarioPlayer& player, const ScenarioAct& act) {
  bool there = false;
  const std::string problem = FindInRegistry(player, act.path, &there);
  if (!problem.empty()) return problem;
  if (!there) return "there is no " + act.path;
  const std::optional<ValuePlace> place = PlaceOf(act.path);
  if (!act.has_text) return "";
  if (!place) return act.path + " is no value";
  Registry reader(PlatformOf(player).registry, PlatformOf(player).system);
  const std::string text = reader.RegGetTyped(place->key.root, place->key.subkey, place->name);
  return text == act.text ? "" : Different(act.path, text, act.text);
}

std::string ExpectNoRegistry(ScenarioPlayer& player, const ScenarioAct& act) {
  bool there = false;
  const std::string problem = FindInRegistry(player, act.text, &there);
  return there ? "there is a " + act.text : problem;
}

std::string ExpectTask(ScenarioPlayer& player, const ScenarioAct& act) {
  const std::optional<ScheduledTask> task = PlatformOf(player).scheduler.Read(act.path);
  if (!task) return "there is no job " + act.path;
  return task->comment == act.text
             ? ""
             : Different("the comment of " + act.path, task->comment, act.text);
}

std::string ExpectNoTask(ScenarioPlayer& player, const ScenarioAct& act) {
  return PlatformOf(player).scheduler.Read(act.text) ? "there is a job " + act.text : "";
}

}  // namespace quorvale::acts
