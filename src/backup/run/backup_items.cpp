// The items of a backup: which sources an item stands for, and where each goes in the archive.
#include "backup/run/backup_run.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"

namespace quorvale {
namespace {

// The registry editor gets this long to start before the next item.
constexpr int kExportPause = 100;  // milliseconds

// A Zip entry's name has a length field of 16 bits.
constexpr size_t kLongestEntryName = 65535;

std::string AllOf(const std::string& folder) { return WithBackslash(folder) + "*.*"; }

bool CanBeEntryName(const std::string& name) {
  return name.size() <= kLongestEntryName && IsUtf8(name);
}

}  // namespace

// --- The kinds ----------------------------------------------------------------------------------

void BackupRun::BackupWindowsMailItems() { RunKind(BackupPhase::kWindowsMail, "Windows Mail\\"); }

void BackupRun::BackupOutlookExpressItems() {
  RunKind(BackupPhase::kOutlookExpress, "Outlook Express\\");
}

void BackupRun::BackupOutlookItems() { RunKind(BackupPhase::kOutlook, "Microsoft Outlook\\"); }

void BackupRun::BackupInternetExplorerItems() {
  RunKind(BackupPhase::kBrowser, "Internet Explorer\\");
}

void BackupRun::RunKind(BackupPhase phase, const char* root) {
  // By number: a page of the next job may commit while messages are handled.
  for (size_t i = 0; i < job().gBackupItemPaths.size(); ++i) {
    if (!KeepGoing() || i >= job().gBackupItemPaths.size()) return;
    const std::string path = job().gBackupItemPaths[i];
    if (!path.starts_with(root)) continue;
    const std::string key = KeyOf(i);
    const BackupItem item{phase, path, key};
    if (events_.item) events_.item(item);
    BackupMailItem(key, path);
    if (events_.item_done) events_.item_done(item);
  }
}

std::string BackupRun::KeyOf(size_t index) const {
  return index < job().gBackupItemKeys.size() ? job().gBackupItemKeys[index] : "";
}

// The kinds differ in their entry names alone.
void BackupRun::BackupMailItem(const std::string& key, const std::string& path) {
  const ItemEntry entry = PrepareTarget(key, path);
  switch (entry.kind) {
    case ItemEntry::Kind::kNone:
      return;
    case ItemEntry::Kind::kRegistry:
      return ExportItem(path, key);
    case ItemEntry::Kind::kFolder:
      return TakeFolder(key, mTargetFolder);
    case ItemEntry::Kind::kFile:
      break;
  }
  const auto info = program_.platform().files.Stat(key);
  if (!info || info->IsFolder()) return;
  HandOver(CollapseBackslashes(key), mTargetFolder + info->name);
}

ItemEntry BackupRun::PrepareTarget(const std::string& key, const std::string& path) {
  const ItemEntry entry = EntryOfItem(path, key, os_name());
  mTargetFolder = CollapseBackslashes(state().gBackupBasePath + "\\" + entry.folder + "\\");
  MakeFolder(mTargetFolder);
  return entry;
}

// What stands behind the last "\" is a file's name, not a folder to make.
bool BackupRun::MakeFolder(const std::string& path) {
  const std::string folder = ParentFolder(path);
  if (!folder.empty() && program_.files().MakeFolderChain(folder)) return true;
  if (events_.folder_refused) events_.folder_refused(path);
  return false;
}

void BackupRun::ExportItem(const std::string& path, const std::string& key) {
  ExportRegistryKey(mTargetFolder, FileNameOf(path), key);
  program_.platform().system.Sleep(kExportPause);
  Add(mExportFile, EntryNameBelow(job().gBackupFolder, mExportFile));
}

void BackupRun::ExportRegistryKey(const std::string& folder, const std::string& leaf,
                                  const std::string& key) {
  const std::string name = ExportFileName(leaf);
  mExportFile = WithBackslash(folder) + name;
  // Of two exports into one file the later one is to win, so the earlier one has to be over.
  if (!state().gFileCollection.FindStagedDest(mExportFile).empty()) {
    program_.registry_editor().WaitForRuns();
  }
  const std::string short_folder = program_.platform().files.ShortPath(WithoutBackslash(folder));
  program_.registry_editor().Export(WithBackslash(short_folder) + name, key,
                                    os_name() == kWindowsVista);
}

void BackupRun::BackupOtherItems() {
  for (size_t i = 0; i < job().gBackupItemPaths.size(); ++i) {
    if (!KeepGoing() || i >= job().gBackupItemPaths.size()) return;
    BackupListedItem(i);
  }
}

void BackupRun::BackupListedItem(size_t index) {
  const std::string path = job().gBackupItemPaths[index];
  const std::string key = KeyOf(index);
  if (path.starts_with("Add More Files")) {
    if (Contains(key, "\\")) CheckAddedFile(key);
    BackupOtherItem(key, path, true);
  } else if (path.starts_with("Other Files") || path.starts_with("Add Other Folders")) {
    if (Contains(key, "\\") && !program_.platform().files.Stat(key)) {
      mSkipped.push_back(key);
    } else {
      BackupOtherItem(key, path, false);
    }
  }
}

void BackupRun::CheckAddedFile(const std::string& path) {
  if (!program_.platform().files.Stat(path)) mSkipped.push_back(path);
}

void BackupRun::BackupOtherItem(const std::string& key, const std::string& path, bool is_file) {
  if (EntryOfItem(path, key, os_name()).kind == ItemEntry::Kind::kNone) return;
  PrepareTarget(key, path);
  if (events_.item) events_.item({BackupPhase::kOtherFiles, path, key});
  if (is_file) {
    TellFile(key);
    HandOver(CollapseBackslashes(key), mTargetFolder + FileNameOf(key));
  } else {
    TakeFolder(key, mTargetFolder);
  }
}

void BackupRun::TellFile(const std::string& source) {
  if (events_.file) events_.file(source);
}

// --- Files and folders --------------------------------------------------------------------------

void BackupRun::TakeFolder(const std::string& source, const std::string& target) {
  const std::string folder = WithBackslash(CollapseBackslashes(source));
  const auto stopping = [this] { return !KeepGoing(); };
  for (const DeepEntry& element : program_.files().ListFilesDeep(folder, "*.*", stopping)) {
    if (!KeepGoing()) return;
    // The staging folder may lie inside of what is backed up.
    if (IsInStage(element.path)) continue;
    const std::string relative =
        element.path.size() > folder.size() ? element.path.substr(folder.size()) : "";
    if (element.is_folder) {
      TakeSubfolder(element.path, target + relative);
    } else {
      HandOver(element.path, target + relative);
    }
  }
}

void BackupRun::TakeSubfolder(const std::string& folder, const std::string& target) {
  if (state().gFileCollection.FindStagedDest(AllOf(folder)).empty()) {
    Add(AllOf(folder), EntryNameBelow(job().gBackupFolder, AllOf(target)));
  } else {
    program_.files().MakeFolderChain(WithoutBackslash(target));
  }
}

void BackupRun::HandOver(const std::string& source, const std::string& target) {
  mSourcePath = source;
  mEntryName = EntryNameBelow(job().gBackupFolder, target);
  const std::string staged = state().gFileCollection.FindStagedDest(source);
  if (staged == mEntryName) return;
  if (staged.empty()) return Add(source, mEntryName);
  // Selected under another item already: a copy stands for the file here.
  CopyFileToStage(source, target);
  Add(CollapseBackslashes(target), mEntryName);
}

void BackupRun::Add(const std::string& source, const std::string& entry_name) {
  if (!CanBeEntryName(entry_name)) {
    mSkipped.push_back(source);
    return;
  }
  if (!state().gFileCollection.Add({source, entry_name})) return;
  const bool is_folder = source.ends_with("\\*.*");
  archive.files_to_process.push_back(is_folder ? WithoutLastFour(source) + "\\" : source);
}

bool BackupRun::IsInStage(const std::string& path) {
  const std::string stage = CollapseBackslashes(state().gBackupBasePath);
  if (stage.empty() || path.size() < stage.size()) return false;
  if (path.size() > stage.size() && path[stage.size()] != '\\') return false;
  return EqualsNoCase(path.substr(0, stage.size()), stage);
}

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
