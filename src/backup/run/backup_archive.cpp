// The archive of a backup: its name and options, its settings file, and which source gets which
// entry name.
#include "backup/format/account_reasons.h"
#include "backup/format/settings_file.h"
#include "backup/run/backup_account.h"
#include "backup/run/backup_run.h"
#include "backup/run/disc_folder.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/watched_programs.h"

namespace quorvale {
namespace {

constexpr char kSearchService[] = "WSearch";

}  // namespace

BackupResult BackupRun::MakeArchive(const std::string& stage_path) {
  ApplyArchiveSettings(stage_path);
  AddSettingsFile(stage_path);
  fates_.Clear();
  // What was not planned, the table could not tell of.
  if (plan_) archive.last_source = [this](std::string* path) { return WriteTable(path); };
  component_ = Zip();
  archive.last_source = nullptr;
  if (component_ == zip::Result::kDone || component_ == zip::Result::kWarnings) {
    archive_made_ = true;
  }
  return Result();
}

void BackupRun::ApplyArchiveSettings(const std::string& stage_path) {
  if (archive.archive_name.empty()) {
    if (job().gMediaDisc) {
      const std::string folder = DiscFolderBelow(ParentFolder(stage_path));
      if (!DiscFolder(program_, folder).Make()) TellRefused(folder + "\\");
      archive.archive_name = folder + "\\" + FileNameOf(stage_path) + ".obk";
      archive.split_size = disc_part_size;
    } else {
      archive.archive_name = stage_path + ".obk";
      archive.split_size = 0;
    }
  }
  archive.required_attributes = 0;
  archive.excluded_attributes = 0;
  archive.preserve_paths = true;
  archive.encrypt = job().gProtectWithPassword == "True";
  if (archive.encrypt) archive.password = job().gArchivePassword;
  archive.level = static_cast<int>(Val(job().gCompressionLevel));
}

void BackupRun::AddSettingsFile(const std::string& stage_path) {
  const std::string source = StagedSettingsPath(stage_path, program_);
  const std::string folder = WithBackslash(EntryNameBelow(job().gBackupFolder, stage_path));
  if (!state().gFileCollection.Add({source, folder + FileNameOf(source)})) return;
  archive.files_to_process.push_back(source);
}

std::optional<size_t> BackupRun::PlaceOf(const std::string& source) {
  return state().gFileCollection.Find(source.ends_with('\\') ? source + "*.*" : source);
}

void BackupRun::NoteStored(const zip::StoredFile& file) {
  if (const auto place = PlaceOf(file.source)) fates_.NoteStored(*place, file);
}

void BackupRun::NoteWarning(const zip::Warning& warning) {
  if (const auto place = PlaceOf(warning.name)) {
    fates_.NoteReason(*place, ReasonOfWarning(warning.reason));
  }
}

FileStatus BackupRun::WriteTable(std::string* path) {
  const std::string& stage = state().gBackupBasePath;
  // Without its settings file no restore can read an archive.
  const auto settings = PlaceOf(StagedSettingsPath(stage, program_));
  settings_staged_ = settings && fates_.Of(*settings).is_stored &&
                     fates_.ReasonOf(*settings) == AccountReason::kNone;
  if (!settings_staged_) return FileStatus::kFailed;
  const std::string stem = WithoutBackslash(EntryNameBelow(job().gBackupFolder, stage));
  *path = TableEntryName(stage);
  FileStatus status = FileStatus::kOk;
  const std::unique_ptr<OutputFile> file = program_.platform().files.Create(*path, &status);
  if (file == nullptr) return status == FileStatus::kOk ? FileStatus::kFailed : status;
  MemberTableWriter writer(*file);
  status = writer.Begin(stem);
  if (status == FileStatus::kOk) status = WriteTableRows(writer);
  if (status == FileStatus::kOk) status = file->Close();
  state().gFileCollection.Add({*path, TableEntryName(stem)});
  return status;
}

FileStatus BackupRun::WriteTableRows(MemberTableWriter& writer) {
  const std::vector<PlannedItem>& items = plan_->items;
  FileStatus status = FileStatus::kOk;
  for (const PlannedItem& item : items) {
    if (status == FileStatus::kOk)
      status = writer.Item({item.path, SettingsKey(item.path, item.key)});
  }
  for (size_t i = 0; i < items.size() && status == FileStatus::kOk; ++i) {
    status = WriteItemRows(writer, static_cast<std::uint32_t>(i));
  }
  return status == FileStatus::kOk ? writer.End() : status;
}

FileStatus BackupRun::WriteItemRows(MemberTableWriter& writer, std::uint32_t number) {
  const PlannedItem& item = plan_->items[number];
  FileStatus status = FileStatus::kOk;
  for (const PlannedMember& member : item.members) {
    const FileArr& file = state().gFileCollection.At(member.file);
    const MemberFate fate = fates_.Of(member.file);
    if (fate.is_stored) {
      std::string entry = file.DestFilePath;
      if (entry.ends_with("\\*.*")) entry.resize(entry.size() - 4);
      status = writer.Member({member.kind, number, fate.size, fate.crc, entry, member.inner});
    } else {
      const AccountReason why = WhyNotStored(program_, item, member, fates_);
      status = writer.Gap({number, GapReason(why), member.inner});
    }
    if (status != FileStatus::kOk) return status;
  }
  for (const PlannedGap& gap : item.gaps) {
    status = writer.Gap({number, gap.reason, gap.inner});
    if (status != FileStatus::kOk) return status;
  }
  if (!IsLost(item)) return FileStatus::kOk;
  return writer.Gap({number, item.is_taken ? gap_reason::kMissing : gap_reason::kNotInstalled, ""});
}

zip::Result BackupRun::Zip() {
  settings_staged_ =
      program_.files().FileExists(StagedSettingsPath(state().gBackupBasePath, program_));
  if (!settings_staged_) return zip::Result::kFailed;
  Services& services = program_.platform().services;
  // The search service must not hold the mail stores open.
  const bool searching = ServiceIsRunning(services, kSearchService);
  if (searching) ControlServiceByName(services, kSearchService, ServiceAction::kStop);
  const zip::Result result = archive.Zip();
  if (searching) ControlServiceByName(services, kSearchService, ServiceAction::kStart);
  return result;
}

void BackupRun::NameEntry(zip::BeforeFile& file) {
  if (events_.archive_file) events_.archive_file(file.source);
  const std::string key = file.source.ends_with('\\') ? file.source + "*.*" : file.source;
  std::string name = state().gFileCollection.FindStagedDest(key);
  if (name.ends_with("*.*")) name.resize(name.size() - 3);
  file.entry_name = name;
  file.exclude = name.empty();
  KeepGoing();
}

}  // namespace quorvale
