#include "backup/run/backup_run.h"

#include <unordered_set>
#include <utility>

#include "backup/format/log_writer.h"
#include "backup/format/settings_file.h"
#include "backup/run/backup_account.h"
#include "base/paths.h"
#include "base/text.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
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
  archive.on_warning = [this](const zip::Warning& warning) { NoteWarning(warning); };
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
  fates_.Clear();
  refused_folder_.clear();
  component_.reset();
  archive_made_ = false;
  program_.account().Begin(AccountRun::kBackup, WithoutLastFour(job().gBackupFileName),
                           AccountMoment(program_));
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

void BackupRun::Settle() {
  if (program_.registry_editor().WaitForRuns()) return;
  program_.account().Note(AccountReason::kImportRefused,
                          "The registry editor did not end: settings may be missing.");
}

void BackupRun::RunArchivePhase() { MakeArchive(state().gBackupBasePath); }

void BackupRun::CleanUp(const BackupResult& result) {
  if (result.outcome == BackupOutcome::kStopped) {
    // The user gave this backup up, also when its archive was just complete.
    if (!result.archive.empty()) program_.platform().files.RemoveFile(result.archive, true);
    if (MakeFolder(state().gBackupBasePath + "\\")) RemoveStage();
  } else {
    RemoveStage();
  }
  EndAccount(result);
  if (result.outcome == BackupOutcome::kDone) {
    FinishLogs();
    program_.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, "Last Backup",
                                      HistoryStamp(program_, program_.platform().system.Now()));
  }
  KeepAccount(program_);
}

void BackupRun::EndAccount(const BackupResult& result) {
  Account& account = program_.account();
  account.archive = result.archive;
  if (result.outcome == BackupOutcome::kDone) {
    if (plan_) FillBackupAccount(program_, *plan_, fates_, &account);
    account.End(AccountEnd::kDone, AccountMoment(program_));
  } else if (result.outcome == BackupOutcome::kStopped) {
    account.archive.clear();
    account.End(AccountEnd::kStopped, AccountMoment(program_));
  } else {
    TellFailure(result);
  }
}

void BackupRun::TellFailure(const BackupResult& result) {
  AccountReason why = AccountReason::kNone;
  std::string detail = "its file could not be written";
  if (!refused_folder_.empty()) {
    detail = "the folder " + refused_folder_ + " could not be made";
  } else if (!result.component) {
    detail = "it ended before its file was begun";
  } else if (result.outcome == BackupOutcome::kNoSpace) {
    why = AccountReason::kNoRoom;
    detail = ParentFolder(archive.archive_name);
  } else if (!settings_staged_) {
    detail = "its settings file could not be written";
  }
  program_.account().End(AccountEnd::kFailed, AccountMoment(program_), why, detail);
}

void BackupRun::RemoveStage() {
  program_.registry_editor().WaitForRuns();
  KillFolder(state().gBackupBasePath);
}

bool BackupRun::KillFolder(const std::string& path) {
  return !path.empty() && program_.files().KillFolder(WithoutBackslash(path));
}

// What was not there when it was reached, and behind it all else that the account names.
std::vector<std::string> BackupRun::LeftOut() const {
  std::vector<std::string> sources = mSkipped;
  std::unordered_set<std::string> known(sources.begin(), sources.end());
  for (const AccountEntry& entry : program_.account().entries()) {
    if (entry.fate != AccountFate::kLeftOut) continue;
    if (known.insert(entry.source).second) sources.push_back(entry.source);
  }
  return sources;
}

void BackupRun::FinishLogs() {
  if (job().gLogDetails != "True") return;
  const std::vector<std::string> sources = LeftOut();
  std::string joined;
  for (const std::string& source : sources) joined += source;
  const std::string path = BackupLogPath(program_);
  // With nothing to add, the log that the review wrote stays.
  FileStatus status = program_.files().FileExists(path) ? FileStatus::kOk : FileStatus::kFailed;
  if (!Trim(joined).empty()) status = WriteRunLog(program_, path, sources);
  if (status == FileStatus::kOk) return;
  program_.account().Note(ReasonOfStatus(status), "The log of this run could not be written.",
                          path);
}

}  // namespace quorvale
