#include "faults/fault_backup.h"

#include <zlib.h>

#include <algorithm>

#include "backup/format/backup_file.h"
#include "backup/format/log_writer.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale::fault_test {
namespace {

constexpr char kPassword[] = "Sesame";
constexpr std::uint64_t kPartSize = 40'000;

std::uint32_t Crc(const std::string& bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

// Where a member comes from.
std::string SourceOf(const std::string& key, const std::string& inner) {
  return inner.empty() ? WithoutBackslash(key) : WithBackslash(key) + inner;
}

std::string KeyOf(const std::string& item) {
  for (const SettingsItem& known : FaultComputer::Items()) {
    if (known.path == item) return known.key;
  }
  return "";
}

bool Names(const AccountEntry& entry, const MemberName& member) {
  if (entry.fate == AccountFate::kNote) return false;
  if (entry.source.empty()) return entry.item == member.first;
  return IsAtOrBelow(SourceOf(KeyOf(member.first), member.second), entry.source);
}

bool AccountNames(const Account& account, const MemberName& member) {
  return std::any_of(account.entries().begin(), account.entries().end(),
                     [&](const AccountEntry& entry) { return Names(entry, member); });
}

// Every entry of the directory by its name.
std::map<std::string, MemberContent> EntriesOf(BackupFile& file) {
  std::map<std::string, MemberContent> entries;
  std::vector<zip::Entry> listed;
  file.Members(&listed);
  for (const zip::Entry& entry : listed) {
    MemberContent& content = entries[WithoutBackslash(entry.name)];
    content.size = entry.size;
    // The test of the archive has shown that an encrypted entry is whole; it tells no check value.
    if (!entry.encrypted) content.crc = entry.crc;
  }
  return entries;
}

}  // namespace

void CommitBackup(Program& program, const BackupWay& way) {
  CommitFacts(program);
  if (way.on_vista) program.session().gOSName = kWindowsVista;
  BackupJob job;
  job.gBackupFolder = kBackupFolder;
  job.gBackupFileName = "Job.obk";
  job.gCompressionLevel = "6";
  job.gLogDetails = BoolWord(way.with_log);
  job.gProtectWithPassword = BoolWord(way.with_password);
  if (way.with_password) job.gArchivePassword = kPassword;
  job.gMediaDisc = way.for_discs;
  for (const SettingsItem& item : FaultComputer::Items()) {
    job.gBackupItemPaths.push_back(item.path);
    job.gBackupItemKeys.push_back(item.key);
  }
  static_cast<BackupJob&>(program.session()) = job;
}

BackupResult RunBackup(Program& program) {
  Session& session = program.session();
  session.gUniqueSuffix = UniqueBackupName(program, kBackupFolder);
  program.files().MakeFolderChain(session.gBackupBasePath);
  WriteBackupSettings(program, StagedSettingsPath(session.gBackupBasePath, program));
  program.files().MakeFolderChain(WithoutBackslash(LogFolder(program)));
  if (session.gLogDetails == "True") WriteReviewLog(program, BackupLogPath(program));
  BackupRun run(program, {});
  run.disc_part_size = kPartSize;
  const BackupResult result = run.Run();
  run.CleanUp(result);
  return result;
}

BackupContent ReadBackup(FaultComputer& computer, const std::string& path) {
  BackupContent content;
  Program program(computer.memory.platform());
  BackupFile file(program, path, kPassword);
  if (file.Test() != zip::Result::kDone) return content;
  const std::map<std::string, MemberContent> entries = EntriesOf(file);
  const FoundTable found = file.Table();
  if (!found.table) return content;
  SettingsFile settings;
  const std::string copy = "C:\\Checked\\settings.xml";
  computer.memory.files.PutFolder("C:\\Checked");
  content.is_whole =
      file.ExtractAs(SettingsEntryName(found.table->stem), copy) == zip::Result::kDone &&
      ReadSettingsFile(program, copy, &settings);
  computer.memory.files.Remove(copy);
  for (const SettingsItem& item : settings.items) content.items.push_back(item.path);
  for (const TableMember& member : found.table->members) {
    const auto entry = entries.find(member.entry);
    const MemberContent told{member.size, member.crc};
    if (entry == entries.end() || entry->second.size != told.size ||
        (entry->second.crc != 0 && entry->second.crc != told.crc)) {
      content.is_whole = false;
    }
    content.members[{found.table->items.at(member.item).path, member.inner}] = told;
  }
  return content;
}

BackupContent ContentOfEverything(FaultComputer& computer) {
  Program program(computer.memory.platform());
  CommitBackup(program);
  const BackupResult result = RunBackup(program);
  BackupContent content = ReadBackup(computer, result.archive);
  // What the files hold is taken from them, not from a backup.
  const Contents now = computer.Now();
  for (const SettingsItem& item : FaultComputer::Items()) {
    if (item.key.starts_with("HKEY_")) continue;
    for (const auto& [path, bytes] : now.files) {
      if (!IsAtOrBelow(path, item.key)) continue;
      const std::string start = WithBackslash(item.key);
      const std::string inner = path.size() > start.size() ? path.substr(start.size()) : "";
      content.members[{item.path, inner}] = {bytes.size(), Crc(bytes)};
    }
  }
  return content;
}

std::vector<std::string> WhatIsLost(const BackupContent& backup, const BackupContent& everything,
                                    const Account& account) {
  std::vector<std::string> problems;
  if (!backup.is_whole) return {"the new backup is not whole"};
  if (backup.items != everything.items) problems.push_back("the settings file lacks items");
  for (const auto& [name, content] : everything.members) {
    const auto found = backup.members.find(name);
    if (found != backup.members.end() && found->second == content) continue;
    if (AccountNames(account, name)) continue;
    const std::string what = name.first + " | " + name.second;
    problems.push_back((found == backup.members.end() ? "not in the backup, nor in the account: "
                                                      : "another content, not in the account: ") +
                       what);
  }
  return problems;
}

bool IsTheirs(const std::string& path) {
  return !IsAtOrBelow(path, kBackupFolder) && !IsAtOrBelow(path, kAppData) &&
         !IsAtOrBelow(path, kRestoreFolder);
}

std::vector<std::string> WhatChanged(const Contents& before, const Contents& after) {
  std::vector<std::string> problems;
  for (const auto& [path, bytes] : before.files) {
    if (!IsTheirs(path)) continue;
    const auto now = after.files.find(path);
    if (now == after.files.end()) {
      problems.push_back("gone: " + path);
    } else if (now->second != bytes) {
      problems.push_back("changed: " + path);
    }
  }
  for (const auto& [path, bytes] : after.files) {
    if (IsTheirs(path) && !before.files.contains(path)) problems.push_back("new: " + path);
  }
  for (const auto& [name, value] : before.values) {
    const auto now = after.values.find(name);
    if (now == after.values.end() || now->second != value) problems.push_back("changed: " + name);
  }
  return problems;
}

}  // namespace quorvale::fault_test
