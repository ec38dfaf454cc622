#include "backup/run/backup_run.h"

#include <utility>

#include "backup/format/log_writer.h"
#include "backup/format/settings_file.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "discovery/products/outlook_places.h"

namespace quorvale {

// A phase that does not apply is not told either.
struct BackupRun::Phase {
  BackupPhase name;
  void (BackupRun::*work)();
  bool (BackupRun::*applies)() const;
};

const BackupRun::Phase BackupRun::kPhases[] = {
    {BackupPhase::kPlanning, &BackupRun::MakePlan, nullptr},
    {BackupPhase::kWindowsMail, &BackupRun::BackupWindowsMailItems, &BackupRun::HasWindowsMail},
    {BackupPhase::kOutlookExpress, &BackupRun::BackupOutlookExpressItems, nullptr},
    {BackupPhase::kOutlook, &BackupRun::RunOutlookPhase, nullptr},
    {BackupPhase::kBrowser, &BackupRun::BackupInternetExplorerItems, nullptr},
    {BackupPhase::kOtherFiles, &BackupRun::BackupOtherItems, nullptr},
    {BackupPhase::kSettling, &BackupRun::Settle, nullptr},
    {BackupPhase::kArchive, &BackupRun::RunArchivePhase, nullptr},
};

BackupRun::BackupRun(Program& program, BackupEvents events)
    : archive(program.platform()), program_(program), events_(std::move(events)) {
  ListenToArchive();
}

void BackupRun::ListenToArchive() {
  archive.on_stored = [this](const zip::StoredFile& file) { NoteStored(file); };
  archive.on_before_file = [this](zip::BeforeFile& file) { NameEntry(file); };
  archive.on_file_progress = [this](int percent) {
    if (events_.archive_percent) events_.archive_percent(percent);
    KeepGoing();
  };
  archive.on_total_progress = [this](int percent) {
    if (events_.archive_total) events_.archive_total(percent);
    KeepGoing();
  };
}

bool BackupRun::KeepGoing() {
  const bool going = !program_.Ended() && (!events_.keep_going || events_.keep_going());
  if (!going) archive.abort = true;
  return going;
}

BackupResult BackupRun::Run() {
  Begin();
  for (const Phase& phase : kPhases) {
    if (phase.applies != nullptr && !(this->*phase.applies)()) continue;
    if (!KeepGoing()) break;
    if (events_.phase) events_.phase(phase.name);
    if (!KeepGoing()) break;
    (this->*phase.work)();
  }
  return Result();
}

void BackupRun::Begin() {
  archive.ResetDefaults();
  plan_.reset();
  mSkipped.clear();
  component_.reset();
  archive_made_ = false;
}

BackupResult BackupRun::Result() {
  BackupResult result;
  result.skipped = mSkipped;
  result.component = component_;
  if (archive_made_) result.archive = archive.archive_name;
  if (!KeepGoing() || component_ == zip::Result::kAborted) {
    result.outcome = BackupOutcome::kStopped;
  } else if (component_ == zip::Result::kDone || component_ == zip::Result::kWarnings) {
    result.outcome = BackupOutcome::kDone;
  } else if (component_ == zip::Result::kNoSpace || component_ == zip::Result::kNoTemporarySpace) {
    result.outcome = BackupOutcome::kNoSpace;
  }
  return result;
}

bool BackupRun::HasWindowsMail() const { return os_name() == kWindowsVista; }

// Without Outlook there is nothing to take of it, whatever is ticked.
bool BackupRun::PhaseApplies(BackupPhase phase) {
  if (phase == BackupPhase::kWindowsMail) return HasWindowsMail();
  if (phase != BackupPhase::kOutlook) return true;
  return program_.registry().store().KeyExists(RegistryRoot::kLocalMachine, kOutlookProgramKey);
}

void BackupRun::RunOutlookPhase() {
  if (PhaseApplies(BackupPhase::kOutlook)) BackupOutlookItems();
}

void BackupRun::Settle() { program_.registry_editor().WaitForRuns(); }

void BackupRun::RunArchivePhase() { MakeArchive(state().gBackupBasePath); }

void BackupRun::CleanUp(const BackupResult& result) {
  if (result.outcome == BackupOutcome::kStopped) {
    // The user gave this backup up, also when its archive was just complete.
    if (!result.archive.empty()) program_.platform().files.RemoveFile(result.archive, true);
    if (MakeFolder(state().gBackupBasePath + "\\")) RemoveStage();
    return;
  }
  RemoveStage();
  if (result.outcome != BackupOutcome::kDone) return;
  FinishLogs();
  program_.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, "Last Backup",
                                    HistoryStamp(program_, program_.platform().system.Now()));
}

void BackupRun::RemoveStage() {
  program_.registry_editor().WaitForRuns();
  KillFolder(state().gBackupBasePath);
}

bool BackupRun::KillFolder(const std::string& path) {
  return !path.empty() && program_.files().KillFolder(WithoutBackslash(path));
}

void BackupRun::FinishLogs() {
  std::string joined;
  for (const std::string& source : mSkipped) joined += source;
  if (Trim(joined).empty() || job().gLogDetails != "True") return;
  WriteRunLog(program_, BackupLogPath(program_), mSkipped);
}

}  // namespace quorvale
