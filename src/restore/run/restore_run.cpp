#include "restore/run/restore_run.h"

#include <set>
#include <string>
#include <utility>

#include "base/paths.h"
#include "core/program/ModGlobal.h"
#include "core/program/account_folder.h"
#include "restore/run/internet_explorer_restore.h"
#include "restore/run/user_files_restore.h"

namespace quorvale {
namespace {

struct PhaseStep {
  RestorePhase phase;
  void (RestoreRun::*run)();
};
constexpr PhaseStep kPhases[] = {
    {RestorePhase::kPrepare, &RestoreRun::PrepareArchive},
    {RestorePhase::kWindowsMail, &RestoreRun::RestoreWindowsMail},
    {RestorePhase::kOutlookExpress, &RestoreRun::RestoreOutlookExpress},
    {RestorePhase::kOutlook, &RestoreRun::RestoreOutlook},
    {RestorePhase::kInternetExplorer, &RestoreRun::RestoreInternetExplorer},
    {RestorePhase::kAddedFiles, &RestoreRun::RestoreAddedFiles},
    {RestorePhase::kAddedFolders, &RestoreRun::OFolder},
    {RestorePhase::kOtherFiles, &RestoreRun::OtherFiles},
};

}  // namespace

RestoreRun::RestoreRun(Program& program, const RestoreJob& job, RestoreEvents events)
    : program_(program),
      job_(job),
      monitor_(program, std::move(events)),
      account_(program),
      extractor_(program, job, monitor_, account_),
      tools_{program, job, monitor_, extractor_, result_, account_},
      outlook_express_(tools_),
      outlook_(tools_),
      windows_mail_(tools_, outlook_) {}

RestoreResult RestoreRun::Run() {
  monitor_.Restart();
  result_ = {};
  account_.Begin(job_);
  const bool finished = RunPhases();
  // The registry editor may still be reading what is staged.
  extractor_.FinishImports();
  outlook_express_.PointIdentityAtStore();
  if (finished && monitor_.KeepGoing()) {
    SetLastRestore();
    result_.outcome = RestoreOutcome::kDone;
  }
  EndAccount();
  return result_;
}

void RestoreRun::EndAccount() {
  TellRest();
  const std::string now = AccountMoment(program_);
  if (result_.outcome == RestoreOutcome::kStopped) {
    program_.account().End(AccountEnd::kStopped, now);
  } else if (why_failed_ == AccountReason::kNone) {
    program_.account().End(AccountEnd::kDone, now);
  } else {
    program_.account().End(AccountEnd::kFailed, now, why_failed_, job_.gRestoreFilePath);
  }
}

// A backup that cannot be read holds nothing, and a stopped run did not look.
void RestoreRun::TellRest() {
  AccountReason why = why_failed_;
  if (result_.outcome == RestoreOutcome::kStopped) why = AccountReason::kStopped;
  std::set<std::pair<std::string, std::string>> told;
  for (const RestoreItem& item : job_.restore_items) {
    const RestoreOrigin& origin = item.origin;
    if (origin.path.empty() || !told.insert({origin.path, origin.key}).second) continue;
    if (extractor_.EntryOf(origin).kind == ItemEntry::Kind::kNone) continue;
    const std::vector<MemberGap> gaps = extractor_.members().Gaps(origin);
    if (account_.HadItsTurn(origin) || (why == AccountReason::kNone && !gaps.empty())) {
      account_.TellGaps(origin, gaps);
    } else if (why != AccountReason::kNone) {
      account_.TellNone(origin, why);
    } else {
      account_.TellNone(origin, extractor_.HoldsAny(origin) ? AccountReason::kNoPlace
                                                            : AccountReason::kNotInBackup);
    }
  }
}

bool RestoreRun::RunPhases() {
  for (const PhaseStep& step : kPhases) {
    if (step.phase == RestorePhase::kWindowsMail && !IsVista(program_)) continue;
    monitor_.events().phase_begins(step.phase);
    (this->*step.run)();
    if (!monitor_.KeepGoing()) return false;
    monitor_.events().phase_ends(step.phase);
  }
  return true;
}

bool RestoreRun::DeleteRestoreFolder(const std::string& folder) {
  extractor_.RemoveStaged();
  return !program_.files().FolderExists(WithoutBackslash(folder));
}

void RestoreRun::PrepareArchive() { why_failed_ = extractor_.Open(); }

void RestoreRun::RestoreWindowsMail() { windows_mail_.RestoreWindowsMail(); }

void RestoreRun::RestoreOutlookExpress() { outlook_express_.RestoreOutlookExpress(); }

void RestoreRun::RestoreOutlook() { outlook_.RestoreOutlook(); }

void RestoreRun::RestoreInternetExplorer() { quorvale::RestoreInternetExplorer(tools_); }

void RestoreRun::RestoreAddedFiles() { quorvale::RestoreAddedFiles(tools_); }

void RestoreRun::OFolder() { quorvale::OFolder(tools_); }

void RestoreRun::OtherFiles() { quorvale::OtherFiles(tools_); }

void RestoreRun::SetLastRestore() {
  program_.registry().SaveRegString(RegistryRoot::kCurrentUser, kHistoryKey, "Last Restore",
                                    HistoryStamp(program_, program_.platform().system.Now()));
}

}  // namespace quorvale
