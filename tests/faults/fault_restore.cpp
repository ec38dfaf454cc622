#include "faults/fault_restore.h"

#include <algorithm>
#include <set>

#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "faults/fault_backup.h"
#include "platform/registry_text.h"
#include "restore/run/restore_selection.h"

namespace quorvale::fault_test {
namespace {

constexpr char kMail[] = "Outlook Express\\Email Messages\\";

// A value of `Contents`, "1:Software\X\name", as the keys of items are written.
std::string KeyPathOf(const std::string& value) {
  const auto root = static_cast<RegistryRoot>(std::stoi(value.substr(0, value.find(':'))));
  return RegistryRootName(root) + ("\\" + value.substr(value.find(':') + 1));
}

// Mail and mail settings of the identity that the backup has, as those of the present one: an entry
// names where the mail was.
std::string AtHome(const std::string& path) { return ReplaceAll(path, kIdentity, kOtherIdentity); }

// True if an entry is about this file or value. What an entry says of an item of several files is
// said by its path, its target or its key.
bool IsNamed(const Account& account, const std::string& path) {
  const std::vector<SettingsItem> items = FaultComputer::Items();
  return std::any_of(
      account.entries().begin(), account.entries().end(), [&](const AccountEntry& entry) {
        if (entry.fate == AccountFate::kNote) return false;
        if (IsAtOrBelow(path, entry.source) || IsAtOrBelow(path, AtHome(entry.source))) return true;
        // The place of the store is noted when mail comes into it.
        if (path.ends_with("\\Store Root") && entry.item.starts_with(kMail)) return true;
        return std::any_of(items.begin(), items.end(), [&](const SettingsItem& item) {
          return item.path == entry.item && IsAtOrBelow(path, item.key);
        });
      });
}

bool IsOwnValue(const std::string& name) { return Contains(name, "Software\\Tarnwick\\"); }

// A file that a restore made is one of the backup, whole.
void CheckNewFile(const std::string& path, const std::string& bytes, const Contents& before,
                  const Contents& whole, std::vector<std::string>* problems) {
  if (!IsTheirs(path) || path.ends_with(".tmp")) return;
  const auto same = [&](const auto& file) { return file.second == bytes; };
  if (std::any_of(whole.files.begin(), whole.files.end(), same)) return;
  if (std::any_of(before.files.begin(), before.files.end(), same)) return;
  problems->push_back("neither an old nor a whole new file: " + path);
}

void CheckFiles(const Contents& before, const Contents& whole, const Contents& after,
                std::vector<std::string>* problems) {
  for (const auto& [path, bytes] : before.files) {
    if (!IsTheirs(path) && path != kArchive) continue;
    const auto now = after.files.find(path);
    const auto restored = whole.files.find(path);
    if (now == after.files.end()) {
      if (restored != whole.files.end()) problems->push_back("lost: " + path);
    } else if (now->second != bytes &&
               (restored == whole.files.end() || now->second != restored->second)) {
      problems->push_back("neither old nor new: " + path);
    }
  }
  for (const auto& [path, bytes] : after.files) {
    if (!before.files.contains(path)) CheckNewFile(path, bytes, before, whole, problems);
  }
}

// Nothing that the person had is gone unless something new stands in its place.
void CheckValues(const Contents& before, const Contents& whole, const Contents& after,
                 std::vector<std::string>* problems) {
  for (const auto& [name, value] : before.values) {
    if (IsOwnValue(name)) continue;
    const auto restored = whole.values.find(name);
    if (!after.values.contains(name) && restored != whole.values.end()) {
      problems->push_back("lost: " + name);
    }
  }
}

// Names are matched without regard to case.
bool HasFile(const Contents& contents, const std::string& path, const std::string& bytes) {
  return std::any_of(contents.files.begin(), contents.files.end(), [&](const auto& file) {
    return EqualsNoCase(file.first, path) && file.second == bytes;
  });
}

void CheckDone(const Account& account, const Contents& whole, const Contents& after,
               std::vector<std::string>* problems) {
  for (const auto& [path, bytes] : whole.files) {
    if (!IsTheirs(path)) continue;
    if (HasFile(after, path, bytes)) continue;
    if (!IsNamed(account, path)) {
      problems->push_back("not restored, not in the account: " + path);
    }
  }
  for (const auto& [name, value] : whole.values) {
    if (IsOwnValue(name)) continue;
    const auto now = after.values.find(name);
    if (now != after.values.end() && now->second == value) continue;
    if (!IsNamed(account, KeyPathOf(name))) {
      problems->push_back("not restored, not in the account: " + KeyPathOf(name) + " is " +
                          (now == after.values.end() ? "not there" : now->second) + ", not " +
                          value);
    }
  }
}

}  // namespace

std::string BackupOfEverything() {
  FaultComputer computer;
  computer.FillForBackup();
  Program program(computer.memory.platform());
  CommitBackup(program);
  RunBackup(program);
  return computer.memory.files.Bytes(kArchive);
}

void CommitRestore(Program& program, const std::string& path) {
  CommitFacts(program);
  Session& session = program.session();
  session.gRestoreFilePath = path;
  session.gRestoreFolder = kRestoreFolder;
  session.gRestoreToDefaultFolders = true;
  const std::vector<SettingsItem> items = FaultComputer::Items();
  RestoreSelection selection(program, items);
  for (std::size_t i = 0; i < items.size(); ++i) {
    selection.Add(items[i].path, items[i].key, static_cast<int>(i));
  }
}

RestoreResult RunRestore(Program& program) {
  const RestoreJob job = program.session();
  RestoreRun run(program, job, {});
  const RestoreResult result = run.Run();
  run.DeleteRestoreFolder(std::string(kRestoreFolder) + "\\Job");
  return result;
}

std::vector<std::string> WhatIsWrong(const RestoreResult& result, const Account& account,
                                     const Contents& before, const Contents& whole,
                                     const Contents& after) {
  std::vector<std::string> problems;
  CheckFiles(before, whole, after, &problems);
  CheckValues(before, whole, after, &problems);
  if (result.outcome == RestoreOutcome::kDone) {
    CheckDone(account, whole, after, &problems);
  } else if (account.end() != AccountEnd::kFailed) {
    problems.push_back("the account does not say that the run failed");
  }
  return problems;
}

}  // namespace quorvale::fault_test
