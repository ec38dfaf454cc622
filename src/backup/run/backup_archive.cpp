// The archive of a backup: its name and options, its settings file, and which source gets which
// entry name.
#include "backup/format/settings_file.h"
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
  component_ = Zip();
  if (component_ == zip::Result::kDone || component_ == zip::Result::kWarnings) {
    archive_made_ = true;
  }
  return Result();
}

void BackupRun::ApplyArchiveSettings(const std::string& stage_path) {
  if (archive.archive_name.empty()) {
    if (job().gMediaDisc) {
      const std::string folder = DiscFolderBelow(ParentFolder(stage_path));
      if (!DiscFolder(program_, folder).Make() && events_.folder_refused) {
        events_.folder_refused(folder + "\\");
      }
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
  Add(source, WithBackslash(EntryNameBelow(job().gBackupFolder, stage_path)) + FileNameOf(source));
}

zip::Result BackupRun::Zip() {
  // Without its settings file no restore can read an archive.
  if (!program_.files().FileExists(StagedSettingsPath(state().gBackupBasePath, program_))) {
    return zip::Result::kFailed;
  }
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
