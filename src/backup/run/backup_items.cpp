// The items of a backup: the plan is carried out, kind by kind.
#include <string_view>

#include "backup/run/backup_run.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

// The registry editor gets this long to start before the next item.
constexpr int kExportPause = 100;  // milliseconds

constexpr char kExportEnd[] = ".reg";

}  // namespace

void BackupRun::MakePlan() {
  program_.session().gFileCollection.Clear();
  plan_ = PlanBackup(
      program_, [this](BackupPhase phase) { return PhaseApplies(phase); },
      [this] { return KeepGoing(); });
}

// --- The kinds ----------------------------------------------------------------------------------

void BackupRun::BackupWindowsMailItems() { RunKind(BackupPhase::kWindowsMail); }

void BackupRun::BackupOutlookExpressItems() { RunKind(BackupPhase::kOutlookExpress); }

void BackupRun::BackupOutlookItems() { RunKind(BackupPhase::kOutlook); }

void BackupRun::BackupInternetExplorerItems() { RunKind(BackupPhase::kBrowser); }

void BackupRun::BackupOtherItems() { RunKind(BackupPhase::kOtherFiles); }

void BackupRun::RunKind(BackupPhase phase) {
  if (!plan_) MakePlan();
  for (const PlannedItem& item : plan_->items) {
    if (!KeepGoing()) return;
    if (item.phase != phase) continue;
    if (phase == BackupPhase::kOtherFiles) {
      RunOtherItem(item);
      continue;
    }
    const BackupItem told{phase, item.path, item.key};
    if (events_.item) events_.item(told);
    TakeItem(item);
    if (events_.item_done) events_.item_done(told);
  }
}

void BackupRun::BackupItemOf(const std::string& key, const std::string& path) {
  if (!plan_) MakePlan();
  for (const PlannedItem& item : plan_->items) {
    if (item.key != key || item.path != path) continue;
    if (item.phase == BackupPhase::kOtherFiles) return RunOtherItem(item);
    return TakeItem(item);
  }
}

void BackupRun::RunOtherItem(const PlannedItem& item) {
  if (item.kind == ItemEntry::Kind::kFile) {
    CheckAddedFile(item.key);
  } else if (Contains(item.key, "\\") &&
             (!item.is_there || !program_.platform().files.Stat(item.key))) {
    mSkipped.push_back(item.key);
    return;
  }
  if (item.kind == ItemEntry::Kind::kNone) return;
  if (events_.item) events_.item({BackupPhase::kOtherFiles, item.path, item.key});
  TakeItem(item);
}

void BackupRun::CheckAddedFile(const std::string& path) {
  if (!program_.platform().files.Stat(path)) mSkipped.push_back(path);
}

// The item's folder is made in any case, also for a group.
void BackupRun::TakeItem(const PlannedItem& item) {
  mTargetFolder = item.target;
  MakeFolder(mTargetFolder);
  for (const PlannedGap& gap : item.gaps) {
    if (std::string_view(gap.reason) == gap_reason::kNoName) mSkipped.push_back(gap.source);
  }
  for (const PlannedMember& member : item.members) {
    if (!KeepGoing()) return;
    TakeMember(item, member);
  }
}

void BackupRun::TakeMember(const PlannedItem& item, const PlannedMember& member) {
  if (member.is_shared) return;
  const FileArr& file = state().gFileCollection.At(member.file);
  mSourcePath = member.is_staged ? member.original : file.SourceFilePath;
  mEntryName = file.DestFilePath;
  if (member.kind == TableMember::Kind::kRegistry) {
    const std::string leaf = FileNameOf(file.SourceFilePath);
    const std::string folder = ParentFolder(file.SourceFilePath);
    if (!EqualsNoCase(WithBackslash(folder), mTargetFolder)) MakeFolder(WithBackslash(folder));
    ExportRegistryKey(folder, leaf.substr(0, leaf.size() - (sizeof kExportEnd - 1)), item.key);
    program_.platform().system.Sleep(kExportPause);
  } else if (member.is_staged) {
    CopyFileToStage(member.original, file.SourceFilePath);
  } else if (item.phase == BackupPhase::kOtherFiles && item.kind == ItemEntry::Kind::kFile) {
    TellFile(file.SourceFilePath);
  }
  Add(member.file);
}

// What stands behind the last "\" is a file's name, not a folder to make.
bool BackupRun::MakeFolder(const std::string& path) {
  const std::string folder = ParentFolder(path);
  if (!folder.empty() && program_.files().MakeFolderChain(folder)) return true;
  TellRefused(path);
  return false;
}

void BackupRun::TellRefused(const std::string& folder) {
  refused_folder_ = WithoutBackslash(folder);
  if (events_.folder_refused) events_.folder_refused(folder);
}

void BackupRun::ExportRegistryKey(const std::string& folder, const std::string& leaf,
                                  const std::string& key) {
  const std::string name = ExportFileName(leaf);
  mExportFile = WithBackslash(folder) + name;
  const std::string short_folder = program_.platform().files.ShortPath(WithoutBackslash(folder));
  program_.registry_editor().Export(WithBackslash(short_folder) + name, key,
                                    os_name() == kWindowsVista);
}

void BackupRun::TellFile(const std::string& source) {
  if (events_.file) events_.file(source);
}

void BackupRun::Add(std::uint32_t file) {
  const std::string& source = state().gFileCollection.At(file).SourceFilePath;
  const bool is_folder = source.ends_with("\\*.*");
  archive.files_to_process.push_back(is_folder ? WithoutLastFour(source) + "\\" : source);
}

// --- Copies -------------------------------------------------------------------------------------

std::string BackupRun::ModifiedText(const std::string& path) {
  const auto info = program_.platform().files.Stat(path);
  if (!info) return "";
  return HistoryStamp(program_, program_.platform().system.ToLocal(info->modified));
}

bool BackupRun::CopyFileToStage(const std::string& source, const std::string& target) {
  KeepGoing();
  const std::string copy = CollapseBackslashes(target);
  if (ModifiedText(source) <= ModifiedText(copy)) return false;
  Files& files = program_.platform().files;
  program_.files().MakeFolderChain(ParentFolder(copy));
  if (const auto folder = files.Stat(ParentFolder(source))) {
    files.SetAttributes(ParentFolder(copy), folder->attributes & ~file_attribute::kFolder);
  }
  TellFile(source);
  if (!files.Stat(source)) mSkipped.push_back(source);
  const FileStatus status = program_.files().CopyFile(source, copy);
  if (status != FileStatus::kOk && !source.ends_with(".msg")) {
    program_.files().CopyFile(source, copy);
  }
  return true;
}

}  // namespace quorvale
